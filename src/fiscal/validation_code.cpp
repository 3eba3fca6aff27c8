#include "fiscal/validation_code.h"

#include "base/text.h"
#include "fiscal/fingerprint.h"

namespace tpv::fiscal {

namespace {

// All but letters, digits and what addresses leave alone, as %HH.
std::string Encoded(std::string_view value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) ||
                       std::string_view("-._~").find(c) != std::string_view::npos;
    if (plain) {
      text += c;
    } else {
      text += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

}  // namespace

std::string ValidationUrl(const Record& record) {
  const char* const server = record.mode == Mode::Real ? "https://www2.agenciatributaria.gob.es" : "https://prewww2.aeat.es";
  return std::string(server) + "/wlpl/TIKE-CONT/ValidarQR?nif=" + Encoded(Trim(record.issuer)) +
         "&numserie=" + Encoded(Trim(record.document.number)) + "&fecha=" + DayText(record.document.date) +
         "&importe=" + AmountText(record.total);
}

}  // namespace tpv::fiscal
