#include "platform/ui/packed_rows.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace tpv::ui {

namespace {

// What begins a value. A short text begins with kText and its length in one byte.
enum Mark : unsigned char { kNull, kFalse, kTrue, kInt16, kInt32, kInt64, kWhole, kDouble, kMoney, kDate, kLongText, kEnd, kText };
constexpr std::size_t kLongestShort = 255 - kText;

// Small numbers of either sign take few bytes.
void PutNumber(std::string& packed, std::int64_t number) {
  auto rest = (static_cast<std::uint64_t>(number) << 1) ^ static_cast<std::uint64_t>(number >> 63);
  for (; rest >= 0x80; rest >>= 7) packed += static_cast<char>(rest | 0x80);
  packed += static_cast<char>(rest);
}

std::int64_t TakeNumber(const char*& at) {
  std::uint64_t number = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) break;
  }
  return static_cast<std::int64_t>(number >> 1) ^ -static_cast<std::int64_t>(number & 1);
}

template <typename Plain>
void PutBytes(std::string& packed, const Plain& value) {
  packed.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <typename Plain>
Plain TakeBytes(const char*& at) {
  Plain value;
  std::memcpy(&value, at, sizeof value);
  at += sizeof value;
  return value;
}

void PutDouble(std::string& packed, double number) {
  constexpr double kExact = 1e15;
  const bool whole = number == std::trunc(number) && std::fabs(number) < kExact && !(number == 0 && std::signbit(number));
  packed += static_cast<char>(whole ? kWhole : kDouble);
  whole ? PutNumber(packed, static_cast<std::int64_t>(number)) : PutBytes(packed, number);
}

void PutText(std::string& packed, const std::string& text) {
  if (text.size() <= kLongestShort) {
    packed += static_cast<char>(kText + text.size());
  } else {
    packed += static_cast<char>(kLongText);
    PutNumber(packed, static_cast<std::int64_t>(text.size()));
  }
  packed += text;
}

Mark SizeOf(const Variant& whole) {
  const std::int64_t number = whole.ToInt64();
  if (whole == Variant(static_cast<std::int32_t>(number))) return kInt32;
  return whole == Variant(static_cast<std::int16_t>(number)) ? kInt16 : kInt64;
}

void Put(std::string& packed, const Variant& value) {
  const auto marked = [&](Mark mark, std::int64_t number) {
    packed += static_cast<char>(mark);
    PutNumber(packed, number);
  };
  if (const std::string* text = value.HeldText()) return PutText(packed, *text);
  if (value.IsNull()) {
    packed += static_cast<char>(kNull);
  } else if (value.IsBool()) {
    packed += static_cast<char>(value.ToBool() ? kTrue : kFalse);
  } else if (value.IsDouble()) {
    PutDouble(packed, value.ToDouble());
  } else if (value.IsMoney()) {
    marked(kMoney, value.ToMoney().ten_thousandths);
  } else if (value.IsDate()) {
    packed += static_cast<char>(kDate);
    PutBytes(packed, value.ToDate());
  } else if (value.IsInteger()) {
    marked(SizeOf(value), value.ToInt64());
  } else {
    throw ConversionError("Una lista no muestra objetos");
  }
}

std::string_view TakeText(const char*& at, unsigned char mark) {
  const auto length = mark == kLongText ? static_cast<std::size_t>(TakeNumber(at)) : std::size_t{mark} - kText;
  const std::string_view text(at, length);
  at += length;
  return text;
}

bool IsText(unsigned char mark) { return mark >= kText || mark == kLongText; }

Variant Take(const char*& at) {
  const auto mark = static_cast<unsigned char>(*at++);
  switch (mark) {
    case kNull: return {};
    case kFalse: return Variant(false);
    case kTrue: return Variant(true);
    case kInt16: return Variant(static_cast<std::int16_t>(TakeNumber(at)));
    case kInt32: return Variant(static_cast<std::int32_t>(TakeNumber(at)));
    case kInt64: return Variant(TakeNumber(at));
    case kWhole: return Variant(static_cast<double>(TakeNumber(at)));
    case kDouble: return Variant(TakeBytes<double>(at));
    case kMoney: return Variant(Money{TakeNumber(at)});
    case kDate: return Variant(TakeBytes<DateTime>(at));
    default: return Variant(TakeText(at, mark));
  }
}

}  // namespace

const char* PackedRow::At(std::size_t column) const {
  const char* at = values_;
  for (; column > 0; --column) {
    const auto mark = static_cast<unsigned char>(*at);
    if (IsText(mark)) {
      TakeText(++at, mark);
    } else {
      Take(at);
    }
  }
  return at;
}

Variant PackedRow::operator[](std::size_t column) const {
  const char* at = At(column);
  return Take(at);
}

std::optional<std::string_view> PackedRow::HeldText(std::size_t column) const {
  const char* at = At(column);
  const auto mark = static_cast<unsigned char>(*at++);
  return IsText(mark) ? std::optional(TakeText(at, mark)) : std::nullopt;
}

std::vector<Variant> PackedRow::Values() const {
  std::vector<Variant> values;
  for (const char* at = values_; static_cast<unsigned char>(*at) != kEnd;) values.push_back(Take(at));
  return values;
}

void PackedRows::push_back(const std::vector<Variant>& row) {
  packed_.clear();
  for (const Variant& value : row) Put(packed_, value);
  packed_ += static_cast<char>(kEnd);
  std::memcpy(Room(packed_.size()), packed_.data(), packed_.size());
}

// In one piece, also where that is longer than a block.
char* PackedRows::Room(std::size_t bytes) {
  if (blocks_.empty() || used_ + bytes > kBlock) {
    const std::size_t count = (bytes + kBlock - 1) / kBlock;
    constexpr std::size_t kMost = (std::size_t{1} << 32) / kBlock;
    if (blocks_.size() + count > kMost) throw std::length_error("La lista es demasiado larga para mostrarla");
    owned_.push_back(std::make_unique_for_overwrite<char[]>(count * kBlock));
    for (std::size_t i = 0; i < count; ++i) blocks_.push_back(owned_.back().get() + i * kBlock);
    places_.push_back(static_cast<std::uint32_t>((blocks_.size() - count) * kBlock));
    used_ = bytes - (count - 1) * kBlock;
    return owned_.back().get();
  }
  places_.push_back(static_cast<std::uint32_t>((blocks_.size() - 1) * kBlock + used_));
  char* room = blocks_.back() + used_;
  used_ += bytes;
  return room;
}

}  // namespace tpv::ui
