// Counting the drawer of the till that is about to be closed.
#include <cmath>

#include "base/mask.h"
#include "cash/cash_count_dialog.h"
#include "cash/closing_screen.h"
#include "platform/database.h"

namespace tpv {

void FrmTpvCierreCaja::CountCash() {
  if (!CheckTill()) return;
  FrmArqueo dialog(context());
  if (count_) dialog.count = *count_;
  dialog.count.expected = Number(Text1[2]);
  dialog.initial = std::llround(opening_->initial * 100);
  dialog.entries =
      ReadDrawerEntries(*ClosingPeriod(context(), context().Caja, opening_->when).Entries());
  context().ports.ui.ShowModal(dialog);
  if (dialog.Accepted()) count_ = dialog.Accepted();
  ShowCount();
  SetFocus(Text1[4]);
}

// What was counted stays when the figures change; what there should be follows them.
void FrmTpvCierreCaja::ShowCount() {
  if (!count_) return;
  count_->expected = Number(Text1[2]);
  lblArqueo.caption = "Contado " + FormatNumber(count_->Counted(), "#,##0.00") + ", diferencia " +
                      FormatNumber(count_->Difference(), "#,##0.00");
}

}  // namespace tpv
