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
  const auto stop = Clock::now();
  if (work.end) work.end();
  return std::chrono::duration<double, std::micro>(stop - start).count();
}

std::string Number(const char* format, double value) {
  char text[40];
  std::snprintf(text, sizeof text, format, value);
  return value > 0 ? text : "";
}

std::string AtMost(const Subject& subject) {
  if (subject.microseconds > 0) return Number("%.0f µs", subject.microseconds);
  return Number("%.2f", subject.ratio);
}

double Growth(double large, double small, double items) {
  return small > 0 ? large / small / items : 0;
}

}  // namespace

Times Summary(std::vector<double> times) {
  if (times.empty()) return {};
  std::sort(times.begin(), times.end());
  const std::size_t last = times.size() - 1;
  return {times[times.size() / 2], times[std::min(last, times.size() * 99 / 100)]};
}

Row Compare(Subject subject, int runs, const Work& till, const Work& direct) {
  std::vector<double> till_times;
  std::vector<double> direct_times;
  const int warm_up = std::max(2, runs / 20);
  for (int run = -warm_up; run < runs; ++run) {
    const double ours = Microseconds(till);
    const double theirs = direct.run ? Microseconds(direct) : 0;
    if (run < 0) continue;
    till_times.push_back(ours);
    direct_times.push_back(theirs);
  }
  return {std::move(subject), Summary(std::move(till_times)), Summary(std::move(direct_times))};
}

Row Measure(Subject subject, int runs, const Work& till) {
  return Compare(std::move(subject), runs, till, {});
}

void Print(const std::vector<Row>& rows, const std::vector<Row>& small) {
  const bool growth = !small.empty();
  std::printf(
      "| what | till, median µs | direct, median µs | ratio | at most | till, 99 %% µs | direct, "
      "99 %% µs |%s\n",
      growth ? " growth | at most | direct's growth |" : "");
  std::printf("|---|---|---|---|---|---|---|%s\n", growth ? "---|---|---|" : "");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    std::printf("| %s | %.1f | %s | %s | %s | %.1f | %s |", row.subject.what.c_str(),
                row.till.median, Number("%.1f", row.direct.median).c_str(),
                Number("%.2f", row.Ratio()).c_str(), AtMost(row.subject).c_str(), row.till.p99,
                Number("%.1f", row.direct.p99).c_str());
    if (growth) {
      const Row& less = small[i];
      const double items = row.items / less.items;
      std::printf(" %.2f | %s | %s |", Growth(row.till.median, less.till.median, items),
                  Number("%.2f", row.subject.growth).c_str(),
                  Number("%.2f", Growth(row.direct.median, less.direct.median, items)).c_str());
    }
    std::printf("\n");
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
