// A store after ten years, and what it takes to look after it.
#pragma once

#include <string>

namespace tpv::bench {

struct DecadeSize {
  int tickets = 1'000'000;  // of one part
  int parts = 10;           // one behind the other in time
  int articles = 100'000;
  int customers = 50'000;
};

// Makes it out of a filled store, part by part: rows are copied with other numbers and
// dates, and indexes come last.
void MakeDecade(const std::string& path, const DecadeSize& size);

// Prints a table of what grows: the file, its check, its safety copy.
void PrintUpkeep(const std::string& path);

}  // namespace tpv::bench
