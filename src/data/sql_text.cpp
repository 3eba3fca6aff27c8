#include "data/sql_text.h"

#include <algorithm>
#include <stdexcept>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::sql {

std::string Number(std::int64_t value) { return std::to_string(value); }

std::string Number(double value) { return ToPlain(value); }

std::string Quoted(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return Quoted(ReplaceAll(text, {"\0", 1}, ""));
  const bool plain = std::all_of(text.begin(), text.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return (plain ? "'" : "N'") + ReplaceAll(text, "'", "''") + "'";
}

std::string WholeNumber(std::string_view field_text) {
  return std::to_string(Int32OrZero(field_text));
}

std::string DateText(std::string_view field_text) {
  const auto date = ParseDayFirst(field_text);
  if (!date) throw std::invalid_argument("«" + std::string(field_text) + "» no es una fecha");
  return ToDayFirst(*date);
}

}  // namespace tpv::sql
