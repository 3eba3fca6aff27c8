#include "host/safety_copies.h"

#include <chrono>

#include "base/mask.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "platform/clock.h"
#include "platform/database.h"

namespace tpv {

namespace {

constexpr int kOldAfterDays = 7;
constexpr std::int64_t kUnknown = -1;

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

std::int64_t SafetyCopies::NewestClosure(Connection& connection, std::int32_t till) {
  const auto newest = connection.Execute(
      "SELECT MAX(DiaCaj_Id) FROM DiaCaj WHERE DiaCaj_Caja = " + sql::Number(std::int64_t{till}) +
      " AND DiaCaj_Tipo = " + std::to_string(static_cast<int>(JournalEvent::Closure)));
  return newest->Field(0).IntOr(0);
}

void SafetyCopies::Begin(Connection& connection, std::int32_t till) {
  till_ = till;
  closure_ = kUnknown;
  if (store_.empty()) return;
  try {
    closure_ = NewestClosure(connection, till);
  } catch (const DatabaseError&) {
    // The screen that is about to open says what is wrong.
  }
}

void SafetyCopies::End(Connection& connection) {
  if (store_.empty() || closure_ == kUnknown) return;
  try {
    if (NewestClosure(connection, till_) == closure_) return;
  } catch (const DatabaseError&) {
    return;  // as above
  }
  if (running_.valid()) running_.wait();
  running_ =
      std::async(std::launch::async, Make, PlannedBackup(settings_, store_), std::cref(clock_));
}

std::string SafetyCopies::MakeNow() {
  const BackupResult result = BackupStore(PlannedBackup(settings_, store_), clock_);
  std::string text = "Copia guardada en " + result.path;
  if (!result.findings.empty())
    text += "\r\nEl almacén tiene errores; llame a soporte.\r\n" + result.findings;
  return text;
}

std::optional<std::string> SafetyCopies::Failure(bool wait) {
  if (!running_.valid()) return std::nullopt;
  if (!wait && running_.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
    return std::nullopt;
  const std::string failure = running_.get();
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
