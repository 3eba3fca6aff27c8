#include "screen/declared_fields.h"

namespace tpv {

void DeclareFields(ui::TextBoxes& boxes, std::span<const DeclaredField> fields) {
  for (const DeclaredField& field : fields) {
    ui::TextBox& box = boxes.Add(field.index, field.caption);
    box.columns = field.columns;
    box.max_length = field.max_length;
    box.input = field.input;
    box.locked = field.shown_only;
    box.tab_stop = !field.shown_only;
  }
}

void DeclarePeriod(ui::TextBoxes& boxes, ShownAmounts amounts) {
  using enum ui::Input;
  const DeclaredField days[] = {{5, "Desde Fecha", 12, 10, Date, false},
                                {2, "Hasta Fecha", 12, 10, Date, false}};
  DeclareFields(boxes, days);
  for (const auto& [index, caption] : amounts) {
    const DeclaredField shown[] = {{index, caption, 12, 0, Any, true}};
    DeclareFields(boxes, shown);
    boxes[index].align = ui::Align::Right;
  }
}

}  // namespace tpv
