// The report of a list of closures: the list, what each till took, and cash and
// card a day.
#pragma once

#include <string>

#include "platform/objects.h"
#include "platform/report.h"

namespace tpv::suite {

// `rows` is walked from its first row on; it has the columns of the closures
// journal.
Report ClosuresReport(Object& rows, const std::string& shop);

}  // namespace tpv::suite
