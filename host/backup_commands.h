// The orders of the program about safety copies: tpv store backup, tpv store restore.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// 0 when done, 1 when the store's check finds something broken. Throws UsageError,
// FileError and DatabaseError.
int BackupCommand(const Machine& machine, std::vector<std::string> arguments, std::ostream& out);
int RestoreCommand(const Machine& machine, const std::vector<std::string>& arguments,
                   std::ostream& out);

}  // namespace tpv
