// The tills of one store in the order in which they came to write to it. It lies in
// memory that they share, a small file beside the store ("tienda.db-turnos"): who leaves
// wakes the next, and nobody looks at it meanwhile. It only says whose turn it is; what
// keeps writers apart is the engine's own lock, so that whoever dies, hangs or writes
// without standing in line costs time and nothing else.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tpv::sqlite {

class WaitingLine {
 public:
  // Of the open store. Where the file or the memory is not to be had, on a network
  // folder above all, there is none.
  explicit WaitingLine(const std::string& store);
  ~WaitingLine();
  WaitingLine(const WaitingLine&) = delete;
  WaitingLine& operator=(const WaitingLine&) = delete;

  bool IsThere() const { return shared_ != nullptr; }

  // The place of whoever comes now. It has to be left.
  std::uint32_t Come();
  bool IsTurnOf(std::uint32_t place) const;
  // Waits until it may be the place's turn; not longer than `patience`.
  void Wait(std::uint32_t place, std::chrono::milliseconds patience);
  // The place's transaction is being stored: the next one gets up meanwhile.
  void LeaveSoon(std::uint32_t place);
  // Those who came before and were not met any more are passed over.
  void Leave(std::uint32_t place);

 private:
  void Ring(std::uint32_t place);

  struct Shared;
  Shared* shared_ = nullptr;
};

}  // namespace tpv::sqlite
