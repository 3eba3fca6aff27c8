#include "panel/past_months.h"

#include "context/context.h"
#include "context/errands.h"
#include "context/form_toolkit.h"
#include "panel/monthly_sums.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

namespace {

class Stopping : PulseListener {
 public:
  explicit Stopping(const std::function<bool()>& stop) : stop_(stop) {}

 private:
  void OnPulse(double) override {
    if (stop_()) throw GivenUp();
  }

  const std::function<bool()>& stop_;
};

}  // namespace

void KeepPastMonths(Connection& connection, const DateTime& today, const LineTax& tax_of,
                    const std::function<bool()>& stop) {
  if (connection.Months() == nullptr) return;
  const Stopping stopping(stop);
  const auto before = [](const DateTime& day) { return MonthOf(AddDays(MonthOf(day).first, -1)); };
  try {
    for (Days month = before(today); month.first.year >= today.year - 1; month = before(month.first)) {
      MonthlySums sums(connection, today);
      sums.Announce(month);
      sums.Read(month, tax_of);
      sums.Keep();
    }
  } catch (const GivenUp&) {
  }
}

// What fails here the panel does itself, and reports.
void KeepPastMonthsBehind(Context& context) {
  Errands* const errands = context.ports.errands;
  if (errands == nullptr || !errands->ReachStore() || context.Database().Months() == nullptr) return;
  errands->Run([](Context& own, const std::function<bool()>& stop) {
    try {
      const auto toolkit = own.MyBd->CreateFormToolkit();
      KeepPastMonths(own.Database(), StartOfDay(own.ports.clock.Now()), LineTaxBy(*toolkit), stop);
    } catch (const std::exception&) {
    }
  });
}

}  // namespace tpv::panel
