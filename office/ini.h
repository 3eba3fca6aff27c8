// Small files of settings: sections of "key = value" lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "office/refusal.h"

namespace tpv::office {

struct IniEntry {
  std::string key;  // "section.key", in small letters
  std::string value;
  long line = 0;
};

struct Ini {
  std::vector<IniEntry> entries;  // in the file's order; a key may come more than once
  Refusals refusals;              // lines that are none
};

// Lines that are empty or begin with ";" or "#" count for nothing; blanks around
// keys and values neither. The text is UTF-8, with or without its mark.
Ini ReadIni(std::string_view text);

}  // namespace tpv::office
