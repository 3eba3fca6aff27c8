#include "fiscal/record_columns.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/sql_text.h"
#include "fiscal/fingerprint.h"
#include "platform/database.h"

namespace tpv::fiscal {

namespace {

[[noreturn]] void Refuse(std::string_view column) {
  throw DatabaseError("El registro de facturación tiene un dato cambiado: «" + std::string(column) + "»");
}

double ReadNumber(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) Refuse(text);
  return value;
}

// Without the empty one behind the last line's end.
std::vector<std::string> Lines(std::string_view column) {
  std::vector<std::string> lines = Split(column, "\n");
  if (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace

Cents ToCents(double euros) { return std::llround(RoundHalfAway(euros, 2) * 100); }

double ToEuros(Cents cents) { return static_cast<double>(cents) / 100; }

std::string OfTicket(std::int32_t id) {
  return "Fis_IdCav = " + sql::Number(std::int64_t{id}) + " AND Fis_IdFav IS NULL";
}

std::string OfInvoice(std::int32_t id) {
  return "Fis_IdCav IS NULL AND Fis_IdFav = " + sql::Number(std::int64_t{id});
}

std::string RatesColumn(const std::vector<RateAmounts>& rates) {
  std::string text;
  for (const RateAmounts& of_rate : rates) {
    text += ToPlain(of_rate.rate) + " " + ToPlain(of_rate.surcharge);
    for (const Cents cents : {of_rate.base, of_rate.tax, of_rate.surcharge_tax}) text += " " + AmountText(cents);
    text += "\n";
  }
  return text;
}

std::string RelatedColumn(const std::vector<DocumentId>& related) {
  std::string text;
  for (const DocumentId& document : related) text += DayText(document.date) + " " + document.number + "\n";
  return text;
}

std::vector<RateAmounts> ReadRates(std::string_view column) {
  std::vector<RateAmounts> rates;
  for (const std::string& line : Lines(column)) {
    const std::vector<std::string> words = Split(line, " ");
    if (words.size() != 5) Refuse(line);
    rates.push_back({ReadNumber(words[0]), ReadNumber(words[1]), ToCents(ReadNumber(words[2])),
                     ToCents(ReadNumber(words[3])), ToCents(ReadNumber(words[4]))});
  }
  return rates;
}

std::vector<DocumentId> ReadRelated(std::string_view column) {
  constexpr std::size_t kDay = 10;
  std::vector<DocumentId> related;
  for (const std::string& line : Lines(column)) {
    const auto day = ParseDayFirst(line.substr(0, kDay));
    if (!day || line.size() < kDay + 2) Refuse(line);
    related.push_back({line.substr(kDay + 1), *day});
  }
  return related;
}

}  // namespace tpv::fiscal
