#include "host/store_errands.h"

#include <utility>

#include "context/context.h"
#include "platform/ui/front_end.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv {

StoreErrands::StoreErrands(const Ports& ports, std::int32_t user, Opener open)
    : ports_(ports), user_(user), open_(std::move(open)), thread_([this] { Work(); }) {}

StoreErrands::~StoreErrands() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    errands_.clear();
  }
  changed_.notify_one();
  thread_.join();
}

void StoreErrands::Run(Errand errand) {
  {
    const std::lock_guard lock(mutex_);
    errands_.push_back(std::move(errand));
  }
  changed_.notify_one();
}

bool StoreErrands::Stopping() {
  const std::lock_guard lock(mutex_);
  return stopping_;
}

void StoreErrands::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return stopping_ || !errands_.empty(); });
    if (errands_.empty()) return;
    const Errand errand = std::move(errands_.front());
    errands_.pop_front();
    lock.unlock();
    try {
      Do(errand);
    } catch (const std::exception& error) {
      ports_.ui.Notify({std::string("No se puede abrir el almacén para enviar correo. ") + error.what(), {}});
    }
    lock.lock();
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
