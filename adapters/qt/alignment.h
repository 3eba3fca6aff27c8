// Where a text stands in its field or column, in Qt's words.
#pragma once

#include <Qt>

#include "platform/ui/control.h"

namespace tpv::qt {

inline Qt::Alignment AlignmentOf(ui::Align align) {
  if (align == ui::Align::Right) return Qt::AlignRight;
  return align == ui::Align::Centre ? Qt::AlignHCenter : Qt::AlignLeft;
}

}  // namespace tpv::qt
