// What a drawer really held when its till was closed: its notes and coins, beside what
// the books expected.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tpv {

struct Context;

// Cents, from the greatest note to the smallest coin.
inline constexpr std::array<std::int64_t, 15> kDenominations = {
    50000, 20000, 10000, 5000, 2000, 1000, 500, 200, 100, 50, 20, 10, 5, 2, 1};

struct CashCount {
  std::array<std::int32_t, kDenominations.size()> pieces{};
  double expected = 0;  // euros, as the closing figures gave it

  double Counted() const;     // euros
  double Difference() const;  // euros; below zero: money is missing
};

// Beside the closure (a DiaCaj_Id), in its transaction. Throws DatabaseError.
void StoreCashCount(Context& context, std::int32_t closure_id, const CashCount& count);
// What was counted at that closure; nullopt when nobody counted. Throws DatabaseError.
std::optional<CashCount> ReadCashCount(Context& context, std::int32_t closure_id);

// "20,00": a note or coin as its field and its paper name it.
std::string DenominationText(std::size_t index);

}  // namespace tpv
