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
  std::function<void()> end = {};  // neither
};

struct Times {
  double median = 0;  // microseconds
  double p99 = 0;
  double spread = 0;  // half of the middle half's width, of the median
};

// What is measured and what it may cost at most; 0: nothing is said.
struct Subject {
  std::string what;
  double ratio = 0;
  double growth = 0;        // from the small store to the large one
  double microseconds = 0;  // of what has nothing direct beside it
  bool shared = false;      // another program does part of the work
};

struct Row {
  Subject subject;
  Times till;
  Times direct;
  double disturbance = 0;  // of one processor, taken by other programs meanwhile
  double items = 1;        // worked through in one go: growth is an item's

  double Ratio() const { return direct.median > 0 ? till.median / direct.median : 0; }
};

// Sorts the times and sums them up.
Times Summary(std::vector<double> times);

// What other programs disturbed is measured again, twice at most; the quietest counts.
Row Compare(const Subject& subject, int runs, const Work& till, const Work& direct);
// With nothing to compare to.
Row Measure(const Subject& subject, int runs, const Work& till);

// A table in Markdown on standard output; with growth when the same rows come
// from a small store as well.
void Print(const std::vector<Row>& rows, const std::vector<Row>& small = {});

// Runs a program's work; an error is told and gives status 1.
int Guarded(int count, char** words, int (*work)(int, char**));

}  // namespace tpv::bench
