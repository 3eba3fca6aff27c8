// A shop that makes invoice records.
#pragma once

#include <memory>

#include "fiscal/setup.h"
#include "host/machine.h"
#include "platform/database.h"
#include "platform/digest.h"

namespace tpv {

// False in a build that cannot.
inline bool MakeRecords(Connection& store, fiscal::Mode mode = fiscal::Mode::Trial) {
  const auto digest = MakeDigest();
  if (digest == nullptr) return false;
  store.Execute("UPDATE Parametros SET Par_FisProductor = 'Programas del Sur, S.L.', Par_FisProdDoc = 'B12345674', "
                "Par_FisInstalacion = '1', Par_FisZona = 'madrid', Par_SerTicFac = 'FT'");
  fiscal::TurnOn(fiscal::DeskOf(store, digest.get()), mode, {});
  return true;
}

}  // namespace tpv
