// What the technician sees of the printers: which there are, and what one prints.
#pragma once

#include <iosfwd>
#include <string>

namespace tpv {

class Clock;
class Machine;
class Printers;
class Settings;

// Both return 1 when something went wrong, with the words of whoever said so behind the
// operator's.
int ListPrinters(Machine& machine, std::ostream& out);
// A few lines on the printer so named, "" for the default; with an invoice record's square
// code on top when it is asked for or the machine is set up for records. Throws PrintError.
void PrintTrial(Printers& printers, const Settings& settings, const Clock& clock, const std::string& printer,
                bool with_code = false);
// The same. Says in which folder they lie
// when that is where it prints. Throws PrintError.
int TryPrinter(Machine& machine, const std::string& printer, bool with_code, std::ostream& out);

}  // namespace tpv
