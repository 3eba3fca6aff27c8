#include "adapters/odbc/beside.h"

#include <chrono>
#include <future>

#include "platform/pulse.h"

namespace tpv::odbc {

namespace {

constexpr std::chrono::milliseconds kBetweenPulses{40};

bool IsThere(std::future<SQLRETURN>& answer) {
  return answer.wait_for(kBetweenPulses) == std::future_status::ready;
}

}  // namespace

// A cancellation that comes before the driver has begun is lost, so it is said again.
SQLRETURN RunBeside(SQLHSTMT statement, const std::function<SQLRETURN()>& call) {
  if (!IsPulseHeard()) return call();
  std::future<SQLRETURN> answer = std::async(std::launch::async, call);
  try {
    while (!IsThere(answer)) Pulse();
  } catch (...) {
    do {
      SQLCancel(statement);
    } while (!IsThere(answer));
    throw;
  }
  return answer.get();
}

}  // namespace tpv::odbc
