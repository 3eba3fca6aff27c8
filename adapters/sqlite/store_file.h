// A store's file in the engine's hands. While somebody has the store open what is
// written lies in a log beside it ("tienda.db-wal"), and after a till was killed it
// stays there; the last to leave takes it into the file and marks the file as whole.
#pragma once

#include <memory>
#include <string>

struct sqlite3;

namespace tpv::sqlite {

inline constexpr int kApplicationId = 0x54505631;  // "TPV1"
// One that holds years gone by, to be looked at alone: older programs know no such file.
inline constexpr int kArchiveId = 0x54505641;  // "TPVA"
inline constexpr int kVersion = 7;

struct Closer {
  void operator()(sqlite3* handle) const;
};
using Handle = std::unique_ptr<sqlite3, Closer>;

// A new file, empty and of the user alone. Throws DatabaseError when that name is taken.
void MakeFile(const std::string& path);
// Throws DatabaseError when there is no such file.
Handle OpenFile(const std::string& path);
// Where the open file really is, links followed.
std::string PathOf(sqlite3* handle);
std::string LogOf(sqlite3* handle);

void Run(sqlite3* handle, const std::string& sql);
// The whole number that the statement answers; 0 without rows.
int Number(sqlite3* handle, const std::string& sql);
// The text that it answers; "" without rows.
std::string Text(sqlite3* handle, const std::string& sql);
int VersionOf(sqlite3* handle);
// A text as a literal.
std::string Literal(const std::string& text);

// All of the store as it is at one moment into an empty file; others may write
// meanwhile. Throws DatabaseError.
void CopyPages(sqlite3* from, const std::string& to_path);

// Throws DatabaseError when the file is no store, nor an archive of one, or of a newer program.
void RequireStore(sqlite3* handle, const std::string& path);
bool IsArchive(sqlite3* handle);
// The same of a file that nobody has open.
bool IsArchiveFile(const std::string& path);

// Asked before anything else: whether the file was left with a log that is not
// there, so that what was written last is missing. Means nothing in older stores.
bool LacksItsLog(sqlite3* handle);
// An empty log with the store's own rights where there is none, before the file is
// marked: so nobody who is killed in between leaves a mark without its log.
void LayLog(sqlite3* handle);
// Waits for others that switch it at the same moment: the engine sends one of two away at once.
void SwitchLogOn(sqlite3* handle);
// The log stays where it is, whoever closes last, unless it is settled.
void KeepLog(sqlite3* handle, bool keep);
// At the end of a connection: the last of a store takes the log into the file.
void Settle(sqlite3* handle) noexcept;

}  // namespace tpv::sqlite
