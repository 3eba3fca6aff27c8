// tpv config: the till's own settings, for the shop's technician.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tpv {

class Machine;

// list, get, set, unset, printers, try-printer, try-mail (docs/paper.md). A value
// that is not on the command line is the first line of `in`; a password is only
// taken from there, and never shown. Throws UsageError for what makes no sense,
// and whatever a trial or the file's writing ends in.
int Config(Machine& machine, const std::vector<std::string>& words, std::istream& in,
           std::ostream& out);

}  // namespace tpv
