// Text boxes declared as a table, a row each, instead of set up one by one.
#pragma once

#include <initializer_list>
#include <span>
#include <utility>

#include "platform/ui/controls.h"

namespace tpv {

struct DeclaredField {
  int index;
  const char* caption;
  int columns;      // width in characters
  int max_length;   // 0: no limit
  ui::Input input;
  bool shown_only;  // the operator cannot type into it
};

void DeclareFields(ui::TextBoxes& boxes, std::span<const DeclaredField> fields);

// Amounts that a list shows below its rows: by index, with their captions.
using ShownAmounts = std::initializer_list<std::pair<int, const char*>>;

// A list's period, from box 5 to box 2, and its amounts.
void DeclarePeriod(ui::TextBoxes& boxes, ShownAmounts amounts);

}  // namespace tpv
