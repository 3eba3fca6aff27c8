#include "office/articles/bars.h"

#include <algorithm>
#include <array>

#include "office/bar_code.h"

namespace tpv::office {

namespace {

constexpr const char* kEnd = "101";
constexpr const char* kMiddle = "01010";

// A digit of EAN on the left with an odd number of dark modules; the others are made of it.
constexpr std::array<const char*, 10> kOdd = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                              "0110001", "0101111", "0111011", "0110111", "0001011"};
// Which of the six left digits are even ('1') tells the first digit.
constexpr std::array<const char*, 10> kParity = {"000000", "001011", "001101", "001110", "010011",
                                                 "011001", "011100", "010101", "010110", "011010"};

std::string Odd(char digit) { return kOdd[static_cast<std::size_t>(digit - '0')]; }

std::string Right(char digit) {
  std::string modules = Odd(digit);
  for (char& module : modules) module = module == '0' ? '1' : '0';
  return modules;
}

std::string Even(char digit) {
  const std::string right = Right(digit);
  return {right.rbegin(), right.rend()};
}

std::string Ean13(const std::string& code) {
  const std::string parity = kParity[static_cast<std::size_t>(code[0] - '0')];
  std::string bars = kEnd;
  for (std::size_t i = 1; i <= 6; ++i) bars += parity[i - 1] == '1' ? Even(code[i]) : Odd(code[i]);
  bars += kMiddle;
  for (std::size_t i = 7; i <= 12; ++i) bars += Right(code[i]);
  return bars + kEnd;
}

std::string Ean8(const std::string& code) {
  std::string bars = kEnd;
  for (std::size_t i = 0; i < 4; ++i) bars += Odd(code[i]);
  bars += kMiddle;
  for (std::size_t i = 4; i < 8; ++i) bars += Right(code[i]);
  return bars + kEnd;
}

// Code 128: widths of dark and white in turn, by value; then the three starts and the end.
constexpr const char* kWidths[] = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312", "132212", "221213", "221312",
    "231212", "112232", "122132", "122231", "113222", "123122", "123221", "223211", "221132", "221231", "213212",
    "223112", "312131", "311222", "321122", "321221", "312212", "322112", "322211", "212123", "212321", "232121",
    "111323", "131123", "131321", "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331",
    "132131", "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311", "213131", "311123",
    "311321", "331121", "312113", "312311", "332111", "314111", "221411", "431111", "111224", "111422", "121124",
    "121421", "141122", "141221", "112214", "112412", "122114", "122411", "142112", "142211", "241211", "221114",
    "413111", "241112", "134111", "111242", "121142", "121241", "114212", "124112", "124211", "411212", "421112",
    "421211", "212141", "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113", "411311",
    "113141", "114131", "311141", "411131", "211412", "211214", "211232", "2331112"};
constexpr std::size_t kStartText = 104;
constexpr std::size_t kStop = 106;
constexpr std::size_t kChecks = 103;

std::string Modules(std::size_t value) {
  std::string modules;
  char module = '1';
  for (const char* width = kWidths[value]; *width != '\0'; ++width) {
    modules.append(static_cast<std::size_t>(*width - '0'), module);
    module = module == '1' ? '0' : '1';
  }
  return modules;
}

std::string Code128(const std::string& text) {
  std::string bars = Modules(kStartText);
  std::size_t sum = kStartText;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto value = static_cast<std::size_t>(text[i] - ' ');
    bars += Modules(value);
    sum += value * (i + 1);
  }
  return bars + Modules(sum % kChecks) + Modules(kStop);
}

bool Within(const std::string& text, char least, char most) {
  return std::all_of(text.begin(), text.end(), [&](char c) { return c >= least && c <= most; });
}

}  // namespace

std::string BarsOf(const std::string& code) {
  const bool checked = Within(code, '0', '9') && BarCodeFault(code).empty();
  if (checked && code.size() == 13) return Ean13(code);
  if (checked && code.size() == 12) return Ean13("0" + code);
  if (checked && code.size() == 8) return Ean8(code);
  return code.empty() || !Within(code, ' ', '~') ? std::string() : Code128(code);
}

}  // namespace tpv::office
