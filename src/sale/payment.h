// What a customer hands over at checkout and what is recorded of it: the rules,
// without any form.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/codes.h"

namespace tpv {

// Euros, as the fields hold them.
struct Payment {
  double total = 0;
  double cash = 0;
  double card = 0;
  double change = 0;

  double Paid() const { return cash + card; }
  bool CoversTotal() const;        // to the cent
  double DueChange() const;        // what should be given back, 0 or more
  bool ChangeIsRight() const;      // to the cent
};

// The journal entry of a payment; nullopt when nothing was handed over.
struct JournalEntry {
  PaymentMode mode = PaymentMode::Cash;
  double cash = 0;      // DiaCaj_Entrega
  double card = 0;      // DiaCaj_Tarjeta
  double change = 0;    // DiaCaj_Devolucion
  double collected = 0; // DiaCaj_Cobrado
  double discount = 0;  // DiaCaj_Descuento

  double LinkedAmount() const;         // Tco_Importe
  std::optional<std::string> LinkNote() const;  // Tco_Obs
};

std::optional<JournalEntry> EntryFor(const Payment& payment, bool on_credit);

}  // namespace tpv
