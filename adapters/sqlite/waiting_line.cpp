#include "adapters/sqlite/waiting_line.h"

#include <fcntl.h>
#include <sched.h>
#include <linux/futex.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <atomic>
#include <ctime>

#include "adapters/sqlite/folder.h"

namespace tpv::sqlite {

namespace {

constexpr std::uint32_t kBells = 64;  // more tills than that wake each other in vain
constexpr off_t kSize = 4096;
constexpr std::chrono::microseconds kSoon{500};

class File {
 public:
  explicit File(int file) : file_(file) {}
  ~File() {
    if (file_ >= 0) ::close(file_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int get() const { return file_; }

 private:
  int file_;
};

// Memory of a network's files is not shared between machines.
bool IsOfThisMachine(int file) {
  constexpr auto kSmb2 = 0xFE534D42U;
  constexpr auto kCifs = 0xFF534D42U;
  constexpr auto kFuse = 0x65735546U;
  struct statfs system {};
  if (::fstatfs(file, &system) != 0) return false;
  for (const auto remote : {unsigned{NFS_SUPER_MAGIC}, unsigned{SMB_SUPER_MAGIC}, kSmb2, kCifs, kFuse}) {
    if (static_cast<std::uint32_t>(system.f_type) == remote) return false;
  }
  return true;
}

// With the store's own rights, and its room taken on the disk: memory without any would
// end the program that writes there.
bool MakeReady(int file, const std::string& store) {
  struct stat status {};
  struct stat of_store {};
  if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || !IsOfThisMachine(file)) return false;
  if (status.st_size >= kSize) return true;
  if (::stat(store.c_str(), &of_store) != 0 || ::posix_fallocate(file, 0, kSize) != 0) return false;
  if (status.st_uid != ::geteuid()) return true;
  return ::fchmod(file, of_store.st_mode & 0777) == 0 &&
         (::geteuid() != 0 || ::fchown(file, of_store.st_uid, of_store.st_gid) == 0);
}

bool IsBehind(std::uint32_t place, std::uint32_t other) { return static_cast<std::int32_t>(place - other) > 0; }

long Futex(std::atomic<std::uint32_t>& word, int what, std::uint32_t value, const timespec* patience) {
  return ::syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), what, value, patience, nullptr, 0);
}

}  // namespace

// All zero when the file is new.
struct WaitingLine::Shared {
  std::atomic<std::uint32_t> come;  // the last place that was taken
  std::atomic<std::uint32_t> left;  // the last that was left
  std::atomic<std::uint32_t> leaving;
  std::atomic<std::uint32_t> bells[kBells];

  std::atomic<std::uint32_t>& Bell(std::uint32_t place) { return bells[place % kBells]; }
};

WaitingLine::WaitingLine(const std::string& store) {
  static_assert(std::atomic<std::uint32_t>::is_always_lock_free && sizeof(Shared) <= kSize);
  const File file(::open((store + kLine).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (file.get() < 0 || !MakeReady(file.get(), store)) return;
  void* memory = ::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  if (memory != MAP_FAILED) shared_ = static_cast<Shared*>(memory);
}

WaitingLine::~WaitingLine() {
  if (shared_ != nullptr) ::munmap(shared_, kSize);
}

std::uint32_t WaitingLine::Come() { return ++shared_->come; }

bool WaitingLine::IsTurnOf(std::uint32_t place) const { return !IsBehind(place - 1, shared_->left); }

// The bell is looked at before the turn: one that rings in between is not missed.
void WaitingLine::Wait(std::uint32_t place, std::chrono::milliseconds patience) {
  std::atomic<std::uint32_t>& bell = shared_->Bell(place);
  const std::uint32_t rung = bell;
  if (IsTurnOf(place)) return;
  const timespec time{patience.count() / 1000, patience.count() % 1000 * 1'000'000};
  Futex(bell, FUTEX_WAIT, rung, &time);
  const auto end = std::chrono::steady_clock::now() + kSoon;
  while (!IsTurnOf(place) && shared_->leaving + 1 == place && std::chrono::steady_clock::now() < end) ::sched_yield();
}

void WaitingLine::LeaveSoon(std::uint32_t place) {
  shared_->leaving = place;
  Ring(place + 1);
}

void WaitingLine::Ring(std::uint32_t place) {
  if (IsBehind(place, shared_->come)) return;  // nobody waits
  std::atomic<std::uint32_t>& bell = shared_->Bell(place);
  ++bell;
  Futex(bell, FUTEX_WAKE, INT32_MAX, nullptr);
}

void WaitingLine::Leave(std::uint32_t place) {
  std::uint32_t left = shared_->left;
  while (IsBehind(place, left) && !shared_->left.compare_exchange_weak(left, place)) {
  }
  Ring(place + 1);
}

}  // namespace tpv::sqlite
