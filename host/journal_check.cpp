#include "host/journal_check.h"

#include <map>

#include "data/codes.h"

namespace tpv {

namespace {

struct Entry {
  std::int32_t id = 0;
  std::int32_t till = 0;
  JournalEvent event = JournalEvent::Opening;
  DateTime when;
  std::int32_t closure = 0;  // DiaCaj_IdCierre
};

class JournalReader {
 public:
  void Read(const Entry& entry) {
    Till& till = tills_[entry.till];
    switch (entry.event) {
      case JournalEvent::Opening:
        if (till.open) opened_twice_.Add(entry.id);
        till.open = true;
        RequireNewest(till, entry);
        break;
      case JournalEvent::Closure:
        if (!till.open) closed_twice_.Add(entry.id);
        till.open = false;
        RequireNewest(till, entry);
        RequireStamped(till, entry.id);
        break;
      default:
        if (!till.open) while_closed_.Add(entry.id);
        if (entry.closure != 0) till.stamped.push_back(entry);
    }
    till.newest = std::max(till.newest, entry.when);
  }

  std::vector<StoreFinding> Findings() {
    for (auto& [number, till] : tills_) RequireStamped(till, 0);  // no closure came after these
    return {while_closed_, opened_twice_, closed_twice_, out_of_order_, other_closure_};
  }

 private:
  struct Till {
    bool open = false;
    DateTime newest;
    std::vector<Entry> stamped;  // since the last closure
  };

  // Else the till is not what its opening or closure says.
  void RequireNewest(const Till& till, const Entry& entry) {
    if (entry.when <= till.newest) out_of_order_.Add(entry.id);
  }

  // Else one closure counted the entry and another stamped it.
  void RequireStamped(Till& till, std::int32_t closure) {
    for (const Entry& entry : till.stamped) {
      if (entry.closure != closure) other_closure_.Add(entry.id);
    }
    till.stamped.clear();
  }

  std::map<std::int32_t, Till> tills_;
  StoreFinding while_closed_{"Apuntes de una caja sin abrir", {}, 0, false};
  StoreFinding opened_twice_{"Aperturas de una caja que ya estaba abierta", {}, 0, false};
  StoreFinding closed_twice_{"Cierres de una caja que no estaba abierta", {}, 0, false};
  StoreFinding out_of_order_{
      "Aperturas y cierres fechados antes que lo anterior de su caja", {}, 0, false};
  StoreFinding other_closure_{"Apuntes que no recogió el cierre siguiente de su caja, sino otro", {}, 0, true};
};

}  // namespace

std::vector<StoreFinding> CheckJournal(Connection& connection) {
  JournalReader reader;
  const auto rows = connection.Execute(
      "SELECT DiaCaj_Id, DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Fecha, DiaCaj_IdCierre FROM DiaCaj "
      "ORDER BY DiaCaj_Id");
  for (; !rows->Eof(); rows->MoveNext()) {
    const Variant when = rows->Field(3);
    reader.Read({rows->Field(0).ToInt32(), rows->Field(1).IntOr(0),
                 static_cast<JournalEvent>(rows->Field(2).IntOr(0)),
                 when.IsNull() ? DateTime{} : when.ToDate(), rows->Field(4).IntOr(0)});
  }
  return reader.Findings();
}

}  // namespace tpv
