#include "sale/checkout_dialog.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "output/cash_drawer.h"
#include "output/sales_ticket.h"
#include "output/ticket_text.h"
#include "data/journal.h"
#include "data/sales_in_progress.h"
#include "data/sql_text.h"
#include "data/till_state.h"
#include "platform/database.h"
#include "platform/printer.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

void FrmTpv1::OnF1(std::string_view tag) {
  pending_message = "e";
  if (tag == "Clientes") msBuscarClientes(-1, 0);
}

void FrmTpv1::OnF5() {
  Text1[0].text = Text1[8].text;
  Text1[6].text = Text1[7].text = FormatNumber(0, "0.00");
  SetFocus(cmdTicket);
}

Payment FrmTpv1::ReadPayment() const {
  return {total_, NumberOrZero(Text1[6].text), NumberOrZero(Text1[0].text),
          NumberOrZero(Text1[7].text)};
}

void FrmTpv1::LeaveAmount(ui::TextBox& box) {
  if (box.text.empty()) return;
  box.text = toolkit().FormatearImporte(box.text);
  Text1[7].text = FormatNumber(ReadPayment().DueChange(), "#,##0.00");
}

bool FrmTpv1::CheckFields() {
  const auto refuse = [this](const char* text, ui::TextBox& box) {
    Refuse(text, &box);
    return false;
  };
  for (const int index : {6, 0, 7}) {
    const std::string& text = Text1[index].text;
    if (!text.empty() && !ParseNumber(text)) return refuse("El importe no es correcto", Text1[index]);
  }
  if (!ReadPayment().ChangeIsRight()) {
    return refuse("La devolución no corresponde al importe cobrado", Text1[7]);
  }
  if (customer_id_ == 0) return refuse("Codigo de cliente no existe", Text1[2]);
  if (!Text1[4].text.empty() && !ParseInt32(Text1[4].text)) {
    return refuse("El número de la calle no es correcto", Text1[4]);
  }
  return true;
}

bool FrmTpv1::CheckPayment() {
  on_credit_ = false;
  if (Text1[6].text.empty() && Text1[0].text.empty()) {
    Refuse("No ha indicado el importe cobrado", nullptr);
    FocusPayment();
    return false;
  }
  if (!CheckFields()) return false;
  if (ReadPayment().CoversTotal() || AcceptShortfall()) return true;
  FocusPayment();
  return false;
}

bool FrmTpv1::AcceptShortfall() {
  pending_message = "e";
  const std::string question = "El cobro es inferior al total de la venta. " +
                               std::string(kLineBreak) + "Confirma el importe cobrado";
  if (!Confirm(question, Icon::Question, Answer::No)) return false;
  const Answer discount =
      Ask("Es un descuento al cliente?", Icon::Question, Answer::No, true);
  if (discount != Answer::No) return discount == Answer::Yes;
  if (Ask("Es una venta a credito", Icon::Question, Answer::No, true) != Answer::Yes) return false;
  if (Int32OrZero(Text1[2].text) == Parameter("Par_CliCon").IntOr(0)) {
    Refuse("No se aceptan ventas a credito para el cliente contado", nullptr);
    return false;
  }
  on_credit_ = true;
  return true;
}

void FrmTpv1::FocusPayment() {
  if (!Text1[6].text.empty()) {
    SetFocus(Text1[6]);
  } else if (!Text1[0].text.empty()) {
    SetFocus(Text1[0]);
  }
}

bool FrmTpv1::ConfirmChange(double limit) {
  if (RoundHalfAway(ReadPayment().change, 2) <= limit) return true;
  pending_message = "e";
  if (Confirm("Confirma el importe de la devolución", Icon::Critical)) return true;
  SetFocus(Text1[6]);
  return false;
}

void FrmTpv1::End(Ending ending) {
  constexpr double kLargeChange = 100;
  if (!CheckPayment() || !ConfirmChange(kLargeChange)) return;
  const ui::WaitCursor waiting(*this);
  if (!Store(ending)) return;
  if (ending == Ending::Ticket) PrintSalesTicket(context());
  if (ending == Ending::NoTicket) {
    try {
      PrintOpeningLine(context());
    } catch (const PrintError&) {
      // The line only kicks a drawer that hangs on the printer.
    }
  }
  completed_ = true;
  Close();
}

// Customer, collected mark, journal entry and its link are stored together or
// not at all.
bool FrmTpv1::Store(Ending ending) {
  try {
    if (DoubtfulPaymentIsStored()) return true;
    entry_id_ = 0;
    Transaction transaction(Database());
    msActualizaClienteAlbaran();
    const bool drawer = ending == Ending::Ticket && Parameter("Par_PCajon").IntOr(0) != 0;
    if (drawer) OpenDrawer(context());
    RecordPayment();
    transaction.Commit();
    return true;
  } catch (const TillRefusal& refusal) {
    Refuse(refusal.what(), nullptr, Icon::Exclamation);
  } catch (const CommitUnknown& error) {
    doubtful_entry_id_ = entry_id_;
    RefusePayment(error.what());
  } catch (const std::exception& error) {
    RefusePayment(error.what());
  }
  return false;
}

// Whether the payment whose commit got no answer is there after all. Numbers of
// entries are given once, so a link of that entry to this sale is proof.
bool FrmTpv1::DoubtfulPaymentIsStored() {
  if (doubtful_entry_id_ == 0) return false;
  return !Database()
              .Execute("SELECT Tco_IdDiaCaj FROM Tco WHERE Tco_IdDiaCaj = " +
                       sql::Number(std::int64_t{doubtful_entry_id_}) + " AND Tco_IdCav = " +
                       sql::Number(std::int64_t{context().IdAlbaran}))
              ->Eof();
}

void FrmTpv1::RefusePayment(const char* reason) {
  Refuse("No se ha podido grabar el cobro de la venta. " + std::string(kLineBreak) + reason,
         nullptr, Icon::Critical);
}

void FrmTpv1::RecordPayment() {
  UnregisterSale(Database(), context().IdAlbaran);
  const auto entry = EntryFor(ReadPayment(), on_credit_);
  if (!entry) return;
  RequireOwnSale(context());
  const auto note = entry->LinkNote();
  entry_id_ = InsertEntry(*entry);
  LinkTicket(context(), entry_id_, context().IdAlbaran, entry->LinkedAmount(),
             note ? Variant(*note) : Variant());
}

std::int32_t FrmTpv1::InsertEntry(const JournalEntry& entry) {
  RowBuilder& row = EntryOfOpenTill(context(), context().Caja);
  row.Add("DiaCaj_IdUsu", ValueKind::Whole, Variant(context().MyBd->IdUsuario()));
  row.Add("DiaCaj_IdAge", ValueKind::Whole, Variant(context().IdAgente));
  row.Add("DiaCaj_Caja", ValueKind::Whole, Variant(context().Caja));
  row.Add("DiaCaj_Tipo", ValueKind::Whole, Variant(static_cast<int>(JournalEvent::TicketCollection)));
  row.Add("DiaCaj_IdCliPr", ValueKind::Whole, Variant(context().IdCliente));
  row.Add("DiaCaj_Modo", ValueKind::Whole, Variant(static_cast<int>(entry.mode)));
  row.Add("DiaCaj_Entrega", ValueKind::Amount, Variant(entry.cash));
  row.Add("DiaCaj_Tarjeta", ValueKind::Amount, Variant(entry.card));
  row.Add("DiaCaj_Devolucion", ValueKind::Amount, Variant(entry.change));
  row.Add("DiaCaj_Cobrado", ValueKind::Amount, Variant(entry.collected));
  row.Add("DiaCaj_Descuento", ValueKind::Amount, Variant(entry.discount));
  row.Add("DiaCaj_Obs", ValueKind::Literal, Variant("Null"));
  InsertOrThrow(row);
  return LastEntry(context());
}

void FrmTpv1::CancelTheSale() {
  if (DoubtfulPaymentIsStored()) return Refuse("El cobro de la venta quedó grabado", nullptr);
  try {
    GiveUpSale(context());
  } catch (const SaleTaken& taken) {
    return Refuse(taken.what(), nullptr, Icon::Critical);
  }
  completed_ = true;
  Close();
}

}  // namespace tpv
