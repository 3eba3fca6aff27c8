// Controls and rows as a transcript shows them.
#pragma once

#include <string>
#include <string_view>

#include "platform/ui/front_end.h"

namespace tpv {
class Recordset;
struct ChartData;
struct Report;
}
namespace tpv::ui {
struct Control;
class Form;
}

namespace tpv::scenario {

// A control's text: what is typed in a box, a button's caption, "True"/"False".
std::string TextOf(const ui::Control& control);
// The displayed rows of a grid or list, one a line; a chart's title and series, then its
// labels with their values.
bool HasRows(const ui::Control& control);
std::size_t RowCount(const ui::Control& control);
int CurrentRow(const ui::Control& control);  // -1 for none
std::string RowsOf(const ui::Control& control);
// A chart's values over that label, joined by " | "; "none" without such a label.
std::string ValueOf(const ChartData& chart, std::string_view label);
// What the form's band says under a label; "none" without such an item.
std::string InBand(const ui::Form& form, std::string_view label);
std::string BoxText(const ui::MessageBox& box);
std::string ReportText(const Report& report);
// Fields joined by " | ", one row a line.
std::string PlainRows(Recordset& rows);

}  // namespace tpv::scenario
