// Structs that a host fills by its own header.
#pragma once

#include <cstring>

#include "host/interface/faults.h"

namespace tpv::interface {

// What an older header does not have is zero; what a newer one adds could not be
// heeded, so such a host is refused.
template <typename Struct>
Struct Copied(const Struct& given) {
  if (given.size > sizeof(Struct)) {
    throw Fault(ZRTPV_E_ABI, "El programa se construyó con un zrtpv.h más nuevo que la biblioteca");
  }
  if (given.size < sizeof(std::uint32_t)) throw Fault(ZRTPV_E_ARGUMENT, "Falta el tamaño (size)");
  Struct copy{};
  std::memcpy(&copy, &given, given.size);
  return copy;
}

}  // namespace tpv::interface
