#include "host/chosen_store.h"

#include <algorithm>

#include "base/text.h"
#include "host/play.h"
#include "host/server_store.h"
#include "host/store.h"
#include "platform/settings.h"

namespace tpv {

bool IsServerStore(std::string_view store) { return StartsWithNoCase(store, kServerStore); }

std::string TakeStoreOption(std::vector<std::string>& arguments) {
  for (const char* option : {"--store", "--odbc"}) {
    const auto at = std::find(arguments.begin(), arguments.end(), option);
    if (at == arguments.end()) continue;
    if (at + 1 == arguments.end()) throw UsageError(std::string(option) + ": falta el almacén");
    std::string store =
        (std::string_view(option) == "--odbc" ? std::string(kServerStore) : "") + *(at + 1);
    arguments.erase(at, at + 2);
    return store;
  }
  return {};
}

std::string RememberedStore(const Settings& settings) {
  std::string store = settings.Read("TPV", "Start", "Store");
  if (store.empty())
    throw UsageError("no hay ningún almacén recordado: indíquelo con --store o --odbc");
  return store;
}

std::string TakeChosenStore(const Settings& settings, std::vector<std::string>& arguments) {
  const std::string store = TakeStoreOption(arguments);
  return store.empty() ? RememberedStore(settings) : store;
}

std::unique_ptr<Connection> OpenChosenStore(const std::string& store, const Clock& clock) {
  if (IsServerStore(store)) return OpenServerStore(store.substr(kServerStore.size()));
  return OpenExistingStore(store, clock);
}

}  // namespace tpv
