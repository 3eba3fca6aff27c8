// tpv fiscal export, tpv fiscal send: invoice records towards the outside.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// `arguments` are those behind the order's name. 0 when all went well. Throw UsageError and
// whatever the store's opening and the files' writing end in.
int ExportRecordsOrder(const Machine& machine, std::vector<std::string> arguments, std::ostream& out);
// Sends what waits, once, and says what happened; 1 when something waits still.
int SendRecordsOrder(const Machine& machine, std::vector<std::string> arguments, std::ostream& out);

}  // namespace tpv
