// What must hold in a shop's store at every moment, whatever failed or was
// killed: for technicians, and for every test that tortures a till.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/database.h"

namespace tpv {

struct StoreFinding {
  std::string text;               // in Spanish, one line
  std::vector<std::string> rows;  // ids of the first rows concerned
  long count = 0;                 // of all of them
  // False for what a deleted ticket leaves behind by design, or an older version let
  // pass, and a person may want to know.
  bool broken = true;

  void Add(std::int64_t row);
};

// Asks the store for every rule; reads alone, and tills may go on meanwhile.
// Nothing found: a sound store. Throws DatabaseError when a rule cannot be asked.
std::vector<StoreFinding> CheckStore(Connection& connection);

// "ROTO Apuntes sin …: 2 (14, 15)", a line a finding.
std::string FindingsText(const std::vector<StoreFinding>& findings);
// Whether something is broken.
bool AnyBroken(const std::vector<StoreFinding>& findings);

}  // namespace tpv
