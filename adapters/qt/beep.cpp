#include "adapters/qt/beep.h"

#include <QApplication>

#include "adapters/qt/qt_front_end.h"

namespace tpv::qt {

void Beep::Warn() {
  if (FormWindow* window = front_end_.TopWindow()) window->FlashBand();
  if (!instead_()) QApplication::beep();
}

}  // namespace tpv::qt
