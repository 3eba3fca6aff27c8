#include "host/new_shop.h"

#include <filesystem>

#include "adapters/files/private_files.h"
#include "base/text.h"
#include "host/chosen_store.h"
#include "host/demo/demonstration.h"
#include "host/shops.h"
#include "host/store.h"
#include "host/store_making.h"
#include "office/shop_window.h"
#include "platform/database.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

// A file as typed, or "odbc:" and a connection.
StorePlace PlaceOf(const std::string& typed) {
  if (IsServerStore(typed)) return {true, typed.substr(kServerStore.size())};
  return {false, fs::absolute(ExpandHome(typed)).lexically_normal().string()};
}

// Nobody finds again what lies in the folder that the program happened to start in.
std::string PlaceFault(const std::string& typed) {
  if (IsServerStore(typed)) {
    return Trim(typed.substr(kServerStore.size())).empty() ? "falta la conexión con el servidor detrás de odbc:" : "";
  }
  if (!typed.starts_with('/') && !typed.starts_with("~/")) {
    return "se espera un fichero con su carpeta, como ~/tienda.db, o una conexión, como odbc:Tienda";
  }
  std::error_code ignored;
  if (!fs::path(typed).has_filename() || fs::is_directory(PlaceOf(typed).name, ignored)) {
    return "«" + typed + "» es una carpeta: escriba también el nombre del fichero";
  }
  return {};
}

}  // namespace

std::string CreateShop(ui::FrontEnd& front_end, const Clock& clock) {
  const auto make = [&](const std::string& typed, const office::ShopSetup& setup) {
    if (const std::string fault = PlaceFault(typed); !fault.empty()) return office::Refusals{{0, "", fault}};
    const StorePlace place = PlaceOf(typed);
    if (!place.server) MakePrivateFolder(fs::path(place.name).parent_path().string());
    try {
      return StoreNewShop(place, setup, clock);
    } catch (const DatabaseError& error) {
      if (!place.server) throw;
      throw DatabaseError(std::string("no se puede crear en el servidor. ") + error.what());
    }
  };
  const auto propose = [](const std::string& name) {
    return Shortened(DataFolder() + "/tiendas/" + FileNamePiece(name) + ".db");
  };
  office::ShopWindow window(front_end, make, propose);
  front_end.ShowModal(window);
  const std::string& stored = window.stored();
  if (!stored.empty()) {
    ui::MessageBox next;
    next.text = "La tienda está creada. Ahora, sus artículos: en Oficina, con Importar, de una hoja de cálculo, o con Artículos, "
                "uno a uno.\r\nDespués, Venta.";
    next.title = window.caption;
    next.icon = ui::Icon::Information;
    front_end.Show(next);
  }
  return stored.empty() || IsServerStore(stored) ? stored : PlaceOf(stored).name;
}

std::string MakeDemonstration(const Clock& clock) {
  std::string store = DemonstrationStore();
  if (fs::exists(store)) return store;
  MakePrivateFolder(fs::path(store).parent_path().string());
  MakeStore(store, Contents::Demonstration, clock);
  return store;
}

}  // namespace tpv
