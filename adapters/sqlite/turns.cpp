#include "adapters/sqlite/turns.h"

#include <sqlite3.h>

#include <thread>

namespace tpv::sqlite {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 5s;
constexpr auto kMemory = 1s;  // how long a meeting counts
constexpr auto kOffer = 200us;

std::chrono::microseconds LookingAgainAfter(std::chrono::steady_clock::duration waited) {
  return waited < 10ms ? 200us : waited < 50ms ? 100us : 50us;
}

}  // namespace

Turns::Turns() : random_(static_cast<std::uint32_t>(Clock::now().time_since_epoch().count())) {}

void Turns::Govern(sqlite3* handle) { sqlite3_busy_handler(handle, &Turns::Busy, this); }

int Turns::Busy(void* turns, int looks) {
  return static_cast<Turns*>(turns)->Wait(looks == 0) ? 1 : 0;
}

bool Turns::Wait(bool first) {
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
