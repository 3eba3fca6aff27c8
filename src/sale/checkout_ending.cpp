// How a checkout ends. What is stored is stored together, and while it is, nobody
// waits for a device: the drawer opens and paper comes once it is in the store.
#include "base/text.h"
#include "data/journal.h"
#include "data/sales_in_progress.h"
#include "data/sql_text.h"
#include "data/till_state.h"
#include "fiscal/issuing.h"
#include "output/cash_drawer.h"
#include "output/sales_ticket.h"
#include "output/ticket_text.h"
#include "platform/database.h"
#include "platform/printer.h"
#include "sale/checkout_dialog.h"
#include "sale/sale_storage.h"

namespace tpv {

using ui::Icon;

void FrmTpv1::End(Ending ending) {
  constexpr double kLargeChange = 100;
  if (!CheckPayment() || !ConfirmChange(kLargeChange)) return;
  const ui::WaitCursor waiting(*this);
  bool drawer = false;
  const bool stored = Stored([&] {
    const bool there = DoubtfulPaymentIsStored();
    drawer = there ? OpensDrawer() : StorePayment();
  });
  if (!stored) return;
  Complete();
  if (drawer && ending == Ending::Ticket) OpenDrawer(context());
  if (ending == Ending::Ticket) {
    PrintSalesTicket(context());
    return PrintShopCopy(context());
  }
  try {
    PrintOpeningLine(context());
  } catch (const PrintError&) {
    // The line only kicks a drawer that hangs on the printer.
  }
}

// Whatever the paper does then, the sale is finished.
void FrmTpv1::Complete() {
  completed_ = true;
  Close();
}

// False, and the operator knows why, when `store` could not do its work.
bool FrmTpv1::Stored(const std::function<void()>& store) {
  try {
    entry_id_ = 0;
    store();
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

// Customer, collected mark, journal entry, its link and the invoice record: together or
// not at all.
bool FrmTpv1::StorePayment() {
  entry_id_ = 0;
  Transaction transaction(Database());
  RequireOwnSale(context());
  msActualizaClienteAlbaran();
  RecordPayment();
  fiscal::RecordTicket(fiscal::DeskOf(context()), context().IdAlbaran);
  const bool drawer = OpensDrawer();
  transaction.Commit();
  return drawer;
}

bool FrmTpv1::OpensDrawer() { return Parameter("Par_PCajon").IntOr(0) != 0; }

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
    Refuse(taken.what(), nullptr, Icon::Critical);
    LeaveSalePending(context());
  }
  cancelled_ = true;
  Complete();
}

}  // namespace tpv
