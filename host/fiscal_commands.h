// The orders of the program about invoice records: tpv fiscal ….
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// on, off, set, check, export, send. 0 when done and nothing is broken. Throws UsageError and DatabaseError.
int FiscalCommand(Machine& machine, const std::vector<std::string>& arguments, std::ostream& out);

}  // namespace tpv
