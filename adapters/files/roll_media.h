// How a ticket is cut out of the roll of a queue's printer.
#pragma once

#include <string>
#include <vector>

#include "adapters/files/pdf/pdf.h"
#include "adapters/files/queue_paper.h"

namespace tpv {

struct RollMedia {
  RollPiece piece;
  std::vector<std::string> options;  // as lp takes them
};

// A piece of the ticket's own length where the driver can cut one, the shortest of its
// sizes that holds the ticket otherwise, several of the longest when none does.
RollMedia MediaFor(double ticket_length, const QueuePaper& paper);

}  // namespace tpv
