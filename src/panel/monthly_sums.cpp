#include "panel/monthly_sums.h"

#include <algorithm>

#include "base/mask.h"
#include "panel/sums_text.h"
#include "platform/database.h"
#include "platform/month_memory.h"
#include "platform/pulse.h"

namespace tpv::panel {

MonthlySums::MonthlySums(Connection& connection, const DateTime& today)
    : connection_(connection), memory_(connection.Months()), first_of_month_{today.year, today.month, 1} {}

std::vector<MonthlySums::Part> MonthlySums::PartsOf(const Days& days) const {
  std::vector<Part> parts;
  for (DateTime first = days.first; first <= days.last;) {
    const Days month = MonthOf(first);
    const Days in_month{first, std::min(month.last, days.last)};
    const bool whole = memory_ != nullptr && in_month == month && month.last < first_of_month_;
    if (!whole && !parts.empty() && parts.back().month.empty()) {
      parts.back().days.last = in_month.last;
    } else {
      parts.push_back({in_month, whole ? FormatDate(first, "YYYY") + "-" + FormatDate(first, "MM") : ""});
    }
    first = AddDays(month.last, 1);
  }
  return parts;
}

// Nothing of the books: what cannot be kept, in a store too busy or without room, is added
// up again the next time.
void MonthlySums::Announce(const Days& days) {
  announced_ += days.Count();
  std::vector<std::string> missing;
  for (const Part& part : PartsOf(days)) {
    if (!part.month.empty() && !marks_.contains(part.month) && !IsWhole(memory_->Recall(part.month))) {
      missing.push_back(part.month);
    }
  }
  if (missing.empty()) return;
  try {
    Transaction transaction(connection_);
    std::map<std::string, std::string> marks;
    for (const std::string& month : missing) marks[month] = memory_->Announce(month);
    transaction.Commit();
    marks_.merge(marks);
  } catch (const DatabaseError&) {
  }
}

Sums MonthlySums::Read(const Days& days, const LineTax& tax_of) {
  Sums sums;
  for (const Part& part : PartsOf(days)) {
    Pulse(static_cast<double>(read_) / static_cast<double>(std::max(announced_, std::int64_t{1})));
    sums += ReadPart(part, tax_of);
    read_ += part.days.Count();
  }
  return sums;
}

Sums MonthlySums::ReadPart(const Part& part, const LineTax& tax_of) {
  if (part.month.empty()) return ReadSums(connection_, part.days, tax_of);
  if (auto kept = SumsFrom(memory_->Recall(part.month))) return *std::move(kept);
  Sums sums = ReadSums(connection_, part.days, tax_of);
  if (marks_.contains(part.month)) texts_[part.month] = ToText(sums);
  return sums;
}

void MonthlySums::Keep() {
  if (texts_.empty()) return;
  try {
    Transaction transaction(connection_);
    for (const auto& [month, text] : texts_) memory_->Keep(month, marks_.at(month), text);
    transaction.Commit();
  } catch (const DatabaseError&) {
  }
}

}  // namespace tpv::panel
