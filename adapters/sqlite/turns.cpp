#include "adapters/sqlite/turns.h"

#include <sqlite3.h>

#include <thread>

#include "adapters/sqlite/store_file.h"
#include "adapters/sqlite/waiting_line.h"

namespace tpv::sqlite {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 5s;
constexpr auto kMemory = 1s;  // how long a meeting counts
constexpr auto kOffer = 200us;
constexpr auto kStandstill = 10ms;  // of a line whose head is dead, frozen or slow

std::chrono::microseconds LookingAgainAfter(std::chrono::steady_clock::duration waited) {
  return waited < 10ms ? 200us : waited < 50ms ? 100us : 50us;
}

}  // namespace

Turns::Turns() : random_(static_cast<std::uint32_t>(Clock::now().time_since_epoch().count())) {}
Turns::~Turns() = default;

void Turns::Govern(sqlite3* handle) {
  handle_ = handle;
  sqlite3_busy_handler(handle, &Turns::Busy, this);
}

int Turns::Take(const std::function<int()>& begin) {
  if (!line_ && sqlite3_db_readonly(handle_, "main") == 0) line_ = std::make_unique<WaitingLine>(PathOf(handle_));
  if (line_ && line_->IsThere()) return StandInLine(begin);
  Offer();
  return begin();
}

// Whenever nobody moves for a while the engine itself is asked. The pages read so far are
// given back while there is time: who goes before writes, and the engine reads them anew.
int Turns::StandInLine(const std::function<int()>& begin) {
  place_ = line_->Come();
  const auto end = Clock::now() + kPatience;
  if (!line_->IsTurnOf(*place_)) sqlite3_db_release_memory(handle_);
  for (;;) {
    if (!line_->IsTurnOf(*place_)) line_->Wait(*place_, kStandstill);
    const bool turn = line_->IsTurnOf(*place_);
    looks_once_ = !turn;
    const int result = begin();
    looks_once_ = false;
    const bool busy = (result & 0xFF) == SQLITE_BUSY;
    if (busy && !turn && Clock::now() < end) continue;
    if (result != SQLITE_OK) Leave();
    return result;
  }
}

void Turns::LeaveSoon() {
  if (place_) line_->LeaveSoon(*place_);
}

void Turns::Leave() {
  if (place_) line_->Leave(*place_);
  place_.reset();
}

int Turns::Busy(void* turns, int looks) {
  return static_cast<Turns*>(turns)->Wait(looks == 0) ? 1 : 0;
}

bool Turns::Wait(bool first) {
  if (looks_once_) return false;
  met_others_ = Clock::now();
  if (first) waiting_since_ = met_others_;
  const auto waited = met_others_ - waiting_since_;
  if (waited > kPatience) return false;
  Sleep(LookingAgainAfter(waited));
  return true;
}

void Turns::Offer() {
  if (met_others_ != Clock::time_point::min() && Clock::now() - met_others_ < kMemory)
    Sleep(kOffer);
}

// Between half and one and a half times as long, so that no two look in step.
void Turns::Sleep(std::chrono::microseconds about) {
  std::uniform_int_distribution<std::int64_t> spread(about.count() / 2, about.count() * 3 / 2);
  std::this_thread::sleep_for(std::chrono::microseconds(spread(random_)));
}

}  // namespace tpv::sqlite
