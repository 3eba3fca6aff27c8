// A list as it leaves the till, as the operator sees it: sorted and narrowed.
#pragma once

#include <string>
#include <vector>

#include "base/date_time.h"
#include "platform/report.h"
#include "platform/ui/form.h"

namespace tpv {

// What the list is called: its frame, itself or its window.
std::string TitleOf(const ui::List& list);

// The captions, then the rows, of the columns in sight. Amounts without points between
// thousands, as spreadsheets read them.
std::vector<std::vector<std::string>> TableOf(const ui::List& list);

// The table for a clipboard: cells between tabs, rows between line ends.
std::string ClipboardText(const ui::List& list);

// On paper: what the form was asked for on the left, the sums of columns that add up below.
Report ReportOf(const ui::List& list, const DateTime& now);

}  // namespace tpv
