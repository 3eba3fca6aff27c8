#include "office/drawer_codes.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

namespace {

bool IsCode(const std::string& text) {
  const bool digits = std::all_of(text.begin(), text.end(), IsDigit);
  return !text.empty() && text.size() <= 3 && digits && std::stoi(text) <= 255;
}

}  // namespace

std::string DrawerFault(int method, const std::string& codes) {
  if (method == 2) return codes.empty() ? "falta el nombre del dispositivo" : "";
  if (method != 1 && method != 4) return {};
  const auto pieces = Split(codes, ",");
  return std::all_of(pieces.begin(), pieces.end(), IsCode)
             ? ""
             : "se esperan números de 0 a 255 separados por comas: 27,112,0,25,250";
}

}  // namespace tpv::office
