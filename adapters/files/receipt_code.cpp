#include "adapters/files/receipt_code.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace tpv {

namespace {

constexpr double kMillimetres = 10 * kCodeSide;
constexpr std::string_view kCentred("\x1B\x61\x01", 3);
constexpr std::string_view kToTheLeft("\x1B\x61\0", 3);
constexpr std::string_view kWhite("\x1BJ\x20", 3);  // 4 mm, 2.2 on the finest steps there are

std::string Little16(std::size_t number) {
  return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8 & 0xFF)};
}

int DotsOfModule(const SquareCode& code, const CodePrinting& printing) {
  const long dots = std::lround(kMillimetres * printing.dots_per_mm / code.side);
  return static_cast<int>(std::clamp(dots, 1L, 16L));
}

std::string Function(char number, const std::string& parameters) {
  return "\x1D(k" + Little16(parameters.size() + 2) + '1' + number + parameters;
}

// Model 2, size, level M, the text, go.
std::string OwnCommand(const SquareCode& code, int dots) {
  return Function('A', std::string("2\0", 2)) + Function('C', {static_cast<char>(dots)}) +
         Function('E', "1") + Function('P', "0" + code.text) + Function('Q', "0");
}

std::string Image(const SquareCode& code, int dots) {
  const int side = code.side * dots;
  const int bytes_a_row = (side + 7) / 8;
  std::string image("\x1Dv0\0", 4);
  image += Little16(static_cast<std::size_t>(bytes_a_row)) + Little16(static_cast<std::size_t>(side));
  for (int y = 0; y < side; ++y) {
    std::string row(static_cast<std::size_t>(bytes_a_row), '\0');
    for (int x = 0; x < side; ++x) {
      if (!code.Dark(x / dots, y / dots)) continue;
      char& byte = row[static_cast<std::size_t>(x / 8)];
      byte = static_cast<char>(byte | 0x80 >> x % 8);
    }
    image += row;
  }
  return image;
}

}  // namespace

std::optional<CodePrinting> ParseCodePrinting(std::string_view setting) {
  const std::size_t colon = std::min(setting.find(':'), setting.size());
  const std::string_view way = setting.substr(0, colon);
  if (way != "own" && way != "image") return std::nullopt;
  CodePrinting printing{way == "image"};
  if (colon == setting.size()) return printing;
  const auto dots_an_inch = ParseInt32(setting.substr(colon + 1));
  if (!dots_an_inch || *dots_an_inch < 100 || *dots_an_inch > 600) return std::nullopt;
  printing.dots_per_mm = *dots_an_inch / 25.4;
  return printing;
}

std::string CodeBytes(const SquareCode& code, const CodePrinting& printing) {
  const int dots = DotsOfModule(code, printing);
  std::string bytes(kCentred);
  bytes += kWhite;
  bytes += printing.as_image ? Image(code, dots) : OwnCommand(code, dots);
  bytes += kWhite;
  bytes += kToTheLeft;
  return bytes;
}

}  // namespace tpv
