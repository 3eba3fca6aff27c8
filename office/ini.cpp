#include "office/ini.h"

#include "base/text.h"

namespace tpv::office {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

class Reader {
 public:
  void Take(std::string_view raw) {
    ++line_;
    const std::string text = Trim(raw);
    if (text.empty() || text[0] == ';' || text[0] == '#') return;
    if (OneLine(text) != text) return Refuse("no es texto UTF-8");
    if (text[0] == '[') return Enter(text);
    const std::size_t equals = text.find('=');
    const std::string key = FoldCase(Trim(text.substr(0, equals)));
    if (equals == std::string::npos || key.empty()) return Refuse("se espera «clave = valor»");
    if (section_.empty()) return Refuse("está antes de la primera [sección]");
    ini.entries.push_back({section_ + "." + key, Trim(text.substr(equals + 1)), line_});
  }

  Ini ini;

 private:
  void Enter(const std::string& text) {
    if (text.size() < 3 || text.back() != ']') return Refuse("se espera «[sección]»");
    section_ = FoldCase(Trim(text.substr(1, text.size() - 2)));
  }
  void Refuse(const char* reason) { ini.refusals.push_back({line_, "", reason}); }

  long line_ = 0;
  std::string section_;
};

}  // namespace

Ini ReadIni(std::string_view text) {
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  Reader reader;
  for (const std::string& line : Split(text, "\n")) {
    reader.Take(line.ends_with('\r') ? std::string_view(line).substr(0, line.size() - 1) : line);
  }
  return std::move(reader.ini);
}

}  // namespace tpv::office
