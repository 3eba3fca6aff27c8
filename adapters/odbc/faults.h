// Faults of the line between till and server, made on purpose: tests cannot pull
// a cable.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tpv::odbc {

enum class Moment {
  Before,  // the server never got the call
  After,   // the server did it, its answer was lost
};

enum class Call { Connect, Execute, Fetch };

// The SQLSTATE with which the call ends, "" for no fault. `sql` is the statement
// of an Execute.
using Faults = std::function<std::string(Call call, Moment moment, std::string_view sql)>;

}  // namespace tpv::odbc
