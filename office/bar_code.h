// Bar codes of articles.
#pragma once

#include <string>

namespace tpv::office {

// Why a text is no bar code, in Spanish; "" when it is one. Digits of the lengths of
// EAN and UPC (8, 12, 13, 14) end with their check digit; other texts are codes of the
// shop's own.
std::string BarCodeFault(const std::string& text);

}  // namespace tpv::office
