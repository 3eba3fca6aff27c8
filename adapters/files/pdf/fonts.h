// The machine's fonts as windows and paper find them. A desktop keeps long rules of which
// font stands in for which; reading them takes a fifth of a program's start, and a window
// in a font that the machine has needs none of them.
#pragma once

namespace tpv {

// Until ReadFontRules, fonts are found by their own names. No effect where the machine
// lacks the family, or where FONTCONFIG_FILE says otherwise. Before any other use of fonts.
void FindFontsByName(const char* family);
// From now on the rules count for good. Any thread; waits for whoever is reading them.
void ReadFontRules();

}  // namespace tpv
