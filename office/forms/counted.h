// "1 precio", "3 precios".
#pragma once

#include <cstddef>
#include <string>

namespace tpv::office {

inline std::string Counted(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace tpv::office
