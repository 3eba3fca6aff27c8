// The ten boxes that show how a till stands: shared by opening and closing.
#pragma once

#include "platform/ui/controls.h"

namespace tpv {

// Boxes 9, 10, 3, 6, 7, 1, 2, 4, 8 and 0, shown only, laid out in the frame.
// `moment` is the caption of box 9.
void AddBalanceFields(ui::TextBoxes& boxes, ui::Frame& frame, const char* moment);

}  // namespace tpv
