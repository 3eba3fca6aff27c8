#include "bench/rivals.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>

#include "adapters/files/temporary_folder.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "bench/direct_till.h"
#include "bench/harness.h"
#include "bench/ten_line_sales.h"
#include "bench/till.h"
#include "host/demo/demonstration.h"
#include "host/store.h"

namespace tpv::bench {

namespace {

constexpr int kArticles = 2000;
constexpr int kLines = 5;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Sales of five lines until the time is over.
template <typename Seller>
void SellFrom(Seller& seller, int till, double start, double seconds) {
  std::vector<double> steps;
  const auto timed = [&](auto step) {
    const double before = Now();
    step();
    steps.push_back((Now() - before) * 1e6);
  };
  std::this_thread::sleep_for(std::chrono::duration<double>(start - Now()));
  int sales = 0;
  for (; Now() < start + seconds; ++sales) {
    timed([&] { seller.StartSale(); });
    for (int line = 0; line < kLines; ++line) {
      const std::string code =
          FormatNumber(1 + (till * 7919 + sales * kLines + line) % kArticles, "0000");
      timed([&] { seller.Scan(code); });
    }
    timed([&] { seller.Finish(); });
  }
  std::printf("%d\n", sales);
  for (const double step : steps) std::printf("%.1f\n", step);
}

struct Outcome {
  double sales = 0;  // a second, of all
  double share = 1;  // the slowest one's part of what would be fair
  Times steps;
  double longest = 0;  // microseconds
};

// One count of tills beside one till alone in the same turn.
struct Crowd {
  int tills = 1;
  Outcome ours;
  Outcome theirs;
  Outcome alone;

  double OfOneAlone() const { return ours.sales / alone.sales; }
  // A fair step takes as many times as long as there are tills.
  double OfFair(double step, double step_alone) const { return step / (tills * step_alone); }
};

constexpr int kTurns = 3;

using Process = std::unique_ptr<FILE, int (*)(FILE*)>;

// Waits for the process's end and adds what it says. Returns its sales.
double Listen(Process process, std::vector<double>& steps) {
  double sales = 0;
  if (std::fscanf(process.get(), "%lf", &sales) != 1) throw std::runtime_error("a till gave up");
  for (double step = 0; std::fscanf(process.get(), "%lf", &step) == 1;) steps.push_back(step);
  return sales;
}

Outcome SellAtOnce(const std::string& store, const char* side, int tills, double seconds) {
  std::vector<Process> processes;
  const std::string start = std::to_string(Now() + 0.3 + 0.1 * tills);
  for (int till = 1; till <= tills; ++till) {
    const std::string command = "/proc/" + std::to_string(::getpid()) + "/exe seller '" + store +
                                "' " + std::to_string(till) + " " + start + " " +
                                std::to_string(seconds) + " " + side;
    processes.emplace_back(::popen(command.c_str(), "r"), ::pclose);
  }
  std::vector<double> steps;
  double all = 0;
  double least = 1e9;
  for (Process& process : processes) {
    const double sales = Listen(std::move(process), steps);
    all += sales;
    least = std::min(least, sales);
  }
  const double longest = *std::max_element(steps.begin(), steps.end());
  return {all / seconds, least * tills / all, Summary(std::move(steps)), longest};
}

void Print(const Crowd& crowd) {
  std::printf("| %d | %.0f | %.2f | 0.85 | %.0f | %.0f | %.0f | %.1f | 3 | %.0f | %.1f | 3 | %.0f | %.0f | %.2f | 0.90 | %.2f |\n",
              crowd.tills, crowd.ours.sales, crowd.OfOneAlone(), crowd.theirs.sales, crowd.ours.steps.median, crowd.ours.steps.p99,
              crowd.OfFair(crowd.ours.steps.p99, crowd.alone.steps.p99), crowd.ours.longest,
              crowd.OfFair(crowd.ours.longest, crowd.alone.longest), crowd.theirs.steps.p99, crowd.theirs.longest, crowd.ours.share,
              crowd.theirs.share);
}

// The middle one by what all sell of one alone.
const Crowd& Middle(std::vector<Crowd>& turns) {
  const auto middle = turns.begin() + static_cast<std::ptrdiff_t>(turns.size() / 2);
  std::nth_element(turns.begin(), middle, turns.end(),
                   [](const Crowd& left, const Crowd& right) { return left.OfOneAlone() < right.OfOneAlone(); });
  return *middle;
}

}  // namespace

int Sell(const std::vector<std::string>& words) {
  const StepClock clock;
  const int till = std::stoi(words.at(1));
  const double start = std::stod(words.at(2));
  const double seconds = std::stod(words.at(3));
  if (words.at(4) == "direct") {
    DirectStore store(words[0], clock);
    DirectTill direct(store);
    SellFrom(direct, till, start, seconds);
  } else {
    SqliteConnection connection(words[0], clock);
    Till seller(connection, till);
    SellFrom(seller, till, start, seconds);
  }
  return 0;
}

void MeasureRivals(double seconds) {
  const TemporaryFolder folder(std::filesystem::current_path());
  const std::string store = folder / "tienda.db";
  MakeLargeStore(store, {10000, 10, kArticles, 1}, StepClock());
  std::map<int, std::vector<Crowd>> crowds;
  for (int turn = 0; turn < kTurns; ++turn) {
    Outcome alone;
    for (const int tills : {1, 2, 4, 8}) {
      const Outcome ours = SellAtOnce(store, "till", tills, seconds);
      if (tills == 1) alone = ours;
      crowds[tills].push_back({tills, ours, SellAtOnce(store, "direct", tills, seconds), alone});
    }
  }
  std::printf(
      "| tills | sales a second | of one alone | at least | direct | step, median µs | 99 %% µs | of a fair one | at most | "
      "longest µs | of a fair one | at most | direct, 99 %% µs | longest µs | slowest till's share | at least | direct |\n"
      "|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
  for (auto& [tills, turns] : crowds) Print(Middle(turns));
  std::fflush(stdout);
}

}  // namespace tpv::bench
