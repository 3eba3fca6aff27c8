#include "base/date_time.h"

#include <chrono>
#include <cstdio>
#include <vector>

#include "base/text.h"

namespace tpv {

namespace {

using Days = std::chrono::sys_days;

// Reads runs of digits and the separators between them.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool Digits(int at_least, int at_most, int& value) {
    int count = 0;
    value = 0;
    while (count < at_most && at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9') {
      value = value * 10 + (text_[at_++] - '0');
      ++count;
    }
    digits_ = count;
    return count >= at_least;
  }
  bool OneOf(std::string_view separators) {
    if (at_ >= text_.size() || separators.find(text_[at_]) == std::string_view::npos) return false;
    ++at_;
    return true;
  }
  int digits() const { return digits_; }
  bool AtEnd() const { return at_ == text_.size(); }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  int digits_ = 0;
};

int FullYear(int year, int digits) {
  if (digits > 2) return year;
  return year < 50 ? 2000 + year : 1900 + year;
}

// " 10:30[:15[.250]]" up to the end of the text, or nothing at all.
bool ReadTime(Reader& reader, DateTime& value) {
  if (reader.AtEnd()) return true;
  if (!reader.OneOf(" T")) return false;
  if (!reader.Digits(1, 2, value.hour) || !reader.OneOf(":")) return false;
  if (!reader.Digits(2, 2, value.minute)) return false;
  if (reader.OneOf(":") && !reader.Digits(2, 2, value.second)) return false;
  if (reader.OneOf(".")) {
    if (!reader.Digits(1, 3, value.millisecond)) return false;
    for (int i = reader.digits(); i < 3; ++i) value.millisecond *= 10;
  }
  return reader.AtEnd();
}

std::optional<DateTime> Checked(const DateTime& value) {
  return IsValid(value) ? std::optional(value) : std::nullopt;
}

std::string Print(const char* format, int a, int b, int c) {
  char text[48];
  std::snprintf(text, sizeof text, format, a, b, c);
  return text;
}

std::string Time(const DateTime& v) {
  return Print(" %02d:%02d:%02d", v.hour, v.minute, v.second);
}

}  // namespace

bool IsValid(const DateTime& v) {
  const std::chrono::year_month_day day{std::chrono::year(v.year),
                                        std::chrono::month(static_cast<unsigned>(v.month)),
                                        std::chrono::day(static_cast<unsigned>(v.day))};
  return day.ok() && v.year >= 1753 && v.year <= 9999 && v.hour >= 0 && v.hour < 24 &&
         v.minute >= 0 && v.minute < 60 && v.second >= 0 && v.second < 60 &&
         v.millisecond >= 0 && v.millisecond < 1000;
}

std::optional<DateTime> ParseDayFirst(std::string_view text) {
  const std::string trimmed = Trim(text);
  Reader reader(trimmed);
  DateTime value;
  if (!reader.Digits(1, 2, value.day) || !reader.OneOf("/-.")) return std::nullopt;
  if (!reader.Digits(1, 2, value.month) || !reader.OneOf("/-.")) return std::nullopt;
  if (!reader.Digits(2, 4, value.year) || reader.digits() == 3) return std::nullopt;
  value.year = FullYear(value.year, reader.digits());
  if (!ReadTime(reader, value)) return std::nullopt;
  return Checked(value);
}

std::optional<DateTime> ParseIso(std::string_view text) {
  Reader reader(text);
  DateTime value;
  if (!reader.Digits(4, 4, value.year) || !reader.OneOf("-")) return std::nullopt;
  if (!reader.Digits(2, 2, value.month) || !reader.OneOf("-")) return std::nullopt;
  if (!reader.Digits(2, 2, value.day) || !ReadTime(reader, value)) return std::nullopt;
  return Checked(value);
}

std::optional<DateTime> ParseTypedDate(std::string_view text, const DateTime& today) {
  if (const auto full = ParseDayFirst(text)) return full;
  const std::string trimmed = Trim(text);
  Reader reader(trimmed);
  DateTime value{today.year, today.month, 1};
  if (!reader.Digits(1, 2, value.day)) return std::nullopt;
  if (reader.AtEnd()) return Checked(value);
  reader.OneOf("/-.");
  if (!reader.Digits(1, 2, value.month)) return std::nullopt;
  if (reader.AtEnd()) return Checked(value);
  if (!reader.Digits(2, 4, value.year) || reader.digits() == 3 || !reader.AtEnd()) {
    return std::nullopt;
  }
  value.year = FullYear(value.year, reader.digits());
  return Checked(value);
}

std::string ToIsoSeconds(const DateTime& v) {
  return Print("%04d-%02d-%02d", v.year, v.month, v.day) + Time(v);
}

std::string ToIso(const DateTime& v) {
  char text[16];
  std::snprintf(text, sizeof text, ".%03d", v.millisecond);
  return ToIsoSeconds(v) + text;
}

std::string ToDayFirst(const DateTime& v) {
  return Print("%02d/%02d/%04d", v.day, v.month, v.year);
}

std::string ToDayFirstSeconds(const DateTime& v) { return ToDayFirst(v) + Time(v); }

DateTime AddDays(const DateTime& value, std::int64_t days) {
  const std::chrono::year_month_day day{std::chrono::year(value.year),
                                        std::chrono::month(static_cast<unsigned>(value.month)),
                                        std::chrono::day(static_cast<unsigned>(value.day))};
  const std::chrono::year_month_day moved{Days(day) + std::chrono::days(days)};
  DateTime result = value;
  result.year = static_cast<int>(moved.year());
  result.month = static_cast<int>(static_cast<unsigned>(moved.month()));
  result.day = static_cast<int>(static_cast<unsigned>(moved.day()));
  return result;
}

DateTime AddSeconds(const DateTime& value, std::int64_t seconds) {
  std::int64_t total = value.hour * 3600 + value.minute * 60 + value.second + seconds;
  std::int64_t days = total / 86400;
  total %= 86400;
  if (total < 0) {
    total += 86400;
    --days;
  }
  DateTime result = AddDays(value, days);
  result.hour = static_cast<int>(total / 3600);
  result.minute = static_cast<int>(total / 60 % 60);
  result.second = static_cast<int>(total % 60);
  return result;
}

}  // namespace tpv
