// All that the till does: the counter's work and the office's lists, on a small
// store and on a large one.
#pragma once

#include <string>
#include <vector>

#include "bench/decade.h"
#include "bench/harness.h"
#include "host/demo/demonstration.h"

namespace tpv::bench {

struct StoreSize {
  std::string path;
  int tickets;
};

// Fills both stores with 1,000 tickets a day and measures row by row, here and
// there; `runs` of the shortest work. `only`: the names of rows, "search,closing"; "" for
// all. Prints a table.
void MeasureStores(const StoreSize& small, const StoreSize& large, int articles, int runs, const std::string& only);

// The same on a store after ten years, without what goes through all its tickets one by
// one. One that is missing is made, and what it takes to look after it is measured first.
void MeasureDecade(const StoreSize& small, const std::string& path, const DecadeSize& size, int runs,
                   const std::string& only);

}  // namespace tpv::bench
