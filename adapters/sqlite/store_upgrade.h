// Bringing older stores up to date. Until version 4 a store had its catalogue in a
// file of its own, "tienda.zrcomun.db" beside "tienda.db".
#pragma once

#include <string>
#include <vector>

struct sqlite3;

namespace tpv::sqlite {

// In a transaction of the caller's: tables and indexes that the file lacks, what
// older versions had otherwise, and the version.
void AddWhatIsMissing(sqlite3* handle);
// For filling large tables of a new file: AddWhatIsMissing makes indexes and triggers again,
// over all rows at once.
void DropIndexes(sqlite3* handle);
// The tables that the file lacks, by name.
std::vector<std::string> MissingTables(sqlite3* handle);

// Makes an open store current. An older one is copied beside it first
// ("tienda.version3.db", its catalogue with it); killed at any moment, the next
// opening goes on. Throws DatabaseError, and then the store is as it was.
void BringUpToDate(sqlite3* handle);

}  // namespace tpv::sqlite
