// Sends the shop's invoice records while the tills sell: a thread with a connection of its
// own, that never holds up a sale.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "fiscal/sending.h"
#include "platform/database.h"
#include "platform/settings.h"

namespace tpv {

class Clock;

class FiscalSending {
 public:
  // Runs in the sender's thread. Throws what opening a store throws.
  using Opener = std::function<std::unique_ptr<Connection>()>;

  // Settings and clock outlive it. A store that makes no records is asked once a minute
  // whether it does.
  FiscalSending(const Settings& settings, const Clock& clock, Opener open);
  // Gives up an answer that is awaited; its records go out again another time.
  ~FiscalSending();
  FiscalSending(const FiscalSending&) = delete;
  FiscalSending& operator=(const FiscalSending&) = delete;

  // Records that wait longer than ten minutes.
  long Overdue() const { return overdue_; }

 private:
  void Work();
  // How long until the next look.
  std::chrono::seconds Look(fiscal::Agency& agency);
  void CountOverdue();

  const Settings& settings_;
  const Clock& clock_;
  const Opener open_;
  const std::string holder_;
  std::unique_ptr<Connection> connection_;
  std::atomic<long> overdue_ = 0;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::thread thread_;  // the last: it uses all of them
};

}  // namespace tpv
