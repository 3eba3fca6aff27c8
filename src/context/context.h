// What the screens and services of one component work on: the till's context
// that the host set, and the ports.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "base/date_time.h"
#include "context/choice_lists.h"
#include "context/database_object.h"
#include "context/retired_ids.h"
#include "platform/ports.h"

namespace tpv {

inline constexpr std::string_view kVersion = "1.0.0";  // major.minor.revision

struct Context {
  std::int32_t IdCliente = 0;
  std::int16_t Caja = 0;
  std::int32_t IdAgente = 0;
  std::int32_t IdAlbaran = 0;  // -1 or 0: no current sale
  std::shared_ptr<DatabaseObject> MyBd;
  Ports& ports;
  ChoiceLists choices{};
  RetiredIds retired{};
  // The host's: called once a till's closure is stored. Throws nothing.
  std::function<void()> till_closed{};
  std::optional<DateTime> keyed_since{};  // of the sale being keyed here, as the register has it

  Connection& Database() const { return MyBd->Conexion(); }
  Variant Parameter(std::string_view name) const { return MyBd->Parametro(name); }
};

}  // namespace tpv
