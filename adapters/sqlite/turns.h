// How the tills of one store take turns at writing. They stand in line, each until its
// place comes. Where there is no line, and against programs that know of none, there is
// only the engine's lock: who waits looks again and again, those who have waited longer
// more often, and who has met others lately gives them a moment before writing again, so
// that nobody starves.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>

struct sqlite3;

namespace tpv::sqlite {

class WaitingLine;

class Turns {
 public:
  Turns();
  ~Turns();
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

  // The connection waits for its locks in this way from now on; closing it too, so
  // this must outlive it.
  void Govern(sqlite3* handle);

  // Begins a writing transaction when it is this till's turn. `begin` tries to and
  // answers SQLite's code; the last one is handed on.
  int Take(const std::function<int()>& begin);
  // The transaction is about to be stored.
  void LeaveSoon();
  // The transaction is over.
  void Leave();

 private:
  using Clock = std::chrono::steady_clock;

  // SQLite's busy handler: false gives up.
  static int Busy(void* turns, int looks);
  bool Wait(bool first);
  void Offer();
  int StandInLine(const std::function<int()>& begin);
  void Sleep(std::chrono::microseconds about);

  sqlite3* handle_ = nullptr;
  std::unique_ptr<WaitingLine> line_;  // once something has been written
  std::optional<std::uint32_t> place_;
  bool looks_once_ = false;
  Clock::time_point waiting_since_;
  Clock::time_point met_others_ = Clock::time_point::min();
  std::minstd_rand random_;
};

}  // namespace tpv::sqlite
