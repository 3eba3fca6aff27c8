// The orders of the program about stores: tpv store …, tpv sql ….
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

// create, fill, copy, check, release, mend. 0 when done and nothing is broken. Throws UsageError and DatabaseError.
int StoreCommand(const std::vector<std::string>& arguments, std::ostream& out);
// Runs statements and prints their rows.
int SqlCommand(const std::vector<std::string>& arguments, std::ostream& out);

}  // namespace tpv
