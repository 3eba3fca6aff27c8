#include "sale/payment.h"

#include <algorithm>

#include "base/mask.h"
#include "base/rounding.h"

namespace tpv {

namespace {

double Cents(double euros) { return RoundHalfAway(euros, 2); }

PaymentMode ModeOf(double cash, double card) {
  if (cash != 0 && card != 0) return PaymentMode::CashAndCard;
  return cash != 0 ? PaymentMode::Cash : PaymentMode::Card;
}

}  // namespace

bool Payment::CoversTotal() const { return Cents(Paid()) >= Cents(total); }

double Payment::DueChange() const { return std::max(0.0, Cents(cash - (total - card))); }

bool Payment::ChangeIsRight() const { return SameCents(change, DueChange()); }

double JournalEntry::LinkedAmount() const { return Cents(collected + discount); }

std::optional<std::string> JournalEntry::LinkNote() const {
  if (discount <= 0) return std::nullopt;
  return FormatNumber(discount, "0.00") + " Importe no cobrado y aceptado";
}

std::optional<JournalEntry> EntryFor(const Payment& payment, bool on_credit) {
  JournalEntry entry;
  entry.cash = Cents(payment.cash);
  entry.card = Cents(payment.card);
  entry.change = Cents(payment.change);
  if (entry.cash <= 0 && entry.card <= 0) return std::nullopt;
  entry.mode = ModeOf(entry.cash, entry.card);
  entry.collected = Cents(entry.card + entry.cash - entry.change);
  if (!SameCents(payment.total, entry.collected) && !on_credit) {
    entry.discount = Cents(payment.total - (entry.change + entry.collected));
  }
  return entry;
}

}  // namespace tpv
