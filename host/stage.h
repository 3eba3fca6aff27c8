// What a script is played on: a front end and the hands that work it.
#pragma once

#include <memory>
#include <string>

#include "platform/ui/operator.h"

namespace tpv {

// In pixels; 0 by 0 is the usual one.
struct ScreenSize {
  int width = 0;
  int height = 0;
};

class Stage {
 public:
  virtual ~Stage() = default;
  virtual ui::FrontEnd& FrontEnd() = 0;
  virtual ui::Operator& Hands() = 0;
  // Whatever is on top asks the driver, which outlives the stage's use, for the
  // next action.
  virtual void SetDriver(ui::Driver& driver) = 0;
  // Takes a picture of what is open now, and writes the last one taken as PNG.
  virtual void TakePicture() {}
  virtual void SavePicture(const std::string& /*path*/) {}
};

// Sets up a stage for each script. Lives in main's reach: windows need one
// application around all of them.
class Theatre {
 public:
  virtual ~Theatre() = default;
  virtual std::unique_ptr<Stage> SetUp() = 0;
};

// Without windows.
std::unique_ptr<Theatre> HeadlessTheatre();
// With real windows, on no screen at all where the machine has no display.
// Throws UsageError in a build without windows.
// `screen` is the one they believe in then.
std::unique_ptr<Theatre> WindowTheatre(const ScreenSize& screen = {});

}  // namespace tpv
