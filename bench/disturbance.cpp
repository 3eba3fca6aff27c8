#include "bench/disturbance.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

namespace tpv::bench {

namespace {

double SecondsOf(int who) {
  rusage used{};
  ::getrusage(who, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

double BusySeconds() {
  std::ifstream in("/proc/stat");
  std::string name;
  double user = 0, nice = 0, system = 0, idle = 0, waiting = 0, interrupt = 0, soft_interrupt = 0, stolen = 0;
  in >> name >> user >> nice >> system >> idle >> waiting >> interrupt >> soft_interrupt >> stolen;
  const double ticks = user + nice + system + interrupt + soft_interrupt + stolen;
  return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace

Disturbance::Seconds Disturbance::Now() {
  const auto wall = std::chrono::steady_clock::now().time_since_epoch();
  return {std::chrono::duration<double>(wall).count(), BusySeconds(),
          SecondsOf(RUSAGE_SELF) + SecondsOf(RUSAGE_CHILDREN)};
}

double Disturbance::Share() const {
  constexpr double kCoarse = 0.03;  // the system counts in hundredths of a second
  const Seconds now = Now();
  const double others = (now.busy - start_.busy) - (now.own - start_.own) - kCoarse;
  const double wall = now.wall - start_.wall;
  return wall > 0 ? std::max(0.0, others / wall) : 0;
}

}  // namespace tpv::bench
