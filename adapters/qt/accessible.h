// What a screen reader finds: Qt tells it about the widgets it knows, this about ours.
#pragma once

#include "adapters/qt/form_layout.h"

namespace tpv::qt {

// Screens are frames, their band is a status bar, a combo box has its caption for a
// name. Once a program; more does nothing.
void TellAccessibility();

// What takes the focus says what it is. A box without a caption stands behind the one
// that it explains: a code and the name of whose it is.
void NameAndDescribe(const ui::Form& form, const Views& views);

}  // namespace tpv::qt
