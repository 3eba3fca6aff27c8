// The entries of combos that show a list of the store whole (countries, provinces,
// kinds of street): made again only when the list's rows are others.
#pragma once

#include <cstdint>
#include <map>

#include "platform/database.h"
#include "platform/ui/entries.h"

namespace tpv {

// The texts live as long as the lists that know them: literals.
struct ChoiceList {
  const char* statement;
  const char* code;  // the columns shown
  const char* name;
  const char* mask = "";   // of a code that is a number; "" for a text
  const char* first = "";  // an entry before those of the store; "" for none
};

class ChoiceLists {
 public:
  // A code, " - " and a name for each row, in the store's order. Runs the statement
  // each time. Throws DatabaseError.
  ui::Entries Entries(Connection& connection, const ChoiceList& list);

 private:
  struct Made {
    std::int64_t rows = 0;  // Recordset::RowsIdentity
    ui::Entries entries;
  };
  std::map<const char*, Made> made_;  // by statement
};

}  // namespace tpv
