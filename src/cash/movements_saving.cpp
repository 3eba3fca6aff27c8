// Checking and storing a cash movement.
#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "cash/movements_screen.h"
#include "cash/receipt.h"
#include "data/codes.h"
#include "data/journal.h"
#include "data/till_state.h"
#include "output/cash_drawer.h"
#include "platform/database.h"

namespace tpv {

namespace {

// Another till collected meanwhile what this one was about to.
class TicketsChanged : public std::exception {};

}  // namespace

void FrmTpvMovCaja::CheckHead(Failed& failed) {
  if (!TillNumber(Text1[20].text)) {
    failed = {"Número de caja incorrecto", &Text1[20]};
  }
  if (Number(Text1[0]) == 0) failed = {"Número de vendedor incorrecto", &Text1[0]};
  if (!Check1.checked && !IsDate(Text1[21].text)) failed = {"Fecha incorrecta", &Text1[21]};
}

void FrmTpvMovCaja::CheckCollection(Failed& failed) {
  const auto amount = ParseNumber(Text1[11].text);
  if (!amount || *amount < 0) failed = {"No ha introducido el importe", &Text1[11]};
  if (customer_id_ == 0) failed = {"No ha introducido el cliente", &Text1[2]};
}

void FrmTpvMovCaja::CheckPayment(Failed& failed) {
  if (ParseNumber(Text1[6].text).value_or(0) <= 0) {
    failed = {"No ha introducido un importe valido para el pago", &Text1[6]};
  } else if (Trim(Text1[3].text).empty()) {
    failed = {"No ha introducido la descripción de la salida/pago", &Text1[3]};
  }
}

// Each check that fails takes the place of the one before.
FrmTpvMovCaja::Failed FrmTpvMovCaja::Check() {
  Failed failed;
  CheckHead(failed);
  Option1_0.checked ? CheckCollection(failed) : CheckPayment(failed);
  return failed;
}

void FrmTpvMovCaja::Save() {
  const Failed failed = Check();
  if (!failed.text.empty()) {
    return Refuse(failed.text, failed.field, ui::Icon::Exclamation);
  }
  if (!(Option1_0.checked ? SaveCollection() : SavePayment())) return;
  Close();
  OpenDrawer(context());
  if (WantsReceipts(context())) GiveReceipt();
}

// The movement is stored, whatever the paper does.
void FrmTpvMovCaja::GiveReceipt() {
  try {
    PrintReceipt(context(), stored_entry_);
  } catch (const std::exception& error) {
    Refuse("El movimiento está guardado, pero su recibo no se ha impreso." + std::string(kLineBreak) +
               error.what(),
           nullptr, ui::Icon::Exclamation);
  }
}

// Everything that `write` does is stored, or nothing and the screen stays.
template <typename Write>
bool FrmTpvMovCaja::InTransaction(Write write) {
  try {
    Transaction transaction(Database());
    write();
    transaction.Commit();
    return true;
  } catch (const TillRefusal& refusal) {
    const bool date = refusal.about() == TillRefusal::About::Date;
    Refuse(refusal.what(), &Text1[date ? 21 : 20], ui::Icon::Exclamation);
  } catch (const TicketsChanged&) {
    Refuse("Las ventas pendientes del cliente han cambiado. Revise la selección", &Text1[11],
           ui::Icon::Exclamation);
    ListTickets();
  } catch (const CommitUnknown& error) {
    Refuse(error.what(), nullptr, ui::Icon::Critical);
  } catch (const std::exception&) {
    Refuse("Error en la grabación", nullptr, ui::Icon::Critical);
  }
  return false;
}

bool FrmTpvMovCaja::SavePayment() {
  return InTransaction([this] { stored_entry_ = InsertEntry(Text1[3].text); });
}

bool FrmTpvMovCaja::SaveCollection() {
  ShowSums();
  const std::vector<Share> shares = Shares();
  if (shares.empty()) {
    Refuse("No ha indicado ventas para cancelar", &ListView1, ui::Icon::Exclamation);
    return false;
  }
  if (!Check2.checked && RoundHalfAway(Number(Text1[11]), 2) < Selected()) {
    Refuse("El importe de las entrega es inferior a las ventas marcadas", &Text1[11],
           ui::Icon::Exclamation);
    return false;
  }
  return InTransaction([&] {
    RequireUnchanged(shares);
    stored_entry_ = InsertEntry(Note(shares));
    for (const Share& share : shares) Pay(stored_entry_, share);
  });
}

void FrmTpvMovCaja::RequireUnchanged(const std::vector<Share>& shares) const {
  const std::vector<ListedTicket> now = ReadOpenTickets(Database(), customer_id_);
  for (const Share& share : shares) {
    const OpenTicket& shown = tickets_[share.ticket];
    const bool same = std::any_of(now.begin(), now.end(), [&](const ListedTicket& listed) {
      return listed.ticket.id == shown.id && SameCents(listed.ticket.pending, shown.pending);
    });
    if (!same) throw TicketsChanged();
  }
}

std::string FrmTpvMovCaja::Note(const std::vector<Share>& shares) const {
  std::vector<std::string> references;
  for (const Share& share : shares) {
    if (!Check2.checked) references.push_back(tickets_[share.ticket].reference);
  }
  return CollectionNote(customer_code_, Text1[5].text, references);
}

std::int32_t FrmTpvMovCaja::InsertEntry(const std::string& note) {
  const bool collection = Option1_0.checked;
  const double handed = RoundHalfAway(Number(collection ? Text1[11] : Text1[6]), 2);
  const auto code = [](auto value) { return Variant(static_cast<int>(value)); };
  const std::int32_t till = Variant(Text1[20].text).ToInt32();
  RowBuilder& row = EntryOfOpenTill(context(), till, Check1.checked ? "" : Text1[21].text);
  row.Add("DiaCaj_IdUsu", ValueKind::Whole, Variant(context().MyBd->IdUsuario()));
  row.Add("DiaCaj_IdAge", ValueKind::Whole, Variant(context().IdAgente));
  row.Add("DiaCaj_Caja", ValueKind::Whole, Variant(till));
  row.Add("DiaCaj_Tipo", ValueKind::Whole,
          code(collection ? JournalEvent::PendingCollection : JournalEvent::PaymentOut));
  row.Add("DiaCaj_IdCliPr", ValueKind::Whole, Variant(collection ? customer_id_ : 0));
  row.Add("DiaCaj_Entrega", ValueKind::Amount, Variant(handed));
  if (collection) row.Add("DiaCaj_Devolucion", ValueKind::Amount, Variant(Change()));
  row.Add("DiaCaj_Cobrado", ValueKind::Amount,
          Variant(collection ? RoundHalfAway(handed - Change(), 2) : handed));
  row.Add("DiaCaj_Descuento", ValueKind::Amount, Variant(0.0));
  row.Add("DiaCaj_Obs", ValueKind::Text, Variant(note));
  row.Add("DiaCaj_Modo", ValueKind::Whole,
          code(collection && Option4.checked ? PaymentMode::Card : PaymentMode::Cash));
  InsertOrThrow(row);
  return LastEntry(context());
}

void FrmTpvMovCaja::Pay(std::int32_t entry, const Share& share) {
  const std::int32_t ticket = tickets_[share.ticket].id;
  if (share.amount != 0) {
    LinkTicket(context(), entry, ticket, share.amount, Variant("Cobro desde movimientos de caja"));
  }
  if (!share.settled) return;
  RowBuilder& row = RowInTransaction(context(), "Cav");
  row.Add("Cav_Cobrado", ValueKind::Flag, Variant(true));
  row.Where(" WHERE Cav_Id = " + std::to_string(ticket));
  UpdateOrThrow(row);
}

}  // namespace tpv
