// The one QApplication of the program.
#pragma once

#include <memory>

class QApplication;

namespace tpv {

// On no screen at all where the machine has no display.
class Application {
 public:
  Application();
  ~Application();

 private:
  int argc_ = 1;
  char name_[4] = "tpv";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

}  // namespace tpv
