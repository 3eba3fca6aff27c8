#include "adapters/files/outbox_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "adapters/files/private_files.h"
#include "base/text.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

// Names say how a document stands; a rename needs no room on a full disk.
constexpr std::string_view kWaiting = ".pendiente";
constexpr std::string_view kDoubtful = ".dudoso";

constexpr std::size_t kHead = 1024;  // bytes of lines about the document, before it
constexpr std::string_view kMark = "tpv sin imprimir 1";
constexpr std::size_t kMostDocuments = 200;
constexpr std::uintmax_t kMostBytes = 200'000'000;

std::string Line(std::string_view text, std::size_t characters) { return Left(OneLine(text), characters) + "\n"; }

std::string HeadOf(const UnprintedDocument& about) {
  std::string head(kMark);
  head += "\n" + Line(about.title, 60) + Line(about.printer, 60) + ToIsoSeconds(about.since) + "\n" + Line(about.why, 100);
  head.resize(kHead, '\n');
  return head;
}

UnprintedDocument ReadHead(int file, const std::string& name) {
  std::string head(kHead, '\0');
  const ssize_t count = ::pread(file, head.data(), head.size(), 0);
  head.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  const std::vector<std::string> lines = Split(head, "\n");
  UnprintedDocument about;
  about.id = name;
  about.maybe_printed = name.ends_with(kDoubtful);
  if (lines.size() < 5 || lines[0] != kMark) {
    about.title = "Documento ilegible";
    return about;
  }
  about.title = lines[1];
  about.printer = lines[2];
  about.since = ParseIso(lines[3]).value_or(DateTime{});
  about.why = lines[4];
  return about;
}

struct flock WholeFile(short kind) {
  struct flock lock{};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  return lock;
}

// Where the file system knows no locks, nobody is taken to have one.
bool IsBusy(int answer) { return answer != 0 && (errno == EAGAIN || errno == EACCES); }

// Locks of an open file, not of a process: two windows of one program count, too.
bool Lock(int file) {
  struct flock lock = WholeFile(F_WRLCK);
  return !IsBusy(::fcntl(file, F_OFD_SETLK, &lock));
}

bool InHand(int file) {
  struct flock lock = WholeFile(F_WRLCK);
  return ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool IsStill(int file, const std::string& path) {
  struct stat here{}, there{};
  return ::fstat(file, &here) == 0 && ::stat(path.c_str(), &there) == 0 && here.st_ino == there.st_ino &&
         here.st_dev == there.st_dev;
}

bool IsDocument(const std::string& name) { return name.ends_with(kWaiting) || name.ends_with(kDoubtful); }

// Their names; none where there is no folder.
std::vector<std::string> DocumentsIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::string name = at->path().filename().string();
    if (IsDocument(name)) names.push_back(std::move(name));
  }
  if (error && error.value() != ENOENT) {
    throw FileError("No se puede leer la carpeta «" + folder + "»: " + Reason(error.value()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

// What a program that died left half written.
void SweepUnfinished(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    const auto age = fs::file_time_type::clock::now() - at->last_write_time(error);
    if (!IsDocument(at->path().filename().string()) && !error && age > std::chrono::hours(1)) {
      fs::remove(at->path(), error);
    }
  }
}

}  // namespace

std::string HeldPaper::Title() const { return ReadHead(file_.get(), path_).title; }

std::string HeldPaper::Content() const {
  std::string all = ReadFile(path_).value_or("");
  return all.size() < kHead ? std::string() : all.substr(kHead);
}

void HeldPaper::Rename(bool maybe_printed) {
  const std::string stem = path_.substr(0, path_.rfind('.'));
  const std::string to = stem + std::string(maybe_printed ? kDoubtful : kWaiting);
  if (to != path_ && ::rename(path_.c_str(), to.c_str()) == 0) {
    path_ = to;
    SyncFolderOf(path_);
  }
}

HeldPaper::HeldPaper(Descriptor file, std::string path, bool again)
    : file_(std::move(file)), path_(std::move(path)), doubtful_(path_.ends_with(kDoubtful)), again_(again) {}

void HeldPaper::Sending() { Rename(true); }

void HeldPaper::Done() { ::unlink(path_.c_str()); }

// The head has its room already: nothing of this needs more of the disk.
void HeldPaper::Failed(std::string_view printer, std::string_view why, bool maybe_printed) {
  UnprintedDocument about = ReadHead(file_.get(), path_);
  about.printer = printer;
  about.why = why;
  const std::string head = HeadOf(about);
  [[maybe_unused]] const ssize_t told = ::pwrite(file_.get(), head.data(), head.size(), 0);
  Rename(maybe_printed || doubtful_);
  file_ = Descriptor();
}

void OutboxFolder::RequireRoom(std::size_t more) const {
  std::uintmax_t bytes = more;
  const std::vector<std::string> names = DocumentsIn(path_);
  for (const std::string& name : names) {
    std::error_code gone;
    const std::uintmax_t size = fs::file_size(path_ + "/" + name, gone);
    if (!gone) bytes += size;
  }
  if (names.size() < kMostDocuments && bytes < kMostBytes) return;
  throw FileError("Hay demasiados documentos sin imprimir");
}

std::unique_ptr<HeldPaper> OutboxFolder::Keep(const UnprintedDocument& about, std::string_view content) const {
  MakePrivateFolder(path_);
  SweepUnfinished(path_);
  RequireRoom(content.size());
  std::string stem = path_ + "/";
  for (const char c : ToIso(about.since)) stem += IsDigit(c) ? std::string(1, c) : "";
  stem += "-XXXXXX";
  Descriptor file(::mkostemp(stem.data(), O_CLOEXEC));  // made with mode 0600
  if (!file) throw FileError("No se puede escribir en «" + path_ + "»: " + Reason(errno));
  Lock(file.get());
  FillNewFile(file, stem, HeadOf(about) + std::string(content));
  const std::string path = stem + std::string(kWaiting);
  if (::rename(stem.c_str(), path.c_str()) != 0) {
    const int error = errno;
    ::unlink(stem.c_str());
    throw FileError("No se puede escribir «" + path + "»: " + Reason(error));
  }
  return std::unique_ptr<HeldPaper>(new HeldPaper(std::move(file), path, false));
}

std::vector<UnprintedDocument> OutboxFolder::List() const {
  std::vector<UnprintedDocument> documents;
  for (const std::string& name : DocumentsIn(path_)) {
    const std::string path = path_ + "/" + name;
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (file && !InHand(file.get()) && IsStill(file.get(), path)) documents.push_back(ReadHead(file.get(), name));
  }
  return documents;
}

std::unique_ptr<HeldPaper> OutboxFolder::Take(const std::string& id) const {
  if (!IsDocument(id) || id.find('/') != std::string::npos) return nullptr;
  const std::string path = path_ + "/" + id;
  Descriptor file(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
  // Whoever had it in hand may have printed it before it was locked here.
  if (!file || !Lock(file.get()) || !IsStill(file.get(), path)) return nullptr;
  return std::unique_ptr<HeldPaper>(new HeldPaper(std::move(file), path, true));
}

}  // namespace tpv
