// tpv store archive: a shop's old years into an archive of their own.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// The arguments behind "store archive". 0 when done. Throws UsageError, DatabaseError and
// what reading settings throws.
int ArchiveCommand(const Machine& machine, std::vector<std::string> arguments, std::ostream& out);

}  // namespace tpv
