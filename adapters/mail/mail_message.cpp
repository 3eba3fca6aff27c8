#include "adapters/mail/mail_message.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::size_t kPlainLength = 60;
constexpr std::size_t kWordBytes = 42;  // 56 letters and 12 of wrapping: under 75
constexpr std::size_t kLineLength = 76;

bool IsPlain(std::string_view text) {
  const bool ascii =
      std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
  return ascii && text.size() <= kPlainLength && text.find("=?") == std::string_view::npos;
}

// Words that hold whole characters each.
std::string EncodedWords(const std::string& text) {
  std::string words;
  std::size_t start = 0;
  std::size_t end = 0;
  const auto flush = [&] {
    words += (words.empty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") +
             Base64(std::string_view(text).substr(start, end - start)) + "?=";
    start = end;
  };
  for (std::size_t next = 0; next < text.size(); end = next) {
    NextCharacter(text, next);
    if (next - start > kWordBytes) flush();
  }
  if (end > start) flush();
  return words;
}

bool IsAddress(std::string_view text) {
  const std::size_t at = text.find('@');
  const bool shape = at != std::string_view::npos && at > 0 && at + 1 < text.size() &&
                     text.find('@', at + 1) == std::string_view::npos;
  return shape && std::all_of(text.begin(), text.end(), [](char c) {
           return c > ' ' && c < 0x7F &&
                  std::string_view("<>()[]\\,;:\"").find(c) == std::string_view::npos;
         });
}

std::string BodyText(std::string_view body) {
  const std::string lines =
      ReplaceAll(ReplaceAll(ValidUtf8(body), kLineBreak, "\n"), "\n", kLineBreak);
  const std::string letters = Base64(lines);
  std::string text;
  for (std::size_t at = 0; at < letters.size(); at += kLineLength) {
    text += letters.substr(at, kLineLength) + std::string(kLineBreak);
  }
  return text;
}

// "<20261124103000.5f3a9c01d2e4b687@tienda.es>": never the same twice.
std::string MessageId(const std::string& from, const DateTime& now) {
  std::string stamp;
  for (const char c : ToIsoSeconds(now)) {
    if (IsDigit(c)) stamp += c;
  }
  std::random_device random;
  char unique[17];
  std::snprintf(unique, sizeof unique, "%08x%08x", random(), random());
  return "<" + stamp + "." + unique + from.substr(from.find('@')) + ">";
}

}  // namespace

std::vector<std::string> Addresses(std::string_view text) {
  std::vector<std::string> addresses;
  for (const std::string& piece : Split(ReplaceAll(text, ",", ";"), ";")) {
    const std::string address = Trim(piece);
    if (address.empty()) continue;
    if (!IsAddress(address)) return {};
    addresses.push_back(address);
  }
  return addresses;
}

std::string HeaderText(std::string_view utf8) {
  return IsPlain(utf8) ? std::string(utf8) : EncodedWords(OneLine(utf8));
}

std::string HeaderName(std::string_view utf8) {
  if (!IsPlain(utf8)) return EncodedWords(OneLine(utf8));
  return "\"" + ReplaceAll(ReplaceAll(utf8, "\\", "\\\\"), "\"", "\\\"") + "\"";
}

std::string Base64(std::string_view bytes) {
  constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](std::size_t i) -> unsigned {
      return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
    };
    const unsigned group = byte(0) << 16 | byte(1) << 8 | byte(2);
    for (const int shift : {18, 12, 6, 0}) text += kLetters[group >> shift & 63];
    if (at + 2 >= bytes.size()) text.back() = '=';
    if (at + 1 >= bytes.size()) text[text.size() - 2] = '=';
  }
  return text;
}

std::string MailDate(const DateTime& local) {
  std::tm time{};
  time.tm_year = local.year - 1900;
  time.tm_mon = local.month - 1;
  time.tm_mday = local.day;
  time.tm_hour = local.hour;
  time.tm_min = local.minute;
  time.tm_sec = local.second;
  time.tm_isdst = -1;
  std::mktime(&time);  // finds the weekday and the zone
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const long minutes = std::abs(time.tm_gmtoff) / 60;
  char text[64];
  std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d %c%02ld%02ld",
                kDays[time.tm_wday], time.tm_mday, kMonths[time.tm_mon], time.tm_year + 1900,
                time.tm_hour, time.tm_min, time.tm_sec, time.tm_gmtoff < 0 ? '-' : '+',
                minutes / 60, minutes % 60);
  return text;
}

std::string MailMessage(const Mail& mail, const std::string& from,
                        const std::vector<std::string>& recipients, const DateTime& now) {
  std::string to;
  for (const std::string& recipient : recipients) to += (to.empty() ? "" : ",\r\n ") + recipient;
  const std::string sender =
      Trim(mail.from_name).empty() ? from : HeaderName(mail.from_name) + "\r\n <" + from + ">";
  return "Date: " + MailDate(now) + "\r\nFrom: " + sender + "\r\nTo: " + to +
         "\r\nMessage-ID: " + MessageId(from, now) + "\r\nSubject: " + HeaderText(mail.subject) +
         "\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8" +
         "\r\nContent-Transfer-Encoding: base64\r\n\r\n" + BodyText(mail.body);
}

}  // namespace tpv
