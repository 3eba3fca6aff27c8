#include "adapters/sqlite/folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/database.h"

namespace tpv::sqlite {

namespace {

[[noreturn]] void Fail(const char* doing, const std::string& path) {
  const char* reason = errno == ENOSPC || errno == EDQUOT ? "no queda sitio en el disco"
                       : errno == ENOENT                  ? "no existe"
                       : errno == EIO                     ? "error de disco"
                                                          : "no hay permiso";
  throw DatabaseError(std::string("No se puede ") + doing + " «" + path + "»: " + reason);
}

}  // namespace

FolderLock::FolderLock(const std::string& file) {
  std::string folder = std::filesystem::path(file).parent_path().string();
  if (folder.empty()) folder = ".";
  folder_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0) Fail("abrir la carpeta", folder);
  while (::flock(folder_, LOCK_EX) != 0) {
    if (errno == EINTR) continue;
    ::close(folder_);
    Fail("reservar la carpeta", folder);
  }
}

FolderLock::~FolderLock() { ::close(folder_); }

void FolderLock::Sync() const {
  if (::fsync(folder_) != 0) Fail("grabar", "la carpeta del almacén");
}

bool IsThere(const std::string& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0;
}

void SyncFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) Fail("abrir", path);
  const int result = ::fsync(file);
  ::close(file);
  if (result != 0) Fail("grabar", path);
}

bool RenameToFree(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST || IsThere(to)) return false;
  // Some file systems cannot do both at once; the folder's lock keeps others away.
  const bool unknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
  if (!unknown || std::rename(from.c_str(), to.c_str()) != 0) Fail("crear", to);
  return true;
}

void RemoveWithJournals(const std::string& file) {
  ::unlink(file.c_str());
  for (const char* ending : kJournals) ::unlink((file + ending).c_str());
  ::unlink((file + kLine).c_str());
}

std::string Beside(const std::string& path, const std::string& word) {
  const std::size_t point = path.rfind('.');
  const std::size_t slash = path.rfind('/');
  const bool has_ending =
      point != std::string::npos && (slash == std::string::npos || point > slash);
  if (!has_ending) return path + "." + word;
  return path.substr(0, point) + "." + word + path.substr(point);
}

}  // namespace tpv::sqlite
