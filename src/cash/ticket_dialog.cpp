#include "cash/ticket_dialog.h"

#include "base/text.h"
#include "cash/cash_count.h"
#include "cash/cash_count_paper.h"
#include "cash/closure_ticket.h"
#include "cash/mail_queue.h"
#include "platform/clock.h"
#include "platform/printer.h"
#include "platform/settings.h"

namespace tpv {

FrmFactuTicket::FrmFactuTicket(Context& ctx) : Screen(ctx, "frmFactuTicket") {
  caption = "Facturación de Ticket";
  struct Field {
    int index;
    const char* caption;
    int columns;
    int max_length;
  };
  const Field fields[] = {{5, "Serie", 6, 5},
                          {6, "Fecha Factura", 12, 10},
                          {7, "Observaciones en factura", 50, 255},
                          {0, "Impresora seleccionada", 40, 0}};
  for (const Field& field : fields) {
    ui::TextBox& box = Text1.Add(field.index, field.caption);
    box.columns = field.columns;
    box.max_length = field.max_length;
  }
  MakeDateField(Text1[6]);
  Text1[7].stretch = Text1[0].stretch = true;
  Frame2.Rows({{&Text1[5], &Text1[6], &chkRecCar}, {&Text1[7]}});
  Frame1.Rows({{&Text1[0], &cmdImpresoras}});
  rows = {{&Frame2}, {&Frame1}, {&cmdFacturar, &XPButton1}};
  cmdImpresoras.click = [this] { ChoosePrinter(); };
  cmdFacturar.click = [this] { Confirm(); };
  XPButton1.click = [this] { Close(); };
}

void FrmFactuTicket::OnLoad() {
  Screen::OnLoad();
  Text1[5].text = Parameter("Par_SerTicFac").TextOr("");
  Text1[6].text = ToDayFirst(context().ports.clock.Now());
  previous_printer_ = context().ports.printers.Current();
  spool_ = context().ports.objects.Create("ZRSPOOL.ClsSpool");
  ShowChosenPrinter();
  Frame2.visible = mode == Mode::InvoiceParameters;
}

void FrmFactuTicket::OnUnload() {
  if (context().ports.printers.Current() == previous_printer_) return;
  try {
    context().ports.printers.SetCurrent(previous_printer_);
  } catch (const PrintError&) {
    // It was taken off the machine meanwhile; whichever is current now serves.
  }
}

void FrmFactuTicket::ShowChosenPrinter() {
  Text1[0].text = context().ports.settings.Read("OKRA", "Printer", "Spool");
}

void FrmFactuTicket::ChoosePrinter() {
  spool_->Invoke("SelectPrinter");
  ShowChosenPrinter();
}

void FrmFactuTicket::Confirm() {
  if (mode == Mode::InvoiceParameters) return HandBackInvoice();
  const ui::WaitCursor waiting(*this);
  PrintClosure();
}

void FrmFactuTicket::HandBackInvoice() {
  if (!RequireDate(Text1[6], "La fecha de la factura no es valida")) return;
  invoice_ = {Text1[5].text, Text1[6].text, Text1[7].text, !chkRecCar.checked, true};
  Close();
}

void FrmFactuTicket::UseChosenPrinter() {
  const std::string chosen = Trim(Text1[0].text);
  if (chosen.empty()) return;
  for (const std::string& printer : context().ports.printers.Installed()) {
    if (Trim(printer) == chosen) return context().ports.printers.SetCurrent(printer);
  }
}

// A printer that fails keeps nobody from getting the closure by mail.
void FrmFactuTicket::PrintClosure() {
  ClosureTicket ticket(context(), closure_id);
  try {
    UseChosenPrinter();
    ticket.Compose();
    ticket.Print();
    if (const auto count = ReadCashCount(context(), closure_id)) {
      PrintCashCount(context(), closure_id, *count);
    }
  } catch (const std::exception& error) {
    Refuse("Error imprimiendo cierre ." + std::string(kLineBreak) + error.what(), nullptr,
           ui::Icon::Critical, "Acción cancelada");
  }
  QueueClosureMail(context(), ticket.Text());
  SendQueuedMailsOrTell(context(), Doubtful::Ask);
}

}  // namespace tpv
