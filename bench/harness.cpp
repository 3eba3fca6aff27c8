#include "bench/harness.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

namespace tpv::bench {

namespace {

double Microseconds(const Work& work) {
  using Clock = std::chrono::steady_clock;
  if (work.prepare) work.prepare();
  const auto start = Clock::now();
  work.run();
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

Times Summary(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const std::size_t last = times.size() - 1;
  return {times[times.size() / 2], times[std::min(last, times.size() * 99 / 100)]};
}

}  // namespace

Row Compare(std::string what, int runs, const Work& till, const Work& direct) {
  std::vector<double> till_times;
  std::vector<double> direct_times;
  const int warm_up = std::max(2, runs / 20);
  for (int run = -warm_up; run < runs; ++run) {
    const double ours = Microseconds(till);
    const double theirs = Microseconds(direct);
    if (run < 0) continue;
    till_times.push_back(ours);
    direct_times.push_back(theirs);
  }
  return {std::move(what), Summary(std::move(till_times)), Summary(std::move(direct_times))};
}

void Print(const std::vector<Row>& rows) {
  std::printf("| what | till, median µs | direct, median µs | ratio | till, 99 %% µs | direct, 99 %% µs |\n");
  std::printf("|---|---|---|---|---|---|\n");
  for (const Row& row : rows) {
    std::printf("| %s | %.1f | %.1f | %.2f | %.1f | %.1f |\n", row.what.c_str(), row.till.median,
                row.direct.median, row.Ratio(), row.till.p99, row.direct.p99);
  }
  std::fflush(stdout);
}

int Guarded(int count, char** words, int (*work)(int, char**)) {
  try {
    return work(count, words);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", words[0], error.what());
    return 1;
  }
}

}  // namespace tpv::bench
