#include "bench/capacity.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <queue>
#include <random>

#include "adapters/files/temporary_folder.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "bench/harness.h"
#include "bench/till.h"
#include "host/demo/demonstration.h"
#include "host/store.h"

namespace tpv::bench {

namespace {

using Seconds = std::chrono::duration<double>;
using SteadyClock = std::chrono::steady_clock;

struct Hold {
  double seconds;
  int statements;  // with beginning and end
};

// Notes how long each transaction holds the lock.
class LockWatch : public RecordingConnection {
 public:
  using RecordingConnection::RecordingConnection;
  void BeginTrans() override {
    RecordingConnection::BeginTrans();
    began_ = SteadyClock::now();
    sent.clear();
  }
  void CommitTrans() override {
    RecordingConnection::CommitTrans();
    holds.push_back(
        {Seconds(SteadyClock::now() - began_).count(), static_cast<int>(sent.size()) + 2});
  }
  std::vector<Hold> holds;

 private:
  SteadyClock::time_point began_;
};

constexpr int kLines = 5;
constexpr int kSteps = kLines + 2;  // begun, scanned, paid

// In the order of a sale's steps, again and again.
std::vector<Hold> HoldsOfSales(int sales) {
  const TemporaryFolder folder(std::filesystem::current_path());
  const StepClock clock;
  MakeLargeStore(folder / "tienda.db", {10000, 10, 1000, 1}, clock);
  SqliteConnection connection(folder / "tienda.db", clock);
  connection.SetSynchronous(false);  // each site has its own disk
  LockWatch watch(connection);
  Till till(watch);
  for (int sale = 0; sale < sales; ++sale) {
    till.StartSale();
    for (int line = 0; line < kLines; ++line) till.Scan("0007");
    till.Finish();
  }
  if (std::ssize(watch.holds) != sales * kSteps) {
    throw std::runtime_error("a sale takes the lock more often than thought");
  }
  return watch.holds;
}

// Where a store stands: what every statement and every commit cost besides the work.
struct Site {
  const char* name;
  double round_trip;
  double flush;
};

struct Load {
  double sales = 0;  // a second
  double busy = 0;   // part of the time that the lock is held
  double late = 0;   // seconds that one step in a hundred waits for it at least
};

// An hour of tills at their busiest: 2.5 s a scan, 15 s to pay, 20 s between two customers.
Load Simulate(const std::vector<Hold>& holds, const Site& site, int tills) {
  constexpr double kHour = 3600;
  constexpr double kScan = 2.5, kPay = 15, kPause = 20;
  std::mt19937 random(1);
  const auto pause = [&](double mean) { return std::exponential_distribution<>(1 / mean)(random); };
  struct Event {
    double at;
    int step;
    bool operator>(const Event& other) const { return at > other.at; }
  };
  std::priority_queue<Event, std::vector<Event>, std::greater<>> events;
  for (int till = 0; till < tills; ++till) events.push({pause(kPause), 0});
  std::vector<double> waits;
  double free_at = 0, held_in_all = 0;
  int sales = 0;
  while (events.top().at < kHour) {
    const Event event = events.top();
    events.pop();
    const std::size_t sample = random() % (holds.size() / kSteps) * kSteps + event.step;
    const double held =
        holds[sample].seconds + holds[sample].statements * site.round_trip + site.flush;
    const double start = std::max(event.at, free_at);
    waits.push_back(start - event.at);
    free_at = start + held;
    held_in_all += held;
    const bool last = event.step + 1 == kSteps;
    sales += last;
    const double human = last ? kPause : event.step == kLines ? kPay : kScan;
    events.push({free_at + pause(human), last ? 0 : event.step + 1});
  }
  return {sales / kHour, held_in_all / kHour, Summary(std::move(waits)).p99};
}

}  // namespace

void PrintCapacity() {
  const std::vector<Hold> holds = HoldsOfSales(300);
  double seconds = 0, statements = 0;
  for (const Hold& hold : holds) {
    seconds += hold.seconds;
    statements += hold.statements;
  }
  std::printf(
      "A sale of %d lines takes the lock %d times, on average for %.2f ms and %.1f statements.\n\n",
      kLines, kSteps, 1000 * seconds / static_cast<double>(holds.size()),
      statements / static_cast<double>(holds.size()));
  std::printf(
      "| store | tills | sales a second | lock held, %% | one step in 100 waits, ms "
      "|\n|---|---|---|---|---|\n");
  const Site sites[] = {{"in a file, 0.1 ms a flush", 0, 0.0001},
                        {"in a file, 5 ms a flush", 0, 0.005},
                        {"server in the shop, 0.3 ms away", 0.0003, 0.001},
                        {"server of the chain, 20 ms away", 0.02, 0.001}};
  for (const Site& site : sites) {
    for (const int tills : {3, 10, 30, 100, 300, 1000, 3000}) {
      const Load load = Simulate(holds, site, tills);
      std::printf("| %s | %d | %.2f | %.0f | %.1f |\n", site.name, tills, load.sales,
                  100 * load.busy, 1000 * load.late);
      if (load.busy > 0.95) break;
    }
  }
}

}  // namespace tpv::bench
