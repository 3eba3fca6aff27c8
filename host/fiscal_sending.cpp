#include "host/fiscal_sending.h"

#include "fiscal/agency.h"
#include "fiscal/moment.h"
#include "fiscal/records.h"
#include "fiscal/setup.h"
#include "host/machine.h"
#include "platform/clock.h"

namespace tpv {

namespace {

constexpr std::chrono::seconds kBetweenLooks{5};
constexpr std::chrono::seconds kWhileOff{60};
constexpr int kOverdueSeconds = 600;

}  // namespace

FiscalSending::FiscalSending(const Settings& settings, const Clock& clock, Opener open)
    : settings_(settings),
      clock_(clock),
      open_(std::move(open)),
      holder_(fiscal::NewHolder()),
      thread_([this] { Work(); }) {}

FiscalSending::~FiscalSending() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void FiscalSending::Work() {
  const auto agency = MakeAgency(settings_, [this] { return stopping_.load(); });
  if (agency == nullptr) return;
  std::unique_lock lock(mutex_);
  std::chrono::seconds pause{};
  do {
    lock.unlock();
    pause = Look(*agency);
    lock.lock();
  } while (!changed_.wait_for(lock, pause, [this] { return stopping_.load(); }));
  lock.unlock();
  fiscal::LeaveTurn(connection_.get(), holder_);
}

// What fails now is tried again at the next look; what waits too long shows in the band.
std::chrono::seconds FiscalSending::Look(fiscal::Agency& agency) {
  try {
    if (!connection_) connection_ = open_();
    if (fiscal::ModeOf(fiscal::DeskOf(*connection_, nullptr)) == fiscal::Mode::Off) {
      connection_.reset();
      return kWhileOff;
    }
    fiscal::SendWaiting(*connection_, agency, holder_, fiscal::When::InTurn);
    CountOverdue();
  } catch (const std::exception&) {
    connection_.reset();
  }
  return kBetweenLooks;
}

void FiscalSending::CountOverdue() {
  const auto waiting = fiscal::CountWaiting(*connection_);
  const auto oldest = fiscal::MomentUtc(waiting.oldest);
  const bool late = oldest && AddSeconds(*oldest, kOverdueSeconds) < clock_.Utc();
  overdue_ = late ? static_cast<long>(waiting.count) : 0;
}

}  // namespace tpv
