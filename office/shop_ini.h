// A shop's set-up as a small text file: examples/shop.ini.
#pragma once

#include <string_view>

#include "office/ini.h"
#include "office/shop_setup.h"

namespace tpv::office {

struct ShopFile {
  ShopSetup setup;
  // Everything wrong with the file, each with its line where it has one, in their order.
  Refusals refusals;
};

// What the file does not say stays as ShopSetup has it.
ShopFile ReadShopFile(std::string_view text);
// The same of entries that were typed elsewhere; their lines tell one of several apart.
ShopFile ReadShop(const Ini& ini);

}  // namespace tpv::office
