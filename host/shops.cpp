#include "host/shops.h"

#include <algorithm>

#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "platform/settings.h"

namespace tpv {

namespace {

constexpr const char* kStart = "Start";
constexpr const char* kStore = "Store";
constexpr const char* kShops = "Shops";  // "1" a store, "Name1" its shop's name, and so on

std::string NameKey(std::size_t number) { return "Name" + std::to_string(number); }

}  // namespace

std::string Shops::Read(const std::string& key) const { return settings_.Read(kTpv, kShops, key); }

std::string Shops::Chosen() const { return settings_.Read(kTpv, kStart, kStore); }

std::vector<KnownShop> Shops::Known() const {
  std::vector<KnownShop> shops;
  for (std::size_t number = 1;; ++number) {
    const std::string store = Read(std::to_string(number));
    if (store.empty()) break;
    shops.push_back({store, Read(NameKey(number))});
  }
  const std::string chosen = Chosen();
  const auto is_chosen = [&](const KnownShop& shop) { return shop.store == chosen; };
  if (!chosen.empty() && std::none_of(shops.begin(), shops.end(), is_chosen)) shops.push_back({chosen, ""});
  return shops;
}

void Shops::Choose(const KnownShop& shop) {
  std::vector<KnownShop> known = Known();
  const auto same = [&](const KnownShop& other) { return other.store == shop.store; };
  const auto found = std::find_if(known.begin(), known.end(), same);
  const auto number = static_cast<std::size_t>(found - known.begin()) + 1;
  const auto keep = [this](const char* section, const std::string& key, const std::string& value) {
    if (settings_.Read(kTpv, section, key) != value) settings_.Write(kTpv, section, key, value);
  };
  // One that only the choice named before comes into the list with it.
  for (std::size_t i = 0; i < known.size(); ++i) keep(kShops, std::to_string(i + 1), known[i].store);
  keep(kShops, std::to_string(number), shop.store);
  keep(kShops, NameKey(number), shop.name);
  keep(kStart, kStore, shop.store);
}

std::string Shortened(const std::string& path) {
  const std::string home = ExpandHome("~/");
  return path.starts_with(home) ? "~/" + path.substr(home.size()) : path;
}

}  // namespace tpv
