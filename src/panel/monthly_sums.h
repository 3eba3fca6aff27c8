// A period's sums from whole past months, kept by the store, and from the days around them:
// a year need not be added up again each time.
#pragma once

#include <map>
#include <string>

#include "panel/sums.h"

namespace tpv {
class MonthMemory;
}

namespace tpv::panel {

// First Announce the periods, then Read them from one state of the store, then Keep what was read.
// What a store cannot keep is added up as it is.
class MonthlySums {
 public:
  // `today` decides which months are past. The connection outlives it.
  MonthlySums(Connection& connection, const DateTime& today);

  void Announce(const Days& days);
  // Throws DatabaseError, and GivenUp where somebody listens.
  Sums Read(const Days& days, const LineTax& tax_of);
  void Keep();

 private:
  // The period's days in order, each past month that lies in it whole by itself.
  struct Part {
    Days days;
    std::string month;  // "" for days of no whole month
  };
  std::vector<Part> PartsOf(const Days& days) const;

  Connection& connection_;
  MonthMemory* memory_;
  DateTime first_of_month_;
  std::map<std::string, std::string> marks_;  // of the months announced
  std::map<std::string, std::string> texts_;  // of those read
};

}  // namespace tpv::panel
