// A folder that collects documents, each under a name of its own.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tpv {

class Clock;

class DocumentFolder {
 public:
  struct Part {
    std::string ending;  // ".txt"
    std::string bytes;
  };

  // The folder is made when the first document comes. The clock outlives it.
  DocumentFolder(std::string path, const Clock& clock) : path_(std::move(path)), clock_(clock) {}

  // Writes the document's files, which differ only in their endings, and returns
  // the path of the first. `about` is any text. All files are written or none.
  // Throws PrintError.
  std::string Save(std::string_view about, const std::vector<Part>& parts) const;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  const Clock& clock_;
};

}  // namespace tpv
