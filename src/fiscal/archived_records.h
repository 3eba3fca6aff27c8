// Records of tickets that a shop has put into an archive: the chain keeps them, and the
// store knows how many they are and what they add up to.
#pragma once

#include <cstdint>
#include <string>

#include "base/variant.h"
#include "fiscal/setup.h"

namespace tpv::fiscal {

struct ArchivedRecords {
  std::int64_t count = 0;
  Money total{};
  std::string files;  // "tienda-hasta-2019.db, tienda-hasta-2020.db"
};

// In force, of today's mode. None in a store that knows of no archives. Throws DatabaseError.
ArchivedRecords ReadArchivedRecords(const Desk& desk);

}  // namespace tpv::fiscal
