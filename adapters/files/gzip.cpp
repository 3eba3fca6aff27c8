#include "adapters/files/gzip.h"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <memory>
#include <vector>

#include "adapters/files/descriptor.h"
#include "adapters/files/private_files.h"

namespace tpv {

namespace {

constexpr unsigned kBlock = 256 * 1024;

[[noreturn]] void Fail(const char* doing, const std::string& path) {
  throw FileError(std::string("No se puede ") + doing + " «" + path + "»: " + Reason(errno));
}

struct GzCloser {
  void operator()(gzFile file) const { gzclose(file); }
};
using Gz = std::unique_ptr<gzFile_s, GzCloser>;

Descriptor Open(const std::string& path) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) Fail("leer", path);
  return file;
}

// The compressed stream of an open file, which stays the caller's.
Gz Stream(const Descriptor& file, const char* mode) {
  const int own = ::dup(file.get());
  Gz stream(own < 0 ? nullptr : gzdopen(own, mode));
  if (!stream) throw FileError("No queda memoria");
  gzbuffer(stream.get(), kBlock);
  return stream;
}

std::size_t Read(const Descriptor& file, const std::string& path, std::vector<char>& block) {
  for (;;) {
    const ssize_t count = ::read(file.get(), block.data(), block.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) Fail("leer", path);
  }
}

std::size_t Expand(const Gz& stream, const std::string& path, std::vector<char>& block) {
  const int count = gzread(stream.get(), block.data(), static_cast<unsigned>(block.size()));
  int code = Z_OK;
  if (count == 0) gzerror(stream.get(), &code);
  if (count < 0 || (code != Z_OK && code != Z_STREAM_END)) {
    throw FileError("«" + path + "» está dañado o no es una copia comprimida");
  }
  return static_cast<std::size_t>(count);
}

// A new file that stays only when it is kept.
class NewFile {
 public:
  explicit NewFile(std::string path)
      : path_(std::move(path)),
        file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
    if (!file_) Fail("crear", path_);
  }
  ~NewFile() {
    if (!kept_) ::unlink(path_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const Descriptor& file() const { return file_; }
  void Write(const char* bytes, std::size_t count) {
    while (count > 0) {
      const ssize_t written = ::write(file_.get(), bytes, count);
      if (written < 0 && errno != EINTR) Fail("escribir", path_);
      if (written <= 0) continue;
      bytes += written;
      count -= static_cast<std::size_t>(written);
    }
  }
  void Keep() {
    if (::fsync(file_.get()) != 0) Fail("escribir", path_);
    kept_ = true;
  }

 private:
  std::string path_;
  Descriptor file_;
  bool kept_ = false;
};

}  // namespace

void CompressFile(const std::string& from, const std::string& to) {
  const Descriptor source = Open(from);
  NewFile target(to);
  Gz stream = Stream(target.file(), "wb6");
  std::vector<char> block(kBlock);
  while (const std::size_t count = Read(source, from, block)) {
    if (gzwrite(stream.get(), block.data(), static_cast<unsigned>(count)) == 0)
      Fail("escribir", to);
  }
  if (gzclose(stream.release()) != Z_OK) Fail("escribir", to);
  target.Keep();
}

void ExpandFile(const std::string& from, const std::string& to) {
  const Descriptor source = Open(from);
  const Gz stream = Stream(source, "rb");
  std::vector<char> block(kBlock);
  std::size_t count = Expand(stream, from, block);
  if (gzdirect(stream.get()) != 0) throw FileError("«" + from + "» no es una copia comprimida");
  NewFile target(to);
  for (; count > 0; count = Expand(stream, from, block)) target.Write(block.data(), count);
  target.Keep();
}

std::uintmax_t ExpandedSize(const std::string& compressed) {
  const Descriptor source = Open(compressed);
  const Gz stream = Stream(source, "rb");
  std::vector<char> block(kBlock);
  std::uintmax_t size = 0;
  while (const std::size_t count = Expand(stream, compressed, block)) size += count;
  return size;
}

}  // namespace tpv
