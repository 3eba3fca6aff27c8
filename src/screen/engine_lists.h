// What the operator does with any list: sorts it, narrows it, takes it away.
#pragma once

#include "platform/ui/form.h"

namespace tpv::ui {

// Finds the rows' places after an event; the current row is one in sight.
void ArrangeLists(Form& form);

// What is offered for a list: its orders, and where the form has them, the ways out.
std::vector<MenuEntry> ListMenu(List& list, const std::function<void(int column)>& sort);

}  // namespace tpv::ui
