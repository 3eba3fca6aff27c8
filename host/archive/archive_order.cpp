#include "host/archive/archive_order.h"

#include <chrono>
#include <filesystem>

#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/lone_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "host/archive/archive_file.h"
#include "host/archive/removal.h"
#include "host/archive/settled.h"
#include "host/store.h"
#include "host/store_check.h"
#include "platform/clock.h"
#include "platform/database.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

template <typename Work>
double Seconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void RequireEnded(int year, const Clock& clock) {
  constexpr int kFirst = 1900;
  const int now = clock.Now().year;
  if (year > now) {
    throw DatabaseError("El año " + std::to_string(year - 1) + " no ha terminado: como mucho, --before " +
                        std::to_string(now));
  }
  if (year < kFirst) throw DatabaseError("No hay ventas tan antiguas: se espera un año como " + std::to_string(now));
}

// What a broken store holds is not carried about.
void RequireSound(const std::string& store, const Clock& clock) {
  const auto connection = OpenExistingStore(store, clock, OpenMode::AsItIs);
  auto& files = dynamic_cast<SqliteConnection&>(*connection);
  const auto damage = files.Damage();
  if (!damage.empty()) throw DatabaseError("El almacén está dañado: " + damage.front());
  const auto findings = CheckStore(files);
  if (AnyBroken(findings)) {
    throw DatabaseError("El almacén tiene errores y así no se archiva: llame a soporte\n" + FindingsText(findings));
  }
}

std::string Megabytes(std::uintmax_t bytes) { return std::to_string(bytes / 1'000'000 + 1) + " MB"; }

void RequireRoom(const std::string& file, std::uintmax_t bytes) {
  const fs::path folder = fs::absolute(file).parent_path();
  std::error_code unknown;
  const fs::space_info space = fs::space(folder, unknown);
  if (unknown || space.available >= bytes) return;
  throw DatabaseError("En «" + folder.string() + "» no queda sitio: hacen falta " + Megabytes(bytes));
}

// Only while nobody sells is there time for it; what it needs besides lies beside the store.
void Shrink(sqlite::LoneStore& store) {
  sqlite3* handle = store.handle();
  const auto pages = [&](const char* pragma) {
    return static_cast<std::uintmax_t>(sqlite::Number(handle, std::string("PRAGMA main.") + pragma));
  };
  const std::uintmax_t full = (pages("page_count") - pages("freelist_count")) * pages("page_size");
  RequireRoom(store.path(), 2 * full);
  const std::string folder = fs::path(store.path()).parent_path().string();
  sqlite::Run(handle, "PRAGMA temp_store = FILE; PRAGMA temp_store_directory = " + sqlite::Literal(folder) +
                          "; VACUUM main; PRAGMA main.wal_checkpoint(TRUNCATE); PRAGMA temp_store_directory = ''");
}

std::int64_t Rows(sqlite::LoneStore& store, const std::string& sql) {
  return std::stoll(sqlite::Text(store.handle(), sql));
}

void MoveOut(sqlite::LoneStore& store, const ArchiveOrder& order, const Clock& clock, ArchiveResult& result) {
  const std::string day = archive::FirstDayOf(order.year);
  archive::MarkStaying(store.handle(), day);
  result.staying = Rows(store, "SELECT COUNT(*) FROM temp.Quedan");
  result.continued = archive::IsArchiveOf(order.archive, store, order.year);
  if (!result.continued) {
    result.nothing = Rows(store, "SELECT EXISTS (SELECT 1 FROM main.Cav WHERE " + archive::Goes(day) + ")") == 0;
    if (result.nothing) return;
    RequireRoom(order.archive, fs::file_size(order.store));
    result.making = Seconds([&] { archive::MakeArchive(store, order.archive, order.year, clock); });
  }
  result.removing = Seconds([&] {
    const sqlite::Attached attached(store.handle(), order.archive, "archivo");
    archive::Removal removal(store, fs::path(order.archive).filename().string(), order.year);
    result.removed = removal.Run(order.tickets_a_piece);
  });
}

}  // namespace

std::string ArchiveName(const std::string& store, int year) {
  const fs::path path(store);
  const std::string name = path.stem().string() + "-hasta-" + std::to_string(year - 1) + path.extension().string();
  return (path.parent_path() / name).string();
}

ArchiveResult ArchiveYears(const ArchiveOrder& order, const Clock& clock) {
  RequireEnded(order.year, clock);
  { const sqlite::LoneStore alone(order.store, clock); }  // before a long check: nobody is there
  RequireSound(order.store, clock);
  ArchiveResult result;
  {
    sqlite::LoneStore store(order.store, clock);
    result.bytes_before = static_cast<std::int64_t>(fs::file_size(order.store));
    MoveOut(store, order, clock, result);
    if (!result.nothing && order.shrink) {
      try {
        result.shrinking = Seconds([&] { Shrink(store); });
      } catch (const DatabaseError& error) {
        result.not_shrunk = error.what();
      }
    }
  }
  result.bytes_after = static_cast<std::int64_t>(fs::file_size(order.store));
  if (!result.nothing) RequireSound(order.store, clock);
  return result;
}

}  // namespace tpv
