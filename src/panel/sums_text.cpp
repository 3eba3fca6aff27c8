#include "panel/sums_text.h"

#include <charconv>

namespace tpv::panel {

namespace {

constexpr std::int64_t kVersion = 1;
constexpr std::int64_t kEnd = 20261;  // behind everything: the text is whole

// Numbers one behind the other, each list with its length in front.
class Writer {
 public:
  template <typename Number>
  Writer& operator<<(Number number) {
    char digits[32];
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr) += ' ';
    return *this;
  }
  template <typename Key, typename Value>
  Writer& operator<<(const std::map<Key, Value>& values) {
    *this << values.size();
    for (const auto& [key, value] : values) *this << key << value;
    return *this;
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

class Reader {
 public:
  explicit Reader(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  template <typename Number>
  Reader& operator>>(Number& number) {
    const auto read = std::from_chars(at_, end_, number);
    sound_ &= read.ec == std::errc() && read.ptr != end_ && *read.ptr == ' ';
    at_ = sound_ ? read.ptr + 1 : end_;
    return *this;
  }
  template <typename Key, typename Value>
  Reader& operator>>(std::map<Key, Value>& values) {
    ForEach([&] {
      Key key{};
      Value value{};
      *this >> key >> value;
      values.emplace_hint(values.end(), key, value);
    });
    return *this;
  }
  template <typename Read>
  void ForEach(Read read) {
    std::size_t count = 0;
    *this >> count;
    while (sound_ && count-- > 0) read();
  }
  bool IsSound() const { return sound_; }

 private:
  const char* at_;
  const char* end_;
  bool sound_ = true;
};

}  // namespace

std::string ToText(const Sums& sums) {
  Writer writer;
  writer << kVersion << sums.tickets << sums.sold << sums.returned << sums.cash << sums.card << sums.discounts;
  writer << sums.by_day.size();
  for (const auto& [day, cents] : sums.by_day) writer << day.year << day.month << day.day << cents;
  for (const Cents cents : sums.by_hour) writer << cents;
  writer << sums.by_seller << sums.by_till << sums.by_rate << sums.by_article.size();
  for (const SoldArticle& sold : sums.by_article) writer << sold.article << sold.sold << sold.units;
  writer << kEnd;
  return writer.Take();
}

bool IsWhole(std::string_view text) {
  static const std::string begin = (Writer() << kVersion).Take();
  static const std::string end = " " + (Writer() << kEnd).Take();
  return text.starts_with(begin) && text.ends_with(end);
}

std::optional<Sums> SumsFrom(std::string_view text) {
  Sums sums;
  Reader reader(text);
  std::int64_t version = 0;
  reader >> version;
  if (version != kVersion) return std::nullopt;
  reader >> sums.tickets >> sums.sold >> sums.returned >> sums.cash >> sums.card >> sums.discounts;
  reader.ForEach([&] {
    DateTime day;
    Cents cents = 0;
    reader >> day.year >> day.month >> day.day >> cents;
    sums.by_day[day] = cents;
  });
  for (Cents& cents : sums.by_hour) reader >> cents;
  reader >> sums.by_seller >> sums.by_till >> sums.by_rate;
  reader.ForEach([&] {
    std::int32_t article = 0;
    reader >> article;
    SoldArticle& sold = sums.by_article.Of(article);
    reader >> sold.sold >> sold.units;
  });
  std::int64_t end = 0;
  reader >> end;
  if (!reader.IsSound() || end != kEnd) return std::nullopt;
  return sums;
}

}  // namespace tpv::panel
