// Any text as a statement: it runs, or a DatabaseError says what is wrong with it.
#include "adapters/files/temporary_folder.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "platform/clock.h"

namespace {

struct StillClock : tpv::Clock {
  tpv::DateTime Now() const override { return {2026, 11, 24, 10, 30, 0, 0}; }
};

tpv::Connection& Store() {
  static const StillClock clock;
  static const tpv::TemporaryFolder folder;
  static tpv::SqliteConnection connection = [] {
    tpv::CreateStore(folder / "tienda.db");
    return tpv::SqliteConnection(folder / "tienda.db", clock);
  }();
  return connection;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view sql(reinterpret_cast<const char*>(data), size);
  constexpr int kRows = 20;
  try {
    const tpv::Transaction undone(Store());
    const auto rows = Store().Execute(sql);
    for (int row = 0; row < kRows && !rows->Eof(); ++row, rows->MoveNext()) {
      for (std::size_t i = 0; i < rows->FieldCount(); ++i) (void)rows->Field(i);
    }
  } catch (const tpv::DatabaseError&) {
  }
  return 0;
}
