// SQL functions and the collation that translated statements rely on.
#pragma once

struct sqlite3;

namespace tpv {
class Clock;

// `clock` must outlive the handle. Throws DatabaseError when SQLite refuses.
void RegisterFunctions(sqlite3* handle, const Clock& clock);

}  // namespace tpv
