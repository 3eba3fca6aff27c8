// The orders of the program about files of articles, customers and sales: tpv import, tpv export.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// 0 when imported or there is nothing to, 1 when the file is refused. Shows what would
// happen and asks `in` unless --yes is there. Throws UsageError and DatabaseError.
int ImportCommand(Machine& machine, std::vector<std::string> arguments, std::istream& in,
                  std::ostream& out);
int ExportCommand(Machine& machine, std::vector<std::string> arguments, std::ostream& out);

}  // namespace tpv
