#include "host/store_place.h"

#include "host/play.h"
#include "host/server_store.h"
#include "host/store.h"

namespace tpv {

StorePlace TakePlace(const std::vector<std::string>& arguments, std::size_t& at,
                     const char* usage) {
  StorePlace place;
  place.server = at < arguments.size() && arguments[at] == "--odbc";
  at += place.server ? 1 : 0;
  if (at >= arguments.size() || arguments[at].starts_with("--")) throw UsageError(usage);
  place.name = arguments[at++];
  return place;
}

std::unique_ptr<Connection> OpenExisting(const StorePlace& place, const Clock& clock) {
  if (place.server) return OpenServer(place.name);
  return OpenExistingStore(place.name, clock, OpenMode::AsItIs);
}

}  // namespace tpv
