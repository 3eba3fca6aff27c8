#include "host/open_shop.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "adapters/sqlite/store_file.h"
#include "host/chosen_store.h"
#include "host/demo/demonstration.h"
#include "host/store.h"
#include "suite/store_database.h"

namespace tpv {

namespace {

constexpr std::int32_t kUser = 1;

// A till that could sell and not store what it sold would be worse than a closed one.
std::string Writable(std::string store) {
  if (IsServerStore(store) || sqlite::IsArchiveFile(store)) return store;
  for (const std::string& path : {store, std::filesystem::path(store).parent_path().string()}) {
    if (::euidaccess(path.c_str(), W_OK) == 0 || errno == ENOENT) continue;
    throw DatabaseError("«" + path + "» es de solo lectura: no se podría guardar lo que se vende");
  }
  return store;
}

}  // namespace

OpenShop::OpenShop(const Ports& ports, std::string store, bool in_background)
    : ports_{ports.ui,     ports.printers, ports.devices, ports.settings, ports.clock,
             ports.mailer, ports.reports,  objects_,      ports.sound,
             nullptr,      ports.digest,   ports.tables},
      about_{Writable(std::move(store)), ""},
      connection_(OpenChosenStore(about_.store, ports.clock)),
      component_(ports_) {
  objects_.SetPorts(ports_);
  auto database = std::make_shared<suite::StoreDatabase>(*connection_, kUser, ports_.ui, ports_.clock,
                                                         ports_.settings);
  about_.name = database->Parametro("Par_Nombre").TextOr("");
  // One of an older program has its place for a mark.
  banner_ = about_.store == DemonstrationStore() ? kDemonstration : BannerOf(*connection_);
  context().MyBd = std::move(database);
  archive_ = IsArchive(*connection_);
  if (archive_) banner_ = ArchiveBanner(*connection_);
  if (!in_background || archive_) return;
  const auto open = [this] { return OpenChosenStore(about_.store, ports_.clock); };
  errands_ = std::make_unique<StoreErrands>(ports_, kUser, open);
  ports_.errands = errands_.get();
}

}  // namespace tpv
