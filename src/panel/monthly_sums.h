// A period's sums from whole past months, kept by the store, and from the days around them:
// a year need not be added up again each time.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "panel/sums.h"

namespace tpv {
class MonthMemory;
}

namespace tpv::panel {

// First Announce the periods, then Read them from one state of the store, then Keep what was
// read, were it given up half-way. What a store cannot keep is added up as it is.
class MonthlySums {
 public:
  // `today` decides which months are past. The connection outlives it.
  MonthlySums(Connection& connection, const DateTime& today);

  void Announce(const Days& days);
  // Throws DatabaseError, and GivenUp where somebody listens, who hears how far all that was
  // announced is.
  Sums Read(const Days& days, const LineTax& tax_of);
  void Keep();

 private:
  // The period's days in order, each past month that lies in it whole by itself.
  struct Part {
    Days days;
    std::string month;  // "" for days of no whole month
  };
  std::vector<Part> PartsOf(const Days& days) const;
  Sums ReadPart(const Part& part, const LineTax& tax_of);

  Connection& connection_;
  MonthMemory* memory_;
  DateTime first_of_month_;
  std::int64_t announced_ = 0;  // days
  std::int64_t read_ = 0;
  std::map<std::string, std::string> marks_;  // of the months announced
  std::map<std::string, std::string> texts_;  // of those read
};

}  // namespace tpv::panel
