#include "panel/period.h"

#include <chrono>

#include "data/statements.h"

namespace tpv::panel {

namespace {

using std::chrono::sys_days;

std::chrono::year_month_day CalendarDay(const DateTime& day) {
  return std::chrono::year(day.year) / day.month / day.day;
}

DateTime MidnightOf(std::chrono::year_month_day day) {
  if (!day.ok()) day = day.year() / day.month() / std::chrono::last;  // the 31st of a shorter month
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

DateTime MonthsBefore(const DateTime& day, int months) {
  return MidnightOf(CalendarDay(day) - std::chrono::months(months));
}

Days Shifted(const Days& days, std::int64_t by) { return {AddDays(days.first, by), AddDays(days.last, by)}; }

}  // namespace

std::int64_t Days::Count() const {
  return (sys_days(CalendarDay(last)) - sys_days(CalendarDay(first))).count() + 1;
}

std::string Days::Between() const { return BetweenDays(ToDayFirst(first), ToDayFirst(last)); }

std::string Days::Text() const {
  return first == last ? ToDayFirst(first) : ToDayFirst(first) + " - " + ToDayFirst(last);
}

Periods PeriodsOf(Span span, const DateTime& now) {
  const DateTime today = StartOfDay(now);
  const std::chrono::weekday weekday(sys_days(CalendarDay(today)));
  const auto since_monday = static_cast<std::int64_t>(weekday.iso_encoding()) - 1;
  const DateTime first_of_month{today.year, today.month, 1};
  const DateTime new_year{today.year, 1, 1};
  switch (span) {
    case Span::Today: return PeriodsOf({today, today});
    case Span::Yesterday: return PeriodsOf(Shifted({today, today}, -1));
    case Span::Week: {
      const Days week{AddDays(today, -since_monday), today};
      return {week, Shifted(week, -7)};
    }
    case Span::Month: return {{first_of_month, today}, {MonthsBefore(first_of_month, 1), MonthsBefore(today, 1)}};
    case Span::Year: return {{new_year, today}, {MonthsBefore(new_year, 12), MonthsBefore(today, 12)}};
  }
  return {};
}

Days MonthOf(const DateTime& day) {
  return {{day.year, day.month, 1}, MidnightOf(CalendarDay(day).year() / CalendarDay(day).month() / std::chrono::last)};
}

Periods PeriodsOf(const Days& days) { return {days, Shifted(days, -days.Count())}; }

}  // namespace tpv::panel
