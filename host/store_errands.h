// What a till does on its store while the operator goes on: a thread with a
// connection, a database object and components of its own for each errand.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "context/errands.h"
#include "platform/database.h"
#include "platform/ports.h"

namespace tpv {

class StoreErrands : public Errands {
 public:
  // Runs in the errands' thread. Throws what opening a store throws.
  using Opener = std::function<std::unique_ptr<Connection>()>;

  // The ports outlive the errands; of them these use settings, clock and mailer, and
  // tell the operator what fails.
  StoreErrands(const Ports& ports, std::int32_t user, Opener open);
  // Lets the one under way come to its next stop and drops those behind it.
  ~StoreErrands() override;
  StoreErrands(const StoreErrands&) = delete;
  StoreErrands& operator=(const StoreErrands&) = delete;

  void Run(Errand errand) override;

 private:
  void Work();
  void Do(const Errand& errand);
  bool Stopping();

  Ports ports_;
  const std::int32_t user_;
  const Opener open_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Errand> errands_;
  bool stopping_ = false;
  std::thread thread_;  // the last: it uses all of them
};

}  // namespace tpv
