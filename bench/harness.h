// Times two ways of doing the same work, turn by turn in one run, so that what
// else the machine does hits both alike.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tpv::bench {

struct Work {
  std::function<void()> prepare;  // not timed; may be empty
  std::function<void()> run;
};

struct Times {
  double median = 0;  // microseconds
  double p99 = 0;
};

struct Row {
  std::string what;
  Times till;
  Times direct;

  double Ratio() const { return direct.median > 0 ? till.median / direct.median : 0; }
};

Row Compare(std::string what, int runs, const Work& till, const Work& direct);

// A table in Markdown on standard output.
void Print(const std::vector<Row>& rows);

// Runs a program's work; an error is told and gives status 1.
int Guarded(int count, char** words, int (*work)(int, char**));

}  // namespace tpv::bench
