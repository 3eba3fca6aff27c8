// The orders that make a store: tpv store create, tpv store fill.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

// `arguments` begin with the order itself. 0 when done. Throw UsageError, FileError and
// DatabaseError.
int CreateCommand(const std::vector<std::string>& arguments, std::ostream& out);
int FillCommand(const std::vector<std::string>& arguments, std::ostream& out);

}  // namespace tpv
