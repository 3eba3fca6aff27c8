#include "adapters/sqlite/store_upgrade.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "adapters/sqlite/ddl.h"
#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/list_changes.h"
#include "adapters/sqlite/statement_cache.h"
#include "adapters/sqlite/store_file.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::sqlite {

namespace {

constexpr int kLastWithCatalogue = 4;

std::string CatalogueOf(const std::string& file) { return Beside(file, "zrcomun"); }

bool HasTable(sqlite3* handle, std::string_view name) {
  return Number(handle, "SELECT COUNT(*) FROM main.sqlite_master WHERE type = 'table' AND name = " +
                            Literal(std::string(name)) + " COLLATE NOCASE") > 0;
}

std::string ColumnsOf(const schema::Table& table) {
  std::string columns;
  for (const schema::Column& column : table.columns) {
    columns.append(columns.empty() ? "\"" : ", \"").append(column.name).append("\"");
  }
  return columns;
}

template <typename Work>
void ForEachOfCatalogue(Work work) {
  for (const schema::Table& table : schema::Tables()) {
    if (table.home == schema::Home::Catalogue) work(table, std::string(table.name));
  }
}

// Until version 5 the parameters said nothing of invoice records.
void AddMissingColumns(sqlite3* handle, const schema::Table& table) {
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const std::string column(table.columns[i].name);
    const std::string there = "SELECT COUNT(*) FROM main.pragma_table_info(" + Literal(std::string(table.name)) +
                              ") WHERE name = " + Literal(column) + " COLLATE NOCASE";
    if (Number(handle, there) > 0) continue;
    Run(handle, "ALTER TABLE main.\"" + std::string(table.name) + "\" ADD COLUMN " + SqliteColumn(table, i));
  }
}

// Stores of version 1 had a payment method's terms in its lines.
void MoveTermsOfPayment(sqlite3* handle) {
  if (Number(handle, "SELECT COUNT(*) FROM main.pragma_table_info('Fcol') WHERE name = 'Fcol_Dias'") == 0) {
    return;
  }
  Run(handle,
      "INSERT INTO main.Plazos SELECT Fcol_id, Fcol_Mod, Fcol_Dias, Fcol_Por FROM main.Fcol; "
      "ALTER TABLE main.Fcol DROP COLUMN Fcol_Dias; ALTER TABLE main.Fcol DROP COLUMN Fcol_Por");
}

// An older store's index of customer codes makes room for the unique one. Where a code
// was given twice it stays, and the store's check names the code.
void MakeRoomForUniqueCodes(sqlite3* handle) {
  if (!HasTable(handle, "Cli")) return;
  const int given_twice =
      Number(handle, "SELECT COUNT(*) FROM (SELECT 1 FROM main.Cli GROUP BY CLI_COD HAVING COUNT(*) > 1)");
  if (given_twice == 0) Run(handle, "DROP INDEX IF EXISTS main.ix_Cli_CLI_COD");
}

// An empty, foreign or half-made one would leave sales without their tax.
void RequireCatalogue(sqlite3* handle, const std::string& path) {
  if (Number(handle, "PRAGMA zrcomun.application_id") != 0) {
    throw DatabaseError("«" + path + "» no es un catálogo", "08001");
  }
  ForEachOfCatalogue([&](const schema::Table& table, const std::string& name) {
    for (const schema::Column& column : table.columns) {
      const std::string of_table = "FROM pragma_table_info(" + Literal(name) + ", 'zrcomun') WHERE name = ";
      if (Number(handle, "SELECT COUNT(*) " + of_table + Literal(std::string(column.name)) + " COLLATE NOCASE") > 0)
        continue;
      throw DatabaseError("Al catálogo «" + path + "» le falta «" + name + "." + std::string(column.name) + "»",
                          "08001");
    }
    if (HasTable(handle, name)) {
      throw DatabaseError("El almacén ya tiene una tabla «" + name + "» y no se puede traer la del catálogo");
    }
  });
  if (Number(handle, "SELECT EXISTS (SELECT 1 FROM main.Lav) AND NOT EXISTS (SELECT 1 FROM zrcomun.tivas)") != 0) {
    throw DatabaseError("El catálogo «" + path + "» no tiene ningún tipo de impuesto y el almacén tiene ventas: "
                        "no es el suyo", "08001");
  }
}

void AttachCatalogue(sqlite3* handle) {
  const std::string path = CatalogueOf(PathOf(handle));
  if (::access(path.c_str(), R_OK) != 0) throw DatabaseError("Falta el catálogo «" + path + "»", "08001");
  Run(handle, "ATTACH DATABASE " + Literal(path) + " AS zrcomun");
  RequireCatalogue(handle, path);
}

// Only the store is written, so one commit decides; numbers go on where they were.
void TakeCatalogueIn(sqlite3* handle) {
  ForEachOfCatalogue([&](const schema::Table& table, const std::string& name) {
    const std::string columns = ColumnsOf(table);
    Run(handle, "INSERT INTO main.\"" + name + "\" (" + columns + ") SELECT " + columns + " FROM zrcomun.\"" +
                    name + "\"");
    if (!table.identity) return;
    const std::string same = " WHERE name = " + Literal(name);
    Run(handle, "DELETE FROM main.sqlite_sequence" + same + "; INSERT INTO main.sqlite_sequence (name, seq) "
                "SELECT name, seq FROM zrcomun.sqlite_sequence" + same);
  });
}

// "tienda.version3.db", "tienda.version3-2.db", …
std::string CopyName(const std::string& file, int version, int number) {
  return Beside(file, "version" + std::to_string(version) + (number == 1 ? "" : "-" + std::to_string(number)));
}

// The copy that an upgrade made and did not complete, for its catalogue comes to it
// last; else the next free name.
std::string UnfinishedCopy(const std::string& file, int version) {
  for (int number = 1;; ++number) {
    std::string name = CopyName(file, version, number);
    const bool finished = version > kLastWithCatalogue || IsThere(CatalogueOf(name));
    if (!IsThere(name) || !finished) return name;
  }
}

// While the caller holds the store's writing lock.
void CopyBeside(const std::string& file, int version, const FolderLock& folder) {
  const std::string copy = UnfinishedCopy(file, version);
  const std::string partial = copy + ".parcial";
  RemoveWithJournals(partial);  // what an interrupted upgrade left
  try {
    MakeFile(partial);
    CopyPages(OpenFile(file).get(), partial);
    SyncFile(partial);
  } catch (const DatabaseError&) {
    RemoveWithJournals(partial);
    throw;
  }
  if (std::rename(partial.c_str(), copy.c_str()) != 0) throw DatabaseError("No se puede crear «" + copy + "»");
  folder.Sync();
}

// The catalogue's file joins the copy once its rows are in the store for good. While
// a till of the older program reads it, it stays for the next opening.
void PutCatalogueAside(const std::string& file, const FolderLock& folder) {
  const std::string catalogue = CatalogueOf(file);
  for (int version = 1; version <= kLastWithCatalogue && IsThere(catalogue); ++version) {
    const std::string copy = UnfinishedCopy(file, version);
    if (!IsThere(copy)) continue;
    Settle(OpenFile(catalogue).get());
    if (IsThere(catalogue + "-wal")) return;
    ::unlink((catalogue + "-journal").c_str());  // begun and never used, or it would be gone
    if (RenameToFree(catalogue, CatalogueOf(copy))) folder.Sync();
  }
}

void Upgrade(sqlite3* handle, const FolderLock& folder) {
  const bool two_files = VersionOf(handle) <= kLastWithCatalogue;
  if (two_files) AttachCatalogue(handle);
  Run(handle, "BEGIN IMMEDIATE");
  CopyBeside(PathOf(handle), VersionOf(handle), folder);
  AddWhatIsMissing(handle);
  if (two_files) TakeCatalogueIn(handle);
  Run(handle, "COMMIT");
  if (two_files) Run(handle, "DETACH DATABASE zrcomun");
}

}  // namespace

std::vector<std::string> MissingTables(sqlite3* handle) {
  const std::vector<std::string> there =
      Split(Text(handle, "SELECT group_concat(name, '|') FROM main.sqlite_master WHERE type = 'table'"), "|");
  std::vector<std::string> names;
  for (const schema::Table& table : schema::Tables()) {
    const auto same = [&](const std::string& name) { return EqualNoCase(name, table.name); };
    if (std::none_of(there.begin(), there.end(), same)) names.emplace_back(table.name);
  }
  return names;
}

void AddWhatIsMissing(sqlite3* handle) {
  MakeRoomForUniqueCodes(handle);
  for (const schema::Table& table : schema::Tables()) {
    for (const std::string& statement : SqliteDdl(table, "main")) Run(handle, statement);
  }
  AddMissingColumns(handle, *schema::FindTable("Parametros"));
  MoveTermsOfPayment(handle);
  if (!CountsListChanges(handle)) CountListChanges(handle);
  Run(handle, "DROP INDEX IF EXISTS main.ix_Lav_Lav_IdCav");  // until version 2, without amounts
  // Until version 6 tickets and invoices had one each.
  Run(handle, "DROP INDEX IF EXISTS main.ix_Fiscal_Fis_IdCav; DROP INDEX IF EXISTS main.ix_Fiscal_Fis_IdFav");
  Run(handle, "PRAGMA main.user_version = " + std::to_string(kVersion));
}

void DropIndexes(sqlite3* handle) {
  for (;;) {
    const std::string drop = Text(handle, "SELECT 'DROP ' || type || ' \"' || name || '\"' FROM main.sqlite_master WHERE "
                                          "type IN ('index', 'trigger') AND sql IS NOT NULL LIMIT 1");
    if (drop.empty()) return;
    Run(handle, drop);
  }
}

void BringUpToDate(sqlite3* handle) {
  const std::string file = PathOf(handle);
  if (VersionOf(handle) < kVersion || IsThere(CatalogueOf(file))) {
    const FolderLock folder(file);
    if (VersionOf(handle) < kVersion) Upgrade(handle, folder);  // unless another till has meanwhile
    PutCatalogueAside(file, folder);
  }
  if (MissingTables(handle).empty() && CountsListChanges(handle)) return;
  Run(handle, "BEGIN IMMEDIATE");
  AddWhatIsMissing(handle);
  Run(handle, "COMMIT");
}

}  // namespace tpv::sqlite
