// What the program's windows stand on: the machine, or what a script records.
#pragma once

#include <functional>
#include <string>

#include "platform/label_press.h"
#include "platform/ports.h"
#include "platform/table_file.h"

namespace tpv {

// Everything referred to outlives the windows.
struct Program {
  Ports ports;
  TableFiles& tables;
  LabelPress& labels;
  bool in_background = true;  // mails go out while the operator goes on
  std::string notice{};       // for the operator, as the first window opens
  // Called with each store that is opened for work.
  std::function<void(const std::string& store)> opened{};
};

}  // namespace tpv
