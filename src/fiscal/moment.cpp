#include "fiscal/moment.h"

#include <chrono>

#include "base/text.h"

namespace tpv::fiscal {

namespace {

constexpr std::int64_t kHour = 3600;

// 01:00 of universal time on the month's last Sunday, when all of Europe changes.
DateTime ChangeOf(int year, std::chrono::month month) {
  using namespace std::chrono;
  const year_month_day day{sys_days(std::chrono::year(year) / month / Sunday[last])};
  return {year, static_cast<int>(static_cast<unsigned>(month)), static_cast<int>(static_cast<unsigned>(day.day())),
          1};
}

int HoursAhead(Zone zone, const DateTime& utc) {
  const bool summer = utc >= ChangeOf(utc.year, std::chrono::March) && utc < ChangeOf(utc.year, std::chrono::October);
  return (zone == Zone::Madrid ? 1 : 0) + (summer ? 1 : 0);
}

}  // namespace

std::string MomentText(Zone zone, const DateTime& utc) {
  const int hours = HoursAhead(zone, utc);
  const std::string wall = ToIsoSeconds(AddSeconds(utc, hours * kHour));
  return ReplaceAll(wall, " ", "T") + "+0" + std::to_string(hours) + ":00";
}

std::optional<DateTime> MomentUtc(std::string_view moment) {
  constexpr std::size_t kWall = 19;  // "2026-11-24T10:30:00"
  if (moment.size() != kWall + 6 || moment.substr(kWall, 2) != "+0" || moment.substr(kWall + 3) != ":00") {
    return std::nullopt;
  }
  const auto wall = ParseIso(ReplaceAll(moment.substr(0, kWall), "T", " "));
  const int hours = moment[kWall + 2] - '0';
  if (!wall || hours < 0 || hours > 2) return std::nullopt;
  return AddSeconds(*wall, -hours * kHour);
}

DateTime UtcOfWall(Zone zone, const DateTime& wall) {
  const int most_ahead = zone == Zone::Madrid ? 2 : 1;
  const DateTime early = AddSeconds(wall, -most_ahead * kHour);
  return AddSeconds(early, (most_ahead - HoursAhead(zone, early)) * kHour);
}

}  // namespace tpv::fiscal
