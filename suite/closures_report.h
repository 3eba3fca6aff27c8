// The report of a list of closures: the list, what each till took, and cash and
// card a day.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/objects.h"
#include "platform/report.h"

namespace tpv::suite {

// Euros that a closure's drawer held beyond what its figures gave, by DiaCaj_Id.
using CountedDifferences = std::map<std::int32_t, double>;

// `rows` is walked from its first row on; it has the columns of the closures
// journal. Where drawers were counted, the list has a column of differences.
Report ClosuresReport(Object& rows, const CountedDifferences& differences, const std::string& shop);

}  // namespace tpv::suite
