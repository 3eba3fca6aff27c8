// How a list's rows stand when the operator sorts or narrows it.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/ui/lists.h"

namespace tpv::ui {

// Rows in the order they are shown: numbers as numbers, dates as dates, texts with the
// numbers in them, empty cells first; equal ones as their screen put them. Details go
// with the row above them.
std::vector<int> OrderOf(const List& list);

// The rows so named, by their values and the same rules.
std::vector<std::uint32_t> SortedBy(std::vector<std::uint32_t> rows, bool descending,
                                    const std::function<Variant(std::size_t row)>& value);

}  // namespace tpv::ui
