// A statement that may take long. Where somebody shows the work to the operator, the
// driver runs it in a thread beside his, which goes on pulsing; given up, it is cancelled.
#pragma once

#include <sql.h>

#include <functional>

namespace tpv::odbc {

// Returns what the driver answers. What a pulse throws goes to the caller once the
// driver has let go of the statement.
SQLRETURN RunBeside(SQLHSTMT statement, const std::function<SQLRETURN()>& call);

}  // namespace tpv::odbc
