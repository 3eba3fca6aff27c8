#include "adapters/csv/encoding.h"

#include "base/text.h"

namespace tpv::csv {

namespace {

// 0x80 to 0x9F; U+FFFD for the five that are no character.
constexpr char32_t kUpper[32] = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

}  // namespace

void Utf8Check::Take(std::string_view bytes) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (missing_ > 0) {
      valid_ &= byte >= least_ && byte <= most_;
      --missing_;
      least_ = 0x80, most_ = 0xBF;
    } else if (byte >= 0x80) {
      missing_ = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
      valid_ &= byte >= 0xC2 && byte <= 0xF4;
      // No longer form than needed, no surrogates, nothing beyond the last plane.
      if (byte == 0xE0) least_ = 0xA0;
      if (byte == 0xED) most_ = 0x9F;
      if (byte == 0xF0) least_ = 0x90;
      if (byte == 0xF4) most_ = 0x8F;
    }
    if (!valid_) return;
  }
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      AppendCharacter(text, byte < 0xA0 ? kUpper[byte - 0x80] : byte);
    }
  }
  return text;
}

}  // namespace tpv::csv
