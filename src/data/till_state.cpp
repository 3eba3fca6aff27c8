#include "data/till_state.h"

#include "base/number_text.h"
#include "base/text.h"
#include "data/codes.h"
#include "data/sql_text.h"

namespace tpv {

std::optional<std::int16_t> TillNumber(std::string_view till_field) {
  const auto till = ParseInt32(Trim(till_field));
  if (!till || *till < 1 || *till > 32767) return std::nullopt;
  return static_cast<std::int16_t>(*till);
}

bool TillIsOpen(Connection& connection, std::string_view till_field) {
  const auto till = TillNumber(till_field);
  if (!till) return false;
  const auto entries = connection.Execute(
      "SELECT DiaCaj_Tipo FROM DiaCaj WHERE DiaCaj_Caja = " + sql::Number(std::int64_t{*till}) +
      " ORDER BY DiaCaj_Caja,DiaCaj_Fecha DESC");
  if (entries->Eof()) return false;
  constexpr int kClosure = static_cast<int>(JournalEvent::Closure);
  return entries->Field("DiaCaj_Tipo").IntOr(kClosure) != kClosure;
}

void RequireTillOpen(Connection& connection, std::int32_t till) {
  if (!TillIsOpen(connection, std::to_string(till))) throw TillRefusal(kTillClosed);
}

void RequireTillClosed(Connection& connection, std::int32_t till) {
  if (TillIsOpen(connection, std::to_string(till))) throw TillRefusal(kTillOpen);
}

}  // namespace tpv
