#include "adapters/sqlite/date_functions.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "adapters/sqlite/sql_value.h"
#include "base/date_time.h"
#include "base/mask.h"
#include "base/text.h"

namespace tpv::sqlite {

namespace {

constexpr DateTime kDayZero{1900, 1, 1};

enum class Unit { Year, Month, Day, Hour, Minute, Second, Unknown };

Unit UnitOf(const std::string& part) {
  const auto is = [&](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), part) != names.end();
  };
  if (is({"year", "yy", "yyyy"})) return Unit::Year;
  if (is({"month", "mm", "m"})) return Unit::Month;
  if (is({"day", "dd", "d"})) return Unit::Day;
  if (is({"hour", "hh"})) return Unit::Hour;
  if (is({"minute", "mi", "n"})) return Unit::Minute;
  if (is({"second", "ss", "s"})) return Unit::Second;
  return Unit::Unknown;
}

// Whole days since 1900 of a civil date.
std::int64_t DayNumber(const DateTime& v) {
  const std::int64_t y = v.month <= 2 ? v.year - 1 : v.year;
  const std::int64_t m = v.month + (v.month > 2 ? -3 : 9);
  const std::int64_t day_of_year = (153 * m + 2) / 5 + v.day - 1;
  return y * 365 + y / 4 - y / 100 + y / 400 + day_of_year - 693901;
}

DateTime AddMonths(const DateTime& value, std::int64_t months) {
  DateTime result = value;
  const std::int64_t total = value.year * 12LL + value.month - 1 + months;
  result.year = static_cast<int>(total / 12);
  result.month = static_cast<int>(total % 12) + 1;
  while (result.day > 28 && !IsValid(result)) --result.day;
  return result;
}

// "20261124", "261124 10:30": year, month and day without separators, whatever the
// order of dates that have them. "2026" is the first of its year.
std::optional<DateTime> ParseUnseparated(const std::string& text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  if (digits == 4 && text.size() == 4) return ParseDayFirst("1/1/" + text);
  if (digits != 6 && digits != 8) return std::nullopt;
  return ParseDayFirst(text.substr(digits - 2, 2) + "/" + text.substr(digits - 4, 2) + "/" +
                       text.substr(0, digits - 4) + text.substr(digits));
}

std::optional<DateTime> Read(sqlite3_context* context, sqlite3_value* value) {
  const std::string text = TextOf(value);
  if (auto date = ParseIso(text)) return date;
  Fail(context, "«" + text + "» no es una fecha");
  return std::nullopt;
}

std::int64_t Count(Unit unit, const DateTime& v) {
  switch (unit) {
    case Unit::Year: return v.year;
    case Unit::Month: return v.year * 12LL + v.month;
    case Unit::Day: return DayNumber(v);
    case Unit::Hour: return DayNumber(v) * 24 + v.hour;
    case Unit::Minute: return (DayNumber(v) * 24 + v.hour) * 60 + v.minute;
    default: return ((DayNumber(v) * 24 + v.hour) * 60 + v.minute) * 60 + v.second;
  }
}

}  // namespace

void DateFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[0])) return;
  if (sqlite3_value_type(values[0]) != SQLITE_TEXT) {
    const double days = sqlite3_value_double(values[0]);
    if (!(std::fabs(days) < 1e7)) return Fail(context, "Fecha fuera de rango");
    const auto date = AddSeconds(kDayZero, static_cast<std::int64_t>(days * 86400.0));
    if (!IsValid(date)) return Fail(context, "Fecha fuera de rango");
    return ResultText(context, ToIso(date));
  }
  const std::string text = Trim(TextOf(values[0]));
  if (text.empty()) return ResultText(context, ToIso(kDayZero));
  auto date = ParseDayFirst(text);
  if (!date) date = ParseUnseparated(text);
  if (!date) date = ParseIso(text);
  if (!date) return Fail(context, "«" + text + "» no es una fecha");
  ResultText(context, ToIso(*date));
}

// tpv_date_styled(text, style): styles whose texts read alike without one.
void StyledDateFunction(sqlite3_context* context, int, sqlite3_value** values) {
  constexpr int kStyles[] = {103, 104, 105, 112, 120, 121};
  const int style = sqlite3_value_int(values[1]);
  if (std::find(std::begin(kStyles), std::end(kStyles), style) == std::end(kStyles)) {
    return Fail(context, "Estilo de fecha no admitido: «" + std::to_string(style) + "»");
  }
  DateFunction(context, 1, values);
}

void DayFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (!IsNull(values[0])) ResultText(context, TextOf(values[0]).substr(0, 10) + " 00:00:00.000");
}

void DatePartFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[1])) return;
  const auto date = Read(context, values[1]);
  if (!date) return;
  switch (UnitOf(TextOf(values[0]))) {
    case Unit::Year: return sqlite3_result_int(context, date->year);
    case Unit::Month: return sqlite3_result_int(context, date->month);
    case Unit::Day: return sqlite3_result_int(context, date->day);
    case Unit::Hour: return sqlite3_result_int(context, date->hour);
    case Unit::Minute: return sqlite3_result_int(context, date->minute);
    case Unit::Second: return sqlite3_result_int(context, date->second);
    default: Fail(context, "Parte de fecha no admitida: «" + TextOf(values[0]) + "»");
  }
}

void DateAddFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[1]) || IsNull(values[2])) return;
  const auto date = Read(context, values[2]);
  if (!date) return;
  const std::int64_t n = std::clamp<std::int64_t>(sqlite3_value_int64(values[1]), -2000000000, 2000000000);
  std::optional<DateTime> result;
  switch (UnitOf(TextOf(values[0]))) {
    case Unit::Year: result = AddMonths(*date, n * 12); break;
    case Unit::Month: result = AddMonths(*date, n); break;
    case Unit::Day: result = AddDays(*date, n); break;
    case Unit::Hour: result = AddSeconds(*date, n * 3600); break;
    case Unit::Minute: result = AddSeconds(*date, n * 60); break;
    case Unit::Second: result = AddSeconds(*date, n); break;
    default: return Fail(context, "Parte de fecha no admitida: «" + TextOf(values[0]) + "»");
  }
  if (!IsValid(*result)) return Fail(context, "Fecha fuera de rango");
  ResultText(context, ToIso(*result));
}

void DateDiffFunction(sqlite3_context* context, int, sqlite3_value** values) {
  if (IsNull(values[1]) || IsNull(values[2])) return;
  const auto from = Read(context, values[1]);
  const auto to = from ? Read(context, values[2]) : std::nullopt;
  if (!to) return;
  const Unit unit = UnitOf(TextOf(values[0]));
  if (unit == Unit::Unknown) {
    return Fail(context, "Parte de fecha no admitida: «" + TextOf(values[0]) + "»");
  }
  sqlite3_result_int64(context, Count(unit, *to) - Count(unit, *from));
}

std::string DateAsText(const std::string& kept, int style) {
  const auto date = ParseIso(kept);
  if (!date) return kept;
  switch (style) {
    case 103: return FormatDate(*date, "dd/mm/yyyy");
    case 104: return FormatDate(*date, "dd.mm.yyyy");
    case 105: return FormatDate(*date, "dd-mm-yyyy");
    case 108: return FormatDate(*date, "hh:nn:ss");
    case 112: return FormatDate(*date, "yyyymmdd");
    case 121: return ToIso(*date);
    default: return ToIsoSeconds(*date);
  }
}

}  // namespace tpv::sqlite
