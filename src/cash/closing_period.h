// What happened at a till since it was opened and no closure covers yet.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/date_time.h"

namespace tpv {

struct Context;
class Recordset;

struct OpenTill {
  std::int32_t till = 0;
  DateTime last_event;
};

// Tills whose newest journal entry is not a closure. `any_entry` tells an empty
// journal from one whose tills are all closed.
std::vector<OpenTill> OpenTills(Context& context, bool& any_entry);

struct Opening {
  DateTime when;
  std::string agent;
  double initial = 0;  // euros
};

// The till's newest opening; nullopt when it was never opened.
std::optional<Opening> LastOpening(Context& context, std::int32_t till);

// Euros; what no entry gives is 0.
struct PeriodTotals {
  double cash = 0;
  double card = 0;
  double paid = 0;
};

// One till from the day of an opening on.
class ClosingPeriod {
 public:
  ClosingPeriod(Context& context, std::int32_t till, const DateTime& opened);

  PeriodTotals Totals() const;
  // DiaCaj_Fecha, Agente, Ticket, Venta, Metalico, Tarjeta, Id.
  std::unique_ptr<Recordset> Collections() const;
  // Collections and payments out: DiaCaj_Fecha, DiaCaj_Tipo, Ticket, DiaCaj_Entrega,
  // DiaCaj_Devolucion, DiaCaj_Tarjeta.
  std::unique_ptr<Recordset> Entries() const;
  // Stamps the payments out with the closure.
  void StampPayments(const std::string& closure_id) const;
  // Changes with every entry that comes, goes or is stamped.
  std::string Mark() const;

 private:
  std::string Condition() const;

  Context& context_;
  std::string till_;
  std::string from_;  // "dd/mm/yyyy"
};

}  // namespace tpv
