#include "adapters/files/file_settings.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "adapters/files/descriptor.h"
#include "adapters/files/private_files.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

// Control characters, and those with a meaning in the file, as \HH.
std::string Escaped(std::string_view text, std::string_view special) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && c != '\\' && special.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += {'\\', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
    }
  }
  return result;
}

// A backslash that nobody escaped stands for itself.
std::string Unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto digit = [&](std::size_t at) {
      return at < text.size() ? kHexDigits.find(text[at]) : std::string_view::npos;
    };
    const std::size_t high = digit(i + 1);
    const std::size_t low = digit(i + 2);
    const bool escape =
        text[i] == '\\' && high != std::string_view::npos && low != std::string_view::npos;
    result += escape ? static_cast<char>(high * 16 + low) : text[i];
    if (escape) i += 2;
  }
  return result;
}

std::string Name(std::string_view text) { return Escaped(text, "=[]/#;"); }

// A blank at either end of a value would be lost to an editor or a reader.
std::string Value(std::string_view text) {
  std::string value = Escaped(text, "");
  if (value.starts_with(' ')) value.replace(0, 1, "\\20");
  if (value.ends_with(' ')) value.replace(value.size() - 1, 1, "\\20");
  return value;
}

std::string Heading(std::string_view application, std::string_view section) {
  return "[" + Name(application) + "/" + Name(section) + "]";
}

std::string KeyOf(const std::string& line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos || line.starts_with('#') || line.starts_with(';')) return "";
  return Unescaped(Trim(std::string_view(line).substr(0, equals)));
}

std::string ValueOf(const std::string& line) {
  return Unescaped(Trim(std::string_view(line).substr(line.find('=') + 1)));
}

struct Section {
  bool found;
  std::size_t start;  // its lines, the heading left out: [start, end)
  std::size_t end;
};

Section FindSection(const std::vector<std::string>& lines, const std::string& heading) {
  std::size_t start = 0;
  while (start < lines.size() && !EqualNoCase(Trim(lines[start]), heading)) ++start;
  if (start == lines.size()) return {false, start, start};
  std::size_t end = ++start;
  while (end < lines.size() && !lines[end].starts_with('[')) ++end;
  return {true, start, end};
}

std::size_t FindKey(const std::vector<std::string>& lines, std::size_t start, std::size_t end,
                    std::string_view key) {
  while (start < end && !EqualNoCase(KeyOf(lines[start]), key)) ++start;
  return start;
}

void Change(std::vector<std::string>& lines, const std::string& heading, std::string_view key,
            std::string_view value) {
  const Section section = FindSection(lines, heading);
  const std::size_t at = FindKey(lines, section.start, section.end, key);
  const auto place = lines.begin() + static_cast<std::ptrdiff_t>(at);
  if (value.empty()) {
    if (at < section.end) lines.erase(place);
    return;
  }
  const std::string line = Name(key) + "=" + Value(value);
  if (at < section.end) {
    *place = line;
    return;
  }
  if (!section.found) lines.push_back(heading);
  std::size_t end = section.found ? section.end : lines.size();
  while (end > section.start && Trim(lines[end - 1]).empty()) --end;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(end), line);
}

// Keeps a second till of the same user from writing between our read and write.
Descriptor Locked(const std::string& path) {
  Descriptor lock(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lock) throw FileError("No se puede escribir «" + path + "»: " + Reason(errno));
  while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  return lock;
}

}  // namespace

std::vector<std::string> FileSettings::Lines() const {
  const auto text = ReadFile(path_);
  if (!text || text->empty()) return {};
  std::vector<std::string> lines = Split(ReplaceAll(*text, kLineBreak, "\n"), "\n");
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

std::string FileSettings::Read(std::string_view application, std::string_view section,
                               std::string_view key) const {
  const std::vector<std::string> lines = Lines();
  const Section found = FindSection(lines, Heading(application, section));
  const std::size_t at = FindKey(lines, found.start, found.end, key);
  return at < found.end ? ValueOf(lines[at]) : std::string();
}

std::vector<std::string> FileSettings::Keys(std::string_view application,
                                            std::string_view section) const {
  const std::vector<std::string> lines = Lines();
  const Section found = FindSection(lines, Heading(application, section));
  std::vector<std::string> keys;
  for (std::size_t at = found.start; at < found.end; ++at) {
    if (std::string key = KeyOf(lines[at]); !key.empty()) keys.push_back(std::move(key));
  }
  return keys;
}

std::string FileSettings::Protect() {
  const std::vector<std::string> lines = Lines();
  const bool secret = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    return EqualNoCase(KeyOf(line), "Password") && !ValueOf(line).empty();
  });
  if (!secret || !MakePrivate(path_)) return "";
  return "Otros usuarios podían leer «" + path_ +
         "», que tiene la contraseña. Ya no pueden, pero conviene cambiarla";
}

void FileSettings::Write(std::string_view application, std::string_view section,
                         std::string_view key, std::string_view value) {
  MakePrivateFolder(std::filesystem::path(path_).parent_path().string());
  const Descriptor lock = Locked(path_);
  std::vector<std::string> lines = Lines();
  Change(lines, Heading(application, section), key, value);
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  ReplacePrivateFile(path_, text);
}

}  // namespace tpv
