// The warning sound as the window system makes it, and a flash of the band for
// where nobody hears it.
#pragma once

#include <functional>

#include "platform/sound.h"

namespace tpv::qt {

class QtFrontEnd;

class Beep : public Sound {
 public:
  // `instead` makes another sound; false when it did not. The front end outlives
  // the sound.
  explicit Beep(QtFrontEnd& front_end, std::function<bool()> instead = [] { return false; })
      : front_end_(front_end), instead_(std::move(instead)) {}

  void Warn() override;

 private:
  QtFrontEnd& front_end_;
  std::function<bool()> instead_;
};

}  // namespace tpv::qt
