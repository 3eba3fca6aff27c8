#include "host/new_shop.h"

#include <filesystem>

#include "adapters/files/private_files.h"
#include "host/chosen_store.h"
#include "host/demo/demonstration.h"
#include "host/shops.h"
#include "host/store.h"
#include "host/store_making.h"
#include "office/shop_window.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

// A file as typed, or "odbc:" and a connection.
StorePlace PlaceOf(const std::string& typed) {
  if (IsServerStore(typed)) return {true, typed.substr(kServerStore.size())};
  return {false, fs::absolute(ExpandHome(typed)).lexically_normal().string()};
}

}  // namespace

std::string CreateShop(ui::FrontEnd& front_end, const Clock& clock) {
  const auto make = [&](const std::string& typed, const office::ShopSetup& setup) {
    const StorePlace place = PlaceOf(typed);
    if (!place.server) MakePrivateFolder(fs::path(place.name).parent_path().string());
    return StoreNewShop(place, setup, clock);
  };
  const auto propose = [](const std::string& name) {
    return Shortened(DataFolder() + "/tiendas/" + FileNamePiece(name) + ".db");
  };
  office::ShopWindow window(front_end, make, propose);
  front_end.ShowModal(window);
  const std::string& stored = window.stored();
  return stored.empty() || IsServerStore(stored) ? stored : PlaceOf(stored).name;
}

std::string MakeDemonstration(const Clock& clock) {
  const std::string store = DemonstrationStore();
  if (fs::exists(store)) return store;
  MakePrivateFolder(fs::path(store).parent_path().string());
  MakeStore(store, Contents::Demonstration, clock);
  return store;
}

}  // namespace tpv
