#include "bench/harness.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

#include "bench/disturbance.h"

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

constexpr double kDisturbed = 0.1;

// Looked at by people and by scripts/bench: the first number is the median.
std::string Median(const Times& times) {
  if (times.median <= 0) return "";
  char text[60];
  std::snprintf(text, sizeof text, "%.1f ± %.0f %%", times.median, 100 * times.spread);
  return text;
}

std::string Title(const Row& row) {
  if (row.disturbance < kDisturbed) return row.subject.what;
  return row.subject.what + " (disturbed: others took" + Number(" %.0f %% of a processor)", 100 * row.disturbance);
}

double Growth(double large, double small, double items) {
  return small > 0 ? large / small / items : 0;
}

}  // namespace

Times Summary(std::vector<double> times) {
  if (times.empty()) return {};
  std::sort(times.begin(), times.end());
  const auto at = [&](std::size_t hundredth) {
    return times[std::min(times.size() - 1, times.size() * hundredth / 100)];
  };
  const double median = at(50);
  return {median, at(99), median > 0 ? (at(75) - at(25)) / 2 / median : 0};
}

namespace {

Row CompareOnce(const Subject& subject, int runs, const Work& till, const Work& direct) {
  std::vector<double> till_times;
  std::vector<double> direct_times;
  const int warm_up = std::max(2, runs / 20);
  const Disturbance others;
  for (int run = -warm_up; run < runs; ++run) {
    const double ours = Microseconds(till);
    const double theirs = direct.run ? Microseconds(direct) : 0;
    if (run < 0) continue;
    till_times.push_back(ours);
    direct_times.push_back(theirs);
  }
  return {subject, Summary(std::move(till_times)), Summary(std::move(direct_times)),
          subject.shared ? 0 : others.Share()};
}

}  // namespace

Row Compare(const Subject& subject, int runs, const Work& till, const Work& direct) {
  Row quietest = CompareOnce(subject, runs, till, direct);
  for (int again = 0; again < 2 && quietest.disturbance >= kDisturbed; ++again) {
    Row row = CompareOnce(subject, runs, till, direct);
    if (row.disturbance < quietest.disturbance) quietest = std::move(row);
  }
  return quietest;
}

Row Measure(const Subject& subject, int runs, const Work& till) { return Compare(subject, runs, till, {}); }

void Print(const std::vector<Row>& rows, const std::vector<Row>& small) {
  const bool growth = !small.empty();
  std::printf(
      "| what | till, median µs | direct, median µs | ratio | at most | till, 99 %% µs | direct, "
      "99 %% µs |%s\n",
      growth ? " growth | at most | direct's growth |" : "");
  std::printf("|---|---|---|---|---|---|---|%s\n", growth ? "---|---|---|" : "");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    std::printf("| %s | %s | %s | %s | %s | %.1f | %s |", Title(row).c_str(), Median(row.till).c_str(),
                Median(row.direct).c_str(),
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
