#include "adapters/sqlite/unwritten_store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "adapters/sqlite/folder.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::sqlite {

namespace {

namespace fs = std::filesystem;

bool MayWrite(const std::string& path) {
  return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool MayWriteStore(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return MayWrite(path) && MayWrite(folder.empty() ? "." : folder);
}

// What was written last lies beside the file, and only who may write can take it in.
bool NeedsItsLog(const std::string& path) {
  const bool logged = IsThere(path + "-wal") && !IsThere(path + "-shm");
  return logged || IsThere(path + "-journal");
}

// As it stands, without asking for a log that is not there.
Handle OpenUnlogged(const std::string& path) {
  std::string name = ReplaceAll(fs::absolute(path).string(), "%", "%25");
  name = ReplaceAll(ReplaceAll(name, "?", "%3f"), "#", "%23");
  sqlite3* handle = nullptr;
  const int flags =
      SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const int result =
      sqlite3_open_v2(("file:" + name + "?immutable=1").c_str(), &handle, flags, nullptr);
  Handle owner(handle);
  if (result != SQLITE_OK) throw DatabaseError("No se puede abrir el almacén «" + path + "»", "08001");
  return owner;
}

bool MarkedAsLogged(const std::string& path) {
  char header[20] = {};
  std::ifstream(path, std::ios::binary).read(header, sizeof header);
  return header[18] == 2;
}

}  // namespace

CopyToRead::CopyToRead(const std::string& path) {
  folder_ = (fs::temp_directory_path() / "tpv-XXXXXX").string();
  if (::mkdtemp(folder_.data()) == nullptr) {
    throw DatabaseError("No se puede copiar «" + path + "» para leerlo");
  }
  path_ = folder_ + "/" + fs::path(path).filename().string();
  std::error_code error;
  for (const char* ending : {"", "-wal", "-journal"}) {
    if (error || !IsThere(path + ending)) continue;
    fs::copy_file(path + ending, path_ + ending, error);
    if (!error) fs::permissions(path_ + ending, fs::perms::owner_read | fs::perms::owner_write, error);
  }
  if (!error) return;
  const std::string reason = error.message();
  fs::remove_all(folder_, error);
  throw DatabaseError("No se puede copiar «" + path + "» para leerlo: " + reason);
}

CopyToRead::~CopyToRead() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

Looked OpenToLook(const std::string& path) {
  std::error_code none;
  const std::string real = fs::canonical(path, none).string();  // the log lies beside it
  const std::string& place = none ? path : real;
  if (MayWriteStore(place)) return {nullptr, OpenFile(place)};
  if (NeedsItsLog(place)) {
    auto copy = std::make_unique<CopyToRead>(place);
    Handle handle = OpenFile(copy->path());
    // Otherwise a till has opened it meanwhile, and it can be read as it is.
    if (NeedsItsLog(place)) return {std::move(copy), std::move(handle)};
  }
  const bool log_missing = MarkedAsLogged(place) && !IsThere(place + "-wal");
  return {nullptr, log_missing ? OpenUnlogged(place) : OpenFile(place)};
}

}  // namespace tpv::sqlite
