#include "adapters/files/private_files.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "adapters/files/descriptor.h"
#include "base/text.h"

namespace tpv {

namespace {

[[noreturn]] void Fail(const std::string& doing, const std::string& path, int error) {
  throw FileError("No se puede " + doing + " «" + path + "»: " + Reason(error));
}

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return home;
  const passwd* user = ::getpwuid(::getuid());
  if (user == nullptr) throw FileError("No se conoce la carpeta del usuario");
  return user->pw_dir;
}

std::string UserFolder(const char* variable, const char* below_home) {
  const char* folder = std::getenv(variable);
  const bool given = folder != nullptr && folder[0] == '/';
  return (given ? std::string(folder) : HomeFolder() + below_home) + "/tpv";
}

int WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return ::fsync(file) == 0 ? 0 : errno;
}

bool IsForeignLink(const std::filesystem::path& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode) && status.st_uid != 0 &&
         status.st_uid != ::geteuid();
}

// Where the file is, however many links lead to it.
std::string BehindLinks(const std::string& path) {
  std::filesystem::path file = path;
  std::error_code none;
  constexpr int kMostLinks = 40;  // as the system follows
  for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(file, none); ++links) {
    file = file.parent_path() / std::filesystem::read_symlink(file, none);
  }
  return file.string();
}

}  // namespace

std::string Reason(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return "no queda sitio en el disco";
    case EACCES:
    case EPERM:
      return "no hay permiso";
    case EROFS:
      return "el disco es de solo lectura";
    case ENOENT:
      return "no existe";
    case ENOTDIR:
      return "no es una carpeta";
    case EISDIR:
      return "es una carpeta";
    case ENXIO:
    case ENODEV:
      return "no está conectada";
    case ECONNREFUSED:
      return "rechaza la conexión";
    case ETIMEDOUT:
      return "no responde";
    case EHOSTUNREACH:
    case ENETUNREACH:
      return "no se llega por la red";
    case ECONNRESET:
    case EPIPE:
      return "se cortó la conexión";
    default:
      return "error " + std::to_string(error) + " del sistema";
  }
}

std::string ConfigFolder() { return UserFolder("XDG_CONFIG_HOME", "/.config"); }
std::string DataFolder() { return UserFolder("XDG_DATA_HOME", "/.local/share"); }

std::string ExpandHome(const std::string& path) {
  return path.starts_with("~/") ? HomeFolder() + path.substr(1) : path;
}

std::string FileNamePiece(std::string_view text) {
  std::string piece = Left(FoldForSearch(text), 40);
  std::string name;
  for (const char c : piece) {
    const bool plain = (c >= 'a' && c <= 'z') || IsDigit(c);
    if (plain)
      name += c;
    else if (!name.empty() && name.back() != '-')
      name += '-';
  }
  if (name.ends_with('-')) name.pop_back();
  return name.empty() ? "documento" : name;
}

void MakePrivateFolder(const std::string& path) {
  std::filesystem::path made;
  for (const auto& part : std::filesystem::path(path)) {
    made /= part;
    if (::mkdir(made.c_str(), 0700) == 0) continue;
    const int error = errno;
    if (IsForeignLink(made)) throw FileError("«" + made.string() + "» es un enlace de otro usuario");
    std::error_code unseen;
    if (!std::filesystem::is_directory(made, unseen)) {
      Fail("crear la carpeta", path, error == EEXIST ? ENOTDIR : error);
    }
  }
}

void FillNewFile(const Descriptor& file, const std::string& path, std::string_view bytes) {
  const int error = WriteAll(file.get(), bytes);
  if (error == 0) return;
  ::unlink(path.c_str());
  Fail("escribir", path, error);
}

void SyncFolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const Descriptor entry(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (entry) ::fsync(entry.get());
}

bool CreatePrivateFile(const std::string& path, std::string_view bytes) {
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file && errno == EEXIST) return false;
  if (!file) Fail("crear", path, errno);
  FillNewFile(file, path, bytes);
  return true;
}

void ReplacePrivateFile(const std::string& path, std::string_view bytes) {
  const std::string file = BehindLinks(path);
  std::string temporary = file + ".XXXXXX";
  {
    const Descriptor written(::mkostemp(temporary.data(), O_CLOEXEC));  // made with mode 0600
    if (!written) Fail("escribir", file, errno);
    FillNewFile(written, temporary, bytes);
  }
  if (::rename(temporary.c_str(), file.c_str()) != 0) {
    const int error = errno;
    ::unlink(temporary.c_str());
    Fail("escribir", file, error);
  }
  SyncFolderOf(file);
}

bool MakePrivate(const std::string& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) Fail("leer", path, errno);
  if ((status.st_mode & 077) == 0) return false;
  if (::chmod(path.c_str(), status.st_mode & 0700) != 0) Fail("proteger", path, errno);
  return true;
}

std::optional<std::string> ReadFile(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file && errno == ENOENT) return std::nullopt;
  if (!file) Fail("leer", path, errno);
  std::string bytes;
  char piece[8192];
  for (;;) {
    const ssize_t count = ::read(file.get(), piece, sizeof piece);
    if (count == 0) return bytes;
    if (count > 0)
      bytes.append(piece, static_cast<std::size_t>(count));
    else if (errno != EINTR)
      Fail("leer", path, errno);
  }
}

}  // namespace tpv
