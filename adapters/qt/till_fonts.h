// The fonts that the till's own windows use.
#pragma once

namespace tpv::qt {

// Has the program see the machine's fonts without the rules that a desktop keeps for all
// of them: reading those takes a fifth of a start. Where the till's own font is missing, or
// FONTCONFIG_FILE says otherwise, the rules choose what stands in for it. Before the
// QApplication is made; not in a host's own program.
void UseTillFonts();

}  // namespace tpv::qt
