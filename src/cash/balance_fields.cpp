#include "cash/balance_fields.h"

namespace tpv {

void AddBalanceFields(ui::TextBoxes& boxes, ui::Frame& frame, const char* moment) {
  struct Field {
    int index;
    const char* caption;
    int columns;
  };
  const Field fields[] = {
      {9, moment, 18},       {10, "Vendedor", 30},          {3, "Saldo inicial", 14},
      {6, "Cobros en metalico", 14}, {7, "Cobros con tarjeta", 14}, {1, "Pagos", 14},
      {2, "Saldo", 14},      {4, "Retirado", 14},           {8, "Saldo final", 14},
      {0, "Total de cobros", 14},
  };
  for (const Field& field : fields) {
    ui::TextBox& box = boxes.Add(field.index, field.caption);
    box.columns = field.columns;
    box.locked = true;
    box.tab_stop = false;
    if (field.columns == 14) box.align = ui::Align::Right;
  }
  boxes[10].stretch = true;
  frame.Rows({{&boxes[9], &boxes[10]},
              {&boxes[3], &boxes[6], &boxes[7], &boxes[1]},
              {&boxes[2], &boxes[4], &boxes[8], &boxes[0]}});
}

}  // namespace tpv
