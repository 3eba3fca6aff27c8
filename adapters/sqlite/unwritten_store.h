// Looking at a store that one may not write, on a disk that is read-only or somebody
// else's: nothing is made beside it.
#pragma once

#include <memory>
#include <string>

#include "adapters/sqlite/store_file.h"

namespace tpv::sqlite {

// A store with its log in a folder of its own, which goes with the copy.
class CopyToRead {
 public:
  // Throws DatabaseError.
  explicit CopyToRead(const std::string& path);
  ~CopyToRead();
  CopyToRead(const CopyToRead&) = delete;
  CopyToRead& operator=(const CopyToRead&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string folder_;
  std::string path_;
};

// A store opened for looking at it. Where nobody can lay what the engine needs beside a
// log it is a copy that is read; everywhere else `copy` is null.
struct Looked {
  std::unique_ptr<CopyToRead> copy;
  Handle handle;
};
Looked OpenToLook(const std::string& path);

}  // namespace tpv::sqlite
