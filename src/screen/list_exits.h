// How a list leaves the till, as the operator sees it: as a file of a spreadsheet, on paper.
#pragma once

#include <string>

#include "platform/ui/form.h"

namespace tpv {

struct Context;

// Tell the operator how it went; "" asks where the file goes.
void ExportList(Context& context, ui::List& list, const std::string& path);
void PrintList(Context& context, ui::List& list, ui::ListPaper paper);

}  // namespace tpv
