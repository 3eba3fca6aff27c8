// What imports and exports ask of the store's parameters.
#pragma once

#include <cstdint>
#include <optional>
#include <set>

namespace tpv {
class Connection;
}

namespace tpv::office {

struct ShopParameters {
  int price_decimals = 2;                 // Par_decpre
  std::optional<std::int32_t> warehouse;  // Par_Alma, whose stock the sales take
};

ShopParameters ReadShopParameters(Connection& connection);
std::set<int> ReadWarehouses(Connection& connection);

}  // namespace tpv::office
