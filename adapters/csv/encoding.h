// What the bytes of a table's file mean.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tpv::csv {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Whether bytes are UTF-8, piece by piece.
class Utf8Check {
 public:
  void Take(std::string_view bytes);
  // Of all that was taken; a character that is not complete is none.
  bool Valid() const { return valid_ && missing_ == 0; }

 private:
  bool valid_ = true;
  int missing_ = 0;                           // bytes of the character that has begun
  unsigned char least_ = 0x80, most_ = 0xBF;  // of the next of them
};

// The UTF-8 text of Windows-1252 bytes.
std::string FromWindows1252(std::string_view bytes);

}  // namespace tpv::csv
