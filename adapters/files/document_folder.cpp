#include "adapters/files/document_folder.h"

#include <unistd.h>

#include "adapters/files/private_files.h"
#include "base/text.h"
#include "platform/clock.h"
#include "platform/printer.h"

namespace tpv {

namespace {

// "20261124-103000"
std::string Stamp(const DateTime& moment) {
  std::string digits;
  for (const char c : ToIsoSeconds(moment)) {
    if (c == ' ') digits += '-';
    if (IsDigit(c)) digits += c;
  }
  return digits;
}

// Takes away again what was written unless it is kept.
class Written {
 public:
  ~Written() {
    for (const std::string& path : paths_) ::unlink(path.c_str());
  }
  void Add(const std::string& path) { paths_.push_back(path); }
  void Keep() { paths_.clear(); }

 private:
  std::vector<std::string> paths_;
};

// False when one of the names is taken.
bool WriteParts(const std::string& stem, const std::vector<DocumentFolder::Part>& parts) {
  Written written;
  for (const auto& part : parts) {
    if (!CreatePrivateFile(stem + part.ending, part.bytes)) return false;
    written.Add(stem + part.ending);
  }
  written.Keep();
  return true;
}

}  // namespace

std::string DocumentFolder::Save(std::string_view about, const std::vector<Part>& parts) const {
  try {
    MakePrivateFolder(path_);
    const std::string first = path_ + "/" + Stamp(clock_.Now()) + "-" + FileNamePiece(about);
    std::string stem = first;
    for (int number = 2; !WriteParts(stem, parts); ++number) {
      stem = first + "-" + std::to_string(number);
    }
    return stem + parts.front().ending;
  } catch (const FileError& error) {
    throw PrintError(error.what());
  }
}

}  // namespace tpv
