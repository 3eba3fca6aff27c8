#include "suite/due_dates.h"

#include <algorithm>

#include "base/rounding.h"

namespace tpv::suite {

namespace {

// That day of the month of `date`, or the month's last.
DateTime OnDay(DateTime date, int day) {
  date.day = std::min(day, 31);
  while (!IsValid(date)) --date.day;
  return date;
}

DateTime NextMonth(DateTime date) {
  date.day = 1;
  date.year += date.month == 12 ? 1 : 0;
  date.month = date.month % 12 + 1;
  return date;
}

// The first payment day that is not before the date.
DateTime OnPaymentDay(const DateTime& date, const PaymentTerms& terms) {
  const auto [first, last] = std::minmax(terms.day1, terms.day2);
  if (last <= 0) return date;
  for (const int day : {first, last}) {
    if (day > 0 && OnDay(date, day) >= date) return OnDay(date, day);
  }
  return OnDay(NextMonth(date), first > 0 ? first : last);
}

DateTime Adjusted(const DateTime& date, const PaymentTerms& terms) {
  const DateTime due = OnPaymentDay(date, terms);
  if (due.month != terms.month_without) return due;
  const bool has_days = std::max(terms.day1, terms.day2) > 0;
  return has_days ? OnPaymentDay(NextMonth(due), terms) : OnDay(NextMonth(due), due.day);
}

// Shares for the lines that have none, so that all make a whole.
void FillShares(std::vector<PaymentLine>& lines) {
  double given = 0;
  int without = 0;
  for (const PaymentLine& line : lines) {
    given += line.share;
    without += line.share <= 0;
  }
  for (PaymentLine& line : lines) {
    if (line.share <= 0) line.share = std::max(0.0, 100 - given) / without;
  }
}

}  // namespace

std::vector<DueDate> DueDates(const DateTime& invoiced, double total,
                              std::vector<PaymentLine> lines, const PaymentTerms& terms) {
  if (lines.empty()) lines.emplace_back();
  FillShares(lines);
  std::vector<DueDate> due;
  double left = total;
  for (const PaymentLine& line : lines) {
    const double part = RoundHalfAway(total * line.share / 100, 2);
    due.push_back({Adjusted(AddDays(invoiced, line.days), terms), part, line.mode});
    left -= part;
  }
  due.back().amount = RoundHalfAway(due.back().amount + left, 2);
  return due;
}

}  // namespace tpv::suite
