// What the office refuses of a shop's data, and why.
#pragma once

#include <string>
#include <vector>

namespace tpv::office {

struct Refusal {
  long line = 0;       // of the file, from 1; 0 when it is about no line
  std::string field;   // the column or key as the file writes it; "" for the whole line
  std::string reason;  // in Spanish, with what would be accepted

  bool operator==(const Refusal&) const = default;
};

using Refusals = std::vector<Refusal>;

// "Línea 3, precio: no es un número".
std::string RefusalText(const Refusal& refusal);

}  // namespace tpv::office
