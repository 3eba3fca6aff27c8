#include "host/store_mend.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "base/date_time.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "fiscal/records.h"
#include "fiscal/setup.h"

namespace tpv {

namespace {

constexpr const char* kAfterToday = "DATEDIFF(day, Getdate(), ";

// One date that is put right.
struct Mend {
  enum class Table { Journal, Sales };

  Table table = Table::Journal;
  std::int32_t id = 0;  // DiaCaj_Id, Cav_Id
  std::string what;     // "Apunte 12, apertura de la caja 1"
  DateTime was;
  DateTime becomes;
};

struct DatedEntry {
  std::int32_t id = 0;
  JournalEvent event = JournalEvent::Opening;
  DateTime when;
};

const char* NameOf(JournalEvent event) {
  switch (event) {
    case JournalEvent::Opening: return "apertura";
    case JournalEvent::PaymentOut: return "pago";
    case JournalEvent::Closure: return "cierre";
    default: return "cobro";
  }
}

class Planner {
 public:
  explicit Planner(Connection& connection)
      : connection_(connection),
        now_(connection.Execute("SELECT Getdate() AS Ahora")->Field(0).ToDate()) {}

  std::vector<Mend> Plan() {
    for (const std::int32_t till : TillsAhead()) PlaceEntries(till, EntriesOf(till));
    PlaceSales();
    return std::move(plan_);
  }

 private:
  bool Ahead(const DateTime& moment) const { return StartOfDay(moment) > now_; }

  std::vector<std::int32_t> TillsAhead() {
    std::vector<std::int32_t> tills;
    const auto rows = connection_.Execute("SELECT DISTINCT DiaCaj_Caja FROM DiaCaj WHERE " +
                                          std::string(kAfterToday) + "DiaCaj_Fecha) > 0");
    for (; !rows->Eof(); rows->MoveNext()) tills.push_back(rows->Field(0).IntOr(0));
    return tills;
  }

  std::vector<DatedEntry> EntriesOf(std::int32_t till) {
    std::vector<DatedEntry> entries;
    const auto rows = connection_.Execute(
        "SELECT DiaCaj_Id, DiaCaj_Tipo, DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Fecha IS NOT NULL AND "
        "DiaCaj_Caja = " + sql::Number(std::int64_t{till}) + " ORDER BY DiaCaj_Id");
    for (; !rows->Eof(); rows->MoveNext()) {
      entries.push_back({rows->Field(0).ToInt32(),
                         static_cast<JournalEvent>(rows->Field(1).IntOr(0)), rows->Field(2).ToDate()});
    }
    return entries;
  }

  // In the order in which they were written: behind all before, and before the next.
  void PlaceEntries(std::int32_t till, const std::vector<DatedEntry>& entries) {
    DateTime before;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
      DateTime when = entry->when;
      if (Ahead(when)) {
        const auto next = std::find_if(entry, entries.end(),
                                       [this](const DatedEntry& later) { return !Ahead(later.when); });
        when = Between(before, next == entries.end() ? std::nullopt : std::optional(next->when));
        plan_.push_back({Mend::Table::Journal, entry->id,
                         "Apunte " + std::to_string(entry->id) + ", " + NameOf(entry->event) +
                             " de la caja " + std::to_string(till),
                         entry->when, when});
        placed_[entry->id] = when;
      }
      before = std::max(before, when);
    }
  }

  DateTime Between(DateTime before, const std::optional<DateTime>& next) const {
    const DateTime wanted = next ? AddSeconds(*next, -1) : now_;
    before.millisecond = 0;
    return std::max(wanted, AddSeconds(before, 1));
  }

  void PlaceSales() {
    const auto rows = connection_.Execute(
        "SELECT Cav_Id, Cav_Caja, Cav_Fecha, (SELECT MIN(Tco_IdDiaCaj) FROM Tco WHERE Tco_IdCav = Cav_Id) "
        "AS Cobro FROM Cav WHERE Cav_Ticket = 1 AND " + std::string(kAfterToday) +
        "Cav_Fecha) > 0 ORDER BY Cav_Id");
    const bool recorded = fiscal::ModeOf(fiscal::DeskOf(connection_, nullptr)) != fiscal::Mode::Off;
    for (; !rows->Eof(); rows->MoveNext()) {
      const std::int32_t sale = rows->Field(0).ToInt32();
      if (recorded && fiscal::RecordOfTicket(connection_, sale)) continue;  // which says that day too
      plan_.push_back({Mend::Table::Sales, sale,
                       "Venta " + std::to_string(sale) + " de la caja " + rows->Field(1).ToText(),
                       rows->Field(2).ToDate(), DayOfSale(sale, rows->Field(3).IntOr(0))});
    }
  }

  // That of its first payment, else that of the sale written before it.
  DateTime DayOfSale(std::int32_t sale, std::int32_t payment) {
    const auto placed = placed_.find(payment);
    if (placed != placed_.end()) return placed->second;
    const auto moment = [this](const std::string& query) {
      const auto row = connection_.Execute(query);
      return row->Eof() || row->Field(0).IsNull() ? now_ : row->Field(0).ToDate();
    };
    if (payment != 0) {
      return moment("SELECT DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Id = " + std::to_string(payment));
    }
    return moment("SELECT TOP 1 Cav_Fecha FROM Cav WHERE Cav_Id < " + std::to_string(sale) + " AND " +
                  kAfterToday + "Cav_Fecha) <= 0 ORDER BY Cav_Id DESC");
  }

  Connection& connection_;
  const DateTime now_;
  std::vector<Mend> plan_;
  std::map<std::int32_t, DateTime> placed_;  // entries, by id
};

void CarryOut(Connection& connection, const std::vector<Mend>& plan) {
  for (const Mend& mend : plan) {
    const bool journal = mend.table == Mend::Table::Journal;
    connection.Execute((journal ? "UPDATE DiaCaj SET DiaCaj_Fecha = " : "UPDATE Cav SET Cav_Fecha = ") +
                       sql::Quoted(ToDayFirstSeconds(mend.becomes)) +
                       (journal ? " WHERE DiaCaj_Id = " : " WHERE Cav_Id = ") + std::to_string(mend.id));
  }
}

std::string MendsText(const std::vector<Mend>& plan) {
  std::string text;
  for (const Mend& mend : plan) {
    text += mend.what + ": " + ToDayFirstSeconds(mend.was) + " pasa a " +
            ToDayFirstSeconds(mend.becomes) + "\n";
  }
  return text;
}

}  // namespace

std::string MendStore(Connection& connection, bool agreed) {
  Transaction transaction(connection);
  const std::vector<Mend> plan = Planner(connection).Plan();
  if (plan.empty()) return "Nada está fechado después de hoy: no hay nada que arreglar\n";
  const std::string text = MendsText(plan);
  if (!agreed) {
    return text + "No se ha cambiado nada. Para cambiar esas fechas, y nada más, repítalo con --yes\n";
  }
  CarryOut(connection, plan);
  transaction.Commit();
  return text + "Arreglado: " + std::to_string(plan.size()) + " fechas\n";
}

}  // namespace tpv
