// What a till does while the operator goes on: a thread with a connection, a database
// object and components of its own for each errand on the store; and the sending of invoice
// records.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "context/errands.h"
#include "host/fiscal_sending.h"
#include "platform/database.h"
#include "platform/ports.h"

namespace tpv {

class StoreErrands : public Errands {
 public:
  // Runs in the errands' thread. Throws what opening a store throws. Null: no other
  // thread may use the store.
  using Opener = std::function<std::unique_ptr<Connection>()>;

  // The ports outlive the errands; of them these use settings, clock and mailer, and
  // tell the operator what fails.
  StoreErrands(const Ports& ports, std::int32_t user, Opener open);
  // Stops; what is left undone is forgotten.
  ~StoreErrands() override;
  StoreErrands(const StoreErrands&) = delete;
  StoreErrands& operator=(const StoreErrands&) = delete;

  bool ReachStore() const override { return open_ != nullptr; }
  void Run(Errand errand) override;
  void RunApart(Work work, Rest dropped) override;
  // In the window's thread: what finished work left to do on the store.
  void Settle(Context& context);
  // Lets the one under way come to its next stop and drops those behind it.
  void Stop();
  // Invoice records are looked after from the first question on.
  long OverdueRecords() override;
  std::string SendingObstacle() const override;

 private:
  struct Task {
    Errand errand;  // or
    Work work;
    Rest rest;  // until the work is done: for when it is dropped
  };
  void Add(Task task);
  void WorkOff();
  void Do(const Errand& errand);
  bool Stopping();

  Ports ports_;
  const std::int32_t user_;
  const Opener open_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  std::deque<Task> done_;  // goes in the window's thread, with what it holds
  bool stopping_ = false;
  std::thread thread_;  // from the first errand on
  std::unique_ptr<FiscalSending> records_;
};

}  // namespace tpv
