#include "base/date_time.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "base/text.h"

namespace tpv {

namespace {

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

constexpr std::string_view kSeparators = "/-.";
bool IsSeparator(char c) { return kSeparators.find(c) != std::string_view::npos; }

std::optional<DateTime> Checked(const DateTime& value) {
  return IsValid(value) ? std::optional(value) : std::nullopt;
}

void AppendPadded(std::string& text, int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) text.append(width - digits.size(), '0');
  text += digits;
}

std::string Joined(int first, int second, int third, std::size_t first_width,
                   std::size_t third_width, char separator) {
  std::string text;
  text.reserve(24);  // a whole moment fits without growing
  AppendPadded(text, first, first_width);
  text += separator;
  AppendPadded(text, second, 2);
  text += separator;
  AppendPadded(text, third, third_width);
  return text;
}

std::string Time(const DateTime& v) { return " " + Joined(v.hour, v.minute, v.second, 2, 2, ':'); }

// Nearly every date of a list comes as the store writes it: to the second.
bool IsStoredMoment(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00 00:00:00";
  return text.size() == kForm.size() &&
         std::equal(text.begin(), text.end(), kForm.begin(), [](char c, char form) {
           return form == '0' ? IsDigit(c) : c == form;
         });
}

int Digits(std::string_view text, std::size_t at, std::size_t count) {
  int value = 0;
  for (const char c : text.substr(at, count)) value = value * 10 + (c - '0');
  return value;
}

// More days than the calendar has, few enough to add without overflow.
constexpr std::int64_t kBeyondCalendar = 4'000'000;
constexpr std::int64_t kDaySeconds = 86'400;

// "hoy", "ayer", "+3"; nullopt for anything else.
std::optional<int> DaysFromToday(std::string_view typed) {
  const std::string word = FoldCase(typed);
  if (word == "hoy") return 0;
  if (word == "ayer") return -1;
  Reader reader(word);
  int days = 0;
  const bool counted = reader.OneOf("+") && reader.Digits(1, 4, days) && reader.AtEnd();
  return counted ? std::optional(days) : std::nullopt;
}

std::chrono::year_month_day CalendarDay(const DateTime& v) {
  return {std::chrono::year(v.year), std::chrono::month(static_cast<unsigned>(v.month)),
          std::chrono::day(static_cast<unsigned>(v.day))};
}

}  // namespace

bool IsValid(const DateTime& v) {
  return CalendarDay(v).ok() && v.year >= 1753 && v.year <= 9999 && v.hour >= 0 && v.hour < 24 &&
         v.minute >= 0 && v.minute < 60 && v.second >= 0 && v.second < 60 && v.millisecond >= 0 &&
         v.millisecond < 1000;
}

std::optional<DateTime> ParseDayFirst(std::string_view text) {
  const std::string trimmed = Trim(text);
  Reader reader(trimmed);
  DateTime value;
  if (!reader.Digits(1, 2, value.day) || !reader.OneOf(kSeparators)) return std::nullopt;
  if (!reader.Digits(1, 2, value.month) || !reader.OneOf(kSeparators)) return std::nullopt;
  if (!reader.Digits(2, 4, value.year) || reader.digits() == 3) return std::nullopt;
  value.year = FullYear(value.year, reader.digits());
  if (!ReadTime(reader, value)) return std::nullopt;
  return Checked(value);
}

std::optional<DateTime> ParseIso(std::string_view text) {
  if (IsStoredMoment(text)) {
    return Checked({Digits(text, 0, 4), Digits(text, 5, 2), Digits(text, 8, 2), Digits(text, 11, 2),
                    Digits(text, 14, 2), Digits(text, 17, 2)});
  }
  Reader reader(text);
  DateTime value;
  if (!reader.Digits(4, 4, value.year) || !reader.OneOf("-")) return std::nullopt;
  if (!reader.Digits(2, 2, value.month) || !reader.OneOf("-")) return std::nullopt;
  if (!reader.Digits(2, 2, value.day) || !ReadTime(reader, value)) return std::nullopt;
  return Checked(value);
}

std::optional<DateTime> ParseTypedDate(std::string_view text, const DateTime& today) {
  std::string typed = Trim(text);
  if (const auto days = DaysFromToday(typed)) {
    return Checked(AddDays(StartOfDay(today), *days));
  }
  if (typed.find_first_not_of("0123456789") == std::string::npos) {
    const std::size_t size = typed.size();
    if (size > 8 || size == 3 || size == 5 || size == 7) return std::nullopt;
    if (size > 4) typed.insert(4, 1, '/');
    if (size > 2) typed.insert(2, 1, '/');
  }
  const auto separators = std::count_if(typed.begin(), typed.end(), IsSeparator);
  if (separators == 0) typed += "/" + std::to_string(today.month);
  if (separators <= 1) typed += "/" + std::to_string(today.year);
  return ParseDayFirst(typed);
}

std::string ToIsoSeconds(const DateTime& v) {
  return Joined(v.year, v.month, v.day, 4, 2, '-') + Time(v);
}

std::string ToIso(const DateTime& v) {
  std::string text = ToIsoSeconds(v) + ".";
  AppendPadded(text, v.millisecond, 3);
  return text;
}

std::string ToDayFirst(const DateTime& v) { return Joined(v.day, v.month, v.year, 2, 4, '/'); }

std::string ToDayFirstSeconds(const DateTime& v) { return ToDayFirst(v) + Time(v); }

DateTime AddDays(const DateTime& value, std::int64_t days) {
  const std::chrono::days step(std::clamp(days, -kBeyondCalendar, kBeyondCalendar));
  const std::chrono::year_month_day moved{std::chrono::sys_days(CalendarDay(value)) + step};
  DateTime result = value;
  result.year = static_cast<int>(moved.year());
  result.month = static_cast<int>(static_cast<unsigned>(moved.month()));
  result.day = static_cast<int>(static_cast<unsigned>(moved.day()));
  return result;
}

DateTime AddSeconds(const DateTime& value, std::int64_t seconds) {
  constexpr std::int64_t kMost = kBeyondCalendar * kDaySeconds;
  const std::int64_t total =
      value.hour * 3600 + value.minute * 60 + value.second + std::clamp(seconds, -kMost, kMost);
  const std::int64_t of_day = (total % kDaySeconds + kDaySeconds) % kDaySeconds;
  DateTime result = AddDays(value, (total - of_day) / kDaySeconds);
  result.hour = static_cast<int>(of_day / 3600);
  result.minute = static_cast<int>(of_day / 60 % 60);
  result.second = static_cast<int>(of_day % 60);
  return result;
}

DateTime StartOfDay(const DateTime& moment) { return {moment.year, moment.month, moment.day}; }

namespace {

DateTime Calendar(std::chrono::system_clock::time_point moment, std::tm* (*divide)(const std::time_t*, std::tm*)) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count() % 1000;
  std::tm parts{};
  divide(&seconds, &parts);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
          parts.tm_min, std::min(parts.tm_sec, 59), static_cast<int>(milliseconds)};
}

}  // namespace

DateTime ToLocal(std::chrono::system_clock::time_point moment) { return Calendar(moment, localtime_r); }

DateTime ToUtc(std::chrono::system_clock::time_point moment) { return Calendar(moment, gmtime_r); }

}  // namespace tpv
