// The one QApplication of the program.
#pragma once

#include <memory>
#include <thread>

class QApplication;

namespace tpv {

// Whether windows can be seen: the machine has a display, or somebody chose where Qt shows them.
bool CanShowWindows();

// On no screen at all where the machine has no display. A display that does not answer
// ends the program with 1.
class Application {
 public:
  Application();
  ~Application();

 private:
  int argc_ = 1;
  char name_[4] = "tpv";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
  std::thread rules_;  // reads the fonts' rules before the first paper needs them
};

}  // namespace tpv
