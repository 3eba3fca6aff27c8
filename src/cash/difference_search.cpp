#include "cash/difference_search.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/mask.h"
#include "data/codes.h"
#include "platform/database.h"

namespace tpv {

namespace {

std::int64_t Cents(const Variant& euros) { return std::llround(euros.NumberOr(0) * 100); }

std::string Euros(std::int64_t cents) {
  return FormatNumber(static_cast<double>(cents) / 100, "#,##0.00");
}

// Whether two neighbouring digits of `written`, turned round, give `meant`.
bool TurnedRound(std::int64_t written, std::int64_t meant) {
  for (std::int64_t place = 1; place <= written; place *= 10) {
    const std::int64_t low = written / place % 10;
    const std::int64_t high = written / place / 10 % 10;
    if (low != high && written + (low - high) * 9 * place == meant) return true;
  }
  return false;
}

// Whether change was given as if this note had been another one.
bool NoteMistaken(std::int64_t note, std::int64_t taken_for) {
  constexpr std::array<std::int64_t, 7> kNoteCents = {500, 1000, 2000, 5000, 10000, 20000, 50000};
  bool is_note = false;
  bool other_is_note = false;
  for (const std::int64_t each : kNoteCents) {
    is_note |= each == note;
    other_is_note |= each == taken_for;
  }
  return is_note && other_is_note && note != taken_for;
}

class Search {
 public:
  explicit Search(std::int64_t difference)
      : difference_(difference), amount_(std::abs(difference)), missing_(difference < 0) {}

  void Look(const DrawerEntry& entry) {
    if (entry.payment_out) return LookAtPayment(entry);
    LookAtCash(entry);
    LookAtCard(entry);
    LookAtChange(entry);
    LookAtDigits(entry, entry.cash(), entry.cash() + difference_);
  }

  void LookAtOpening(std::int64_t initial) {
    if (initial > 0 && TurnedRound(initial, initial + difference_)) {
      Propose("Saldo inicial", "Dos cifras cambiadas de sitio: " + Euros(initial) + " por " +
                                   Euros(initial + difference_));
    }
  }

  void NothingBooked() {
    if (missing_)
      Propose("", "Un pago de " + Euros(amount_) + " sin apuntar en movimientos de caja");
    else
      Propose("", "Un cobro de " + Euros(amount_) + " sin apuntar, o cambio que no se dio");
  }

  std::vector<Proposal> Take() { return std::move(proposals_); }

 private:
  void Propose(const std::string& what, const std::string& reason) {
    proposals_.push_back({what, reason});
  }

  void LookAtCash(const DrawerEntry& entry) {
    const std::int64_t cash = entry.cash();
    if (missing_ && cash == amount_) {
      Propose(entry.what, "Un cobro de ese importe: ¿se pagó con tarjeta y se apuntó en metálico?");
    }
    if (missing_ && cash * 2 == amount_) {
      Propose(entry.what, "La mitad de la diferencia: ¿se devolvió y se apuntó como cobro?");
    }
    if (!missing_ && cash < 0 && -cash * 2 == amount_) {
      Propose(entry.what, "La mitad de la diferencia: ¿se cobró y se apuntó como devolución?");
    }
    if (!missing_ && cash == amount_) {
      Propose(entry.what, "Un cobro de ese importe: ¿entró el dinero dos veces?");
    }
  }

  void LookAtCard(const DrawerEntry& entry) {
    if (missing_ || entry.card != amount_) return;
    Propose(entry.what, "Un cobro con tarjeta de ese importe: ¿se pagó en metálico?");
  }

  void LookAtChange(const DrawerEntry& entry) {
    const std::int64_t taken_for = entry.handed_over - difference_;
    if (entry.change <= 0 || !NoteMistaken(entry.handed_over, taken_for)) return;
    Propose(entry.what, "Entregado " + Euros(entry.handed_over) + ": ¿se dio el cambio de " +
                            Euros(taken_for) + "?");
  }

  void LookAtPayment(const DrawerEntry& entry) {
    const std::int64_t paid = entry.handed_over;
    if (missing_ && paid == amount_)
      Propose(entry.what, "Un pago de ese importe: ¿se pagó dos veces?");
    if (!missing_ && paid == amount_) {
      Propose(entry.what, "Un pago de ese importe: ¿se apuntó y no salió del cajón?");
    }
    if (!missing_ && paid * 2 == amount_) {
      Propose(entry.what, "La mitad de la diferencia: ¿era un cobro y se apuntó como pago?");
    }
    LookAtDigits(entry, paid, paid - difference_);
  }

  void LookAtDigits(const DrawerEntry& entry, std::int64_t written, std::int64_t meant) {
    if (written <= 0 || meant <= 0 || !TurnedRound(written, meant)) return;
    Propose(entry.what,
            "Dos cifras cambiadas de sitio: " + Euros(written) + " por " + Euros(meant));
  }

  std::int64_t difference_;
  std::int64_t amount_;
  bool missing_;
  std::vector<Proposal> proposals_;
};

}  // namespace

std::vector<DrawerEntry> ReadDrawerEntries(Recordset& rows) {
  std::vector<DrawerEntry> entries;
  for (; !rows.Eof(); rows.MoveNext()) {
    DrawerEntry entry;
    entry.payment_out =
        rows.Field("DiaCaj_Tipo").IntOr(0) == static_cast<int>(JournalEvent::PaymentOut);
    const std::string ticket = rows.Field("Ticket").TextOr("");
    entry.what = (entry.payment_out ? "Pago" : "Cobro") + (ticket.empty() ? "" : " " + ticket) +
                 Format(rows.Field("DiaCaj_Fecha"), " dd/mm hh:nn");
    entry.handed_over = Cents(rows.Field("DiaCaj_Entrega"));
    entry.change = Cents(rows.Field("DiaCaj_Devolucion"));
    entry.card = Cents(rows.Field("DiaCaj_Tarjeta"));
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::vector<Proposal> ExplainDifference(std::int64_t difference, std::int64_t initial,
                                        const std::vector<DrawerEntry>& entries) {
  Search search(difference);
  for (const DrawerEntry& entry : entries) search.Look(entry);
  search.LookAtOpening(initial);
  search.NothingBooked();
  return search.Take();
}

}  // namespace tpv
