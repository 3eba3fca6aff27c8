#include "bench/decade.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>

#include "adapters/files/temporary_folder.h"
#include "adapters/headless/recorders.h"
#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/lone_store.h"
#include "adapters/sqlite/new_store.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/store_upgrade.h"
#include "bench/records.h"
#include "data/schema.h"
#include "host/backup.h"
#include "host/demo/demonstration.h"
#include "host/fiscal_check.h"
#include "host/store.h"
#include "host/store_check.h"
#include "platform/clock.h"
#include "tests/fiscal_ground.h"

namespace tpv::bench {

namespace {

constexpr int kTicketsADay = 1000;

// How far the numbers of one part are behind those of the part before.
using Spans = std::map<std::string, std::int64_t>;

struct Moved {
  const char* column;
  const char* by;  // the table whose numbers it holds
};
constexpr Moved kMoved[] = {{"Cav_Id", "Cav"},          {"Cav_Numero", "Cav"},       {"Lav_Id", "Lav"},
                            {"Lav_IdCav", "Cav"},       {"DiaCaj_Id", "DiaCaj"},     {"Tco_IdDiaCaj", "DiaCaj"},
                            {"Tco_IdCav", "Cav"},       {"movi_idlav", "Lav"},       {"Fav_Id", "Fav"},
                            {"Fav_Numero", "Fav"},      {"Fal_Id", "Fal"},           {"Fal_IdFav", "Fav"},
                            {"Fal_IdCav", "Cav"},       {"Fai_IdFav", "Fav"},        {"Vto_Id", "Vto"},
                            {"Vto_IdFav", "Fav"},       {"Cav_IdFactura", "Fav"},    {"DiaCaj_IdCierre", "DiaCaj"}};
constexpr const char* kGrowing[] = {"Cav", "Lav", "DiaCaj", "Tco", "Movi", "Fav", "Fal", "Fai", "Vto"};

bool Grows(std::string_view table) {
  return std::find(std::begin(kGrowing), std::end(kGrowing), table) != std::end(kGrowing);
}

// A column of an older part: what it names lies further back, and nothing is owed any more
// of which nothing was paid.
std::string Value(const schema::Column& column, std::int64_t days, const Spans& behind) {
  std::string name(column.name);
  for (const Moved& moved : kMoved) {
    if (name != moved.column) continue;
    const std::string there = name + " + " + std::to_string(behind.at(moved.by));
    return name == "Cav_IdFactura" || name == "DiaCaj_IdCierre" ? "iif(" + name + " = 0, 0, " + there + ")" : there;
  }
  if (days == 0) return name;
  if (column.type == schema::Type::DateTime) {
    return "strftime('%Y-%m-%d', substr(" + name + ", 1, 10), '-" + std::to_string(days) + " days') || substr(" + name +
           ", 11)";
  }
  if (name == "Cav_Cobrado") return "iif(EXISTS (SELECT 1 FROM parte.Tco WHERE Tco_IdCav = Cav_Id), Cav_Cobrado, 1)";
  return name;
}

void CopyPart(sqlite3* store, const schema::Table& table, std::int64_t days, const Spans& behind) {
  const std::string name(table.name);
  std::string values;
  for (const schema::Column& column : table.columns) {
    values.append(values.empty() ? "" : ", ").append(Value(column, days, behind));
  }
  sqlite::Run(store, "INSERT INTO main.\"" + name + "\" (" + schema::ColumnNames(table) + ") SELECT " + values +
                         " FROM parte.\"" + name + "\" ORDER BY rowid");
}

void FillParts(sqlite3* store, const DecadeSize& size) {
  Spans span;
  for (const char* table : kGrowing) {
    span[table] = std::stoll(sqlite::Text(store, "SELECT ifnull(MAX(rowid), 0) FROM parte." + std::string(table)));
  }
  for (int part = 0; part < size.parts; ++part) {
    Spans behind;
    for (const auto& [table, rows] : span) behind[table] = part * rows;
    const std::int64_t days = std::int64_t{size.parts - 1 - part} * (size.tickets / kTicketsADay);
    for (const schema::Table& table : schema::Tables()) {
      if (Grows(table.name) || part == 0) CopyPart(store, table, Grows(table.name) ? days : 0, behind);
    }
  }
  sqlite::Run(store, "UPDATE Contadores SET cont_numero = cont_numero * " + std::to_string(size.parts));
}

void AddCustomers(sqlite3* store, int customers) {
  const std::string columns = schema::ColumnNames(*schema::FindTable("Cli"));
  const std::string rest = columns.substr(std::string("CLI_ID, CLI_COD").size());
  const std::string have = sqlite::Text(store, "SELECT MAX(CLI_ID) FROM Cli");
  sqlite::Run(store, "WITH RECURSIVE n(i) AS (SELECT " + have + " + 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                         std::to_string(customers) + ") INSERT INTO Cli (" + columns + ") SELECT i, 100000 + i" + rest +
                         " FROM n JOIN Cli ON CLI_ID = 2 + i % 30; INSERT INTO CliDir SELECT CLI_ID, CLIDIR_DIR FROM Cli "
                         "JOIN CliDir ON CLIDIR_CLI = 2 + CLI_ID % 30 WHERE CLI_ID > " + have +
                         "; UPDATE Cav SET Cav_IdCli = " + have + " + Cav_Id % (" + std::to_string(customers) + " - " + have +
                         ") WHERE Cav_IdCli > 1 AND Cav_Cobrado = 1");
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

void MakeDecade(const std::string& path, const DecadeSize& size) {
  const StepClock clock;
  const std::string part = path + ".parte";
  MakeLargeStore(part, {size.tickets, size.tickets / kTicketsADay, size.articles, 1}, clock);
  NewStore store(path);
  {
    const sqlite::Handle handle = sqlite::OpenFile(NewStore::PartialPath(path));
    RegisterFunctions(handle.get(), clock);
    sqlite::DropIndexes(handle.get());
    sqlite::Run(handle.get(), "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -262144");
    const sqlite::Attached attached(handle.get(), part, "parte");
    sqlite::RawTransaction transaction(handle.get());
    FillParts(handle.get(), size);
    AddCustomers(handle.get(), size.customers);
    sqlite::AddWhatIsMissing(handle.get());
    transaction.Commit();
  }
  store.Keep();
  std::filesystem::remove(part);
  SqliteConnection connection(path, clock);
  connection.SetSynchronous(false);
  MakeRecords(connection);
  RecordAllTickets(connection);
}

void PrintUpkeep(const std::string& path) {
  const StepClock clock;
  const auto line = [](const char* what, double value, const char* unit) {
    std::printf("| %s | %.1f %s |\n", what, value, unit);
  };
  std::printf("| to look after it | |\n|---|---|\n");
  line("its file, with a record of each ticket", static_cast<double>(std::filesystem::file_size(path)) / 1e9, "GB");
  line("store check", Seconds([&] {
         SqliteConnection connection(path, clock, OpenMode::AsItIs);
         const auto findings = CheckStore(connection);
         if (AnyBroken(findings)) throw std::runtime_error(FindingsText(findings));
       }) / 60, "min");
  line("fiscal check", Seconds([&] {
         SqliteConnection connection(path, clock, OpenMode::AsItIs);
         const FiscalCheck check = CheckFiscal(connection);
         if (AnyBroken(check.findings)) throw std::runtime_error(FindingsText(check.findings));
       }) / 60, "min");
  line("a safety copy, checked and compressed", Seconds([&] {
         const TemporaryFolder folder(std::filesystem::current_path());
         BackupStore({path, folder / "copias"}, clock);
       }) / 60, "min");
}

}  // namespace tpv::bench
