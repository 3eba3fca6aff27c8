// The bars of an article's code.
#pragma once

#include <string>

namespace tpv::office {

// Modules from the left, '1' dark and '0' white, without the white around them: EAN 13 and
// 8 (UPC as EAN 13) where the check digit is right, else Code 128. "" for a text that
// Code 128 does not take (letters beyond ASCII) and for an empty one.
std::string BarsOf(const std::string& code);

}  // namespace tpv::office
