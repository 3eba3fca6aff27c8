#include "host/store_errands.h"

#include <utility>

#include "context/context.h"
#include "host/machine.h"
#include "platform/ui/front_end.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv {

StoreErrands::StoreErrands(const Ports& ports, std::int32_t user, Opener open)
    : ports_(ports), user_(user), open_(std::move(open)) {}

StoreErrands::~StoreErrands() { Stop(); }

void StoreErrands::Stop() {
  records_.reset();
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  thread_.join();
  for (Task& task : std::exchange(tasks_, {})) done_.push_back(std::move(task));
}

void StoreErrands::Add(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  if (!thread_.joinable()) thread_ = std::thread([this] { WorkOff(); });
  changed_.notify_one();
}

void StoreErrands::Run(Errand errand) { Add({std::move(errand), {}, {}}); }

void StoreErrands::RunApart(Work work, Rest dropped) { Add({{}, std::move(work), std::move(dropped)}); }

void StoreErrands::Settle(Context& context) {
  std::deque<Task> done;
  {
    const std::lock_guard lock(mutex_);
    done.swap(done_);
  }
  for (const Task& task : done) {
    if (task.rest) task.rest(context);
  }
}

long StoreErrands::OverdueRecords() {
  if (!open_) return 0;
  if (!records_) records_ = std::make_unique<FiscalSending>(ports_.settings, ports_.clock, open_);
  return records_->Overdue();
}

std::string StoreErrands::SendingObstacle() const { return AgencyObstacle(ports_.settings); }

bool StoreErrands::Stopping() {
  const std::lock_guard lock(mutex_);
  return stopping_;
}

void StoreErrands::WorkOff() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
    if (stopping_) return;
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    try {
      if (task.work) task.rest = task.work();
      if (task.errand) Do(task.errand);
    } catch (const std::exception& error) {
      ports_.ui.Notify({std::string("No se puede abrir el almacén para lo que se hace aparte. ") + error.what(), {}});
    }
    lock.lock();
    done_.push_back(std::move(task));
  }
}

void StoreErrands::Do(const Errand& errand) {
  const std::unique_ptr<Connection> connection = open_();
  suite::SuiteFactory objects;
  Ports ports{ports_.ui,     ports_.printers, ports_.devices, ports_.settings, ports_.clock,
              ports_.mailer, ports_.reports,  objects,        ports_.sound};
  objects.SetPorts(ports);
  Context own{0, 0, 0, 0,
              std::make_shared<suite::StoreDatabase>(*connection, user_, ports_.ui, ports_.clock,
                                                    ports_.settings),
              ports};
  errand(own, [this] { return Stopping(); });
}

}  // namespace tpv
