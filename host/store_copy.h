// Takes a whole store to another place: from one machine's file to the server
// that many tills share, and back.
#pragma once

#include <functional>
#include <string_view>

#include "platform/database.h"

namespace tpv {

// How a store takes rows that bring their numbers along.
enum class Numbers {
  Plain,     // like any other column
  Switched,  // after SET IDENTITY_INSERT
};

// Called after each table with the rows copied.
using CopyProgress = std::function<void(std::string_view table, long rows)>;

// Copies all tables into a store whose tables hold no rows (a parameters record
// without any value counts for none; a shared catalogue may be there already when
// it is the same), reads them back and compares rows and sums. Tills that use
// `from` have to wait meanwhile. Throws DatabaseError, and then `to` is as it was.
void CopyStore(Connection& from, Connection& to, Numbers numbers, const CopyProgress& progress);

// Whether sales, customers or articles are stored.
bool HoldsRows(Connection& connection);
// Deletes parameters records without any value, as new stores have one.
void DropBlankParameters(Connection& connection);

}  // namespace tpv
