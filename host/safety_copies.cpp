#include "host/safety_copies.h"

#include <chrono>
#include <utility>

#include "base/mask.h"
#include "platform/clock.h"

namespace tpv {

namespace {

constexpr int kOldAfterDays = 7;

// What went wrong with a copy, "" when nothing did.
std::string Make(const BackupPlan& plan, const Clock& clock) {
  try {
    const BackupResult result = BackupStore(plan, clock);
    return result.findings.empty()
               ? ""
               : "El almacén tiene errores; llame a soporte.\r\n" + result.findings;
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace

void SafetyCopies::Watch(const std::string& store) { store_ = store; }

void SafetyCopies::Closed() {
  if (store_.empty()) return;
  if (running_.valid()) failures_ += running_.get();
  try {
    running_ = std::async(std::launch::async, Make, PlannedBackup(settings_, store_), std::cref(clock_));
  } catch (const std::exception& error) {
    failures_ += error.what();
  }
}

std::string SafetyCopies::MakeNow() {
  const BackupResult result = BackupStore(PlannedBackup(settings_, store_), clock_);
  std::string text = "Copia guardada en " + result.path;
  if (!result.findings.empty())
    text += "\r\nEl almacén tiene errores; llame a soporte.\r\n" + result.findings;
  return text;
}

std::optional<std::string> SafetyCopies::Failure(bool wait) {
  const bool ready = running_.valid() && (wait || running_.wait_for(std::chrono::seconds(0)) ==
                                                      std::future_status::ready);
  if (ready) failures_ += running_.get();
  const std::string failure = std::exchange(failures_, {});
  return failure.empty() ? std::nullopt : std::optional(failure);
}

std::optional<DateTime> SafetyCopies::Last() const {
  return LastBackup(PlannedBackup(settings_, store_));
}

std::string SafetyCopies::Said() const {
  if (store_.empty()) return {};
  const auto last = Last();
  if (!last) return "Aún no hay ninguna copia de seguridad de esta tienda";
  return "Última copia de seguridad: " + FormatDate(*last, "DD/MM/YYYY HH:MM") +
         (Warning().empty() ? "" : ". Haga una: tiene más de una semana");
}

std::string SafetyCopies::Warning() const {
  if (store_.empty()) return {};
  const auto last = Last();
  if (!last) return "ninguna";
  return AddDays(*last, kOldAfterDays) < clock_.Now() ? "antigua" : "";
}

}  // namespace tpv
