// The warning sound as the window system makes it.
#pragma once

#include <QApplication>

#include "platform/sound.h"

namespace tpv::qt {

class Beep : public Sound {
 public:
  void Warn() override { QApplication::beep(); }
};

}  // namespace tpv::qt
