// How the tills of one store take turns at writing. The engine has one lock and no
// queue: who waits looks again and again, and whoever looks at the right moment
// goes on. Those who have waited longer look more often, and who has met others
// lately gives them a moment before writing again, so that nobody starves.
#pragma once

#include <chrono>
#include <random>

struct sqlite3;

namespace tpv::sqlite {

class Turns {
 public:
  Turns();
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

  // The connection waits for its locks in this way from now on; closing it too, so
  // this must outlive it.
  void Govern(sqlite3* handle);
  // Before a writing transaction begins.
  void Offer();

 private:
  using Clock = std::chrono::steady_clock;

  // SQLite's busy handler: false gives up.
  static int Busy(void* turns, int looks);
  bool Wait(bool first);
  void Sleep(std::chrono::microseconds about);

  Clock::time_point waiting_since_;
  Clock::time_point met_others_ = Clock::time_point::min();
  std::minstd_rand random_;
};

}  // namespace tpv::sqlite
