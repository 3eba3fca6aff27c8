// Real windows for a program that has its own user interface, or none so far.
#pragma once

#include <memory>
#include <stdexcept>

#include "platform/sound.h"
#include "platform/ui/front_end.h"

namespace tpv {

class HostWindows {
 public:
  virtual ~HostWindows() = default;
  virtual ui::FrontEnd& FrontEnd() = 0;
  // Tells in a box what no window has shown.
  virtual void ShowNotices() = 0;
  virtual Sound& Loudspeaker() = 0;
};

// No windows can be had here: the text says why.
class NoWindows : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Uses the program's QApplication and leaves its looks and its event loop alone;
// where there is none it makes one, which goes with the last of these. Throws
// NoWindows.
std::unique_ptr<HostWindows> OpenHostWindows();

}  // namespace tpv
