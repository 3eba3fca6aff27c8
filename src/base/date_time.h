// A moment of the shop's calendar, to the millisecond, without a time zone.
#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tpv {

// A plain calendar value; always valid when made by the functions below.
struct DateTime {
  int year = 1900;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;

  auto operator<=>(const DateTime&) const = default;
};

bool IsValid(const DateTime& value);

// Reads the day/month/year text of a date field or a quoted literal, with an
// optional time: "24/11/2026", "24/11/26", "24-11-2026 10:30", "24/11/2026
// 23:59:00.250". Two-digit years below 50 belong to 2000, the others to 1900.
// Nullopt when the text is no such date or the day does not exist.
std::optional<DateTime> ParseDayFirst(std::string_view text);

// Reads "YYYY-MM-DD[ HH:MM:SS[.mmm]]". Nullopt when the text is no such date.
std::optional<DateTime> ParseIso(std::string_view text);

// What the operator typed into a date field: all of ParseDayFirst, and digits
// alone: "24112026", "241126"; "2411" and "24/11" take the year of `today`,
// "24" its month and year. Any other count of digits is no date. "hoy", "ayer" and
// "+3" count from `today`.
std::optional<DateTime> ParseTypedDate(std::string_view text, const DateTime& today);

// "YYYY-MM-DD HH:MM:SS.mmm": sorts as text in time order.
std::string ToIso(const DateTime& value);
// "YYYY-MM-DD HH:MM:SS"
std::string ToIsoSeconds(const DateTime& value);
// "dd/mm/yyyy" and "dd/mm/yyyy hh:mm:ss".
std::string ToDayFirst(const DateTime& value);
std::string ToDayFirstSeconds(const DateTime& value);

// A result that leaves the calendar is not IsValid; it never wraps around.
DateTime AddSeconds(const DateTime& value, std::int64_t seconds);
DateTime AddDays(const DateTime& value, std::int64_t days);

// Midnight, when the day of the moment begins.
DateTime StartOfDay(const DateTime& moment);

// What the clock on the wall shows in the machine's time zone.
DateTime ToLocal(std::chrono::system_clock::time_point moment);
DateTime ToUtc(std::chrono::system_clock::time_point moment);

}  // namespace tpv
