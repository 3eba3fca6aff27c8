#include "office/bar_code.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

namespace {

// Of the digits before the last: every second one from the right counts three times.
char CheckDigit(const std::string& digits) {
  int sum = 0;
  int weight = 3;
  for (auto at = digits.rbegin() + 1; at != digits.rend(); ++at) {
    sum += (*at - '0') * weight;
    weight = 4 - weight;
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

}  // namespace

std::string BarCodeFault(const std::string& text) {
  if (text.find("E+") != std::string::npos) {
    return "la hoja de cálculo ha estropeado el código: dé a su columna formato de texto";
  }
  const std::size_t size = text.size();
  const bool checked = size == 8 || (size >= 12 && size <= 14);
  if (!checked || !std::all_of(text.begin(), text.end(), IsDigit)) return {};
  const char digit = CheckDigit(text);
  if (text.back() == digit) return {};
  return std::string("la última cifra tendría que ser ") + digit +
         ": mire si el código está bien copiado";
}

}  // namespace tpv::office
