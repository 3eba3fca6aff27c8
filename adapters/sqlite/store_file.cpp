#include "adapters/sqlite/store_file.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "adapters/sqlite/folder.h"
#include "adapters/sqlite/statement_cache.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::sqlite {

namespace {

// The engine marks a file that has a log in the 19th byte of its header.
bool MarkedAsLogged(sqlite3* handle) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  unsigned char header[20] = {};
  return file != nullptr && file->pMethods != nullptr &&
         file->pMethods->xRead(file, header, sizeof header, 0) == SQLITE_OK && header[18] == 2;
}

// Its first row, when it has one.
template <typename Take>
void First(sqlite3* handle, const std::string& sql, Take take) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) ThrowLastError(handle);
  const StatementPtr owner(statement);
  const int result = sqlite3_step(statement);
  if (result == SQLITE_ROW) return take(statement);
  if (result != SQLITE_DONE) ThrowLastError(handle);
}

}  // namespace

void Closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

void MakeFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file < 0) throw DatabaseError("No se puede crear «" + path + "»: ya existe o no hay permiso");
  ::close(file);
}

Handle OpenFile(const std::string& path) {
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const int result = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
  Handle owner(handle);
  if (result != SQLITE_OK) throw DatabaseError("No se puede abrir el almacén «" + path + "»", "08001");
  return owner;
}

std::string PathOf(sqlite3* handle) { return sqlite3_db_filename(handle, "main"); }
std::string LogOf(sqlite3* handle) { return PathOf(handle) + "-wal"; }

void Run(sqlite3* handle, const std::string& sql) {
  if (sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) ThrowLastError(handle);
}

int Number(sqlite3* handle, const std::string& sql) {
  int number = 0;
  First(handle, sql, [&](sqlite3_stmt* row) { number = sqlite3_column_int(row, 0); });
  return number;
}

std::string Text(sqlite3* handle, const std::string& sql) {
  std::string text;
  First(handle, sql, [&](sqlite3_stmt* row) {
    const unsigned char* bytes = sqlite3_column_text(row, 0);
    if (bytes != nullptr) text = reinterpret_cast<const char*>(bytes);
  });
  return text;
}

int VersionOf(sqlite3* handle) { return Number(handle, "PRAGMA main.user_version"); }

std::string Literal(const std::string& text) { return "'" + ReplaceAll(text, "'", "''") + "'"; }

bool IsArchive(sqlite3* handle) { return Number(handle, "PRAGMA main.application_id") == kArchiveId; }

bool IsArchiveFile(const std::string& path) {
  constexpr std::size_t kMark = 68;
  unsigned char header[kMark + 4] = {};
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(header), sizeof header);
  int mark = 0;
  for (std::size_t i = kMark; i < sizeof header; ++i) mark = mark << 8 | header[i];
  return mark == kArchiveId;
}

void RequireStore(sqlite3* handle, const std::string& path) {
  const int mark = Number(handle, "PRAGMA main.application_id");
  if (mark != kApplicationId && mark != kArchiveId) {
    throw DatabaseError("«" + path + "» no es un almacén de la tienda", "08001");
  }
  const int version = VersionOf(handle);
  if (version > kVersion) {
    throw DatabaseError("«" + path + "» es de una versión más nueva del programa (almacén " +
                            std::to_string(version) + ", programa " + std::to_string(kVersion) + ")",
                        "08001");
  }
}

void CopyPages(sqlite3* from, const std::string& to_path) {
  const Handle to = OpenFile(to_path);
  sqlite3_backup* backup = sqlite3_backup_init(to.get(), "main", from, "main");
  if (backup == nullptr) ThrowLastError(to.get());
  sqlite3_backup_step(backup, -1);
  if (sqlite3_backup_finish(backup) != SQLITE_OK) ThrowLastError(to.get());
}

// Another program may be between marking the file and making the log, or taking it
// away: that is looked at again.
bool LacksItsLog(sqlite3* handle) {
  const auto lacks = [&] { return MarkedAsLogged(handle) && !IsThere(LogOf(handle)); };
  if (!lacks()) return false;
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  return lacks();
}

// What keeps it from being made is the engine's to say.
void LayLog(sqlite3* handle) {
  const std::string path = PathOf(handle);
  struct stat store{};
  if (::access(path.c_str(), W_OK) != 0 || ::stat(path.c_str(), &store) != 0) return;
  const int log = ::open(LogOf(handle).c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (log < 0) return;
  const bool given = ::fchmod(log, store.st_mode & 0777) == 0 &&
                     (::geteuid() != 0 || ::fchown(log, store.st_uid, store.st_gid) == 0);
  ::close(log);
  if (!given) ::unlink(LogOf(handle).c_str());
}

void SwitchLogOn(sqlite3* handle) {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + 5s;
  for (;;) {
    const int result = sqlite3_exec(handle, "PRAGMA main.journal_mode = WAL", nullptr, nullptr, nullptr);
    if (result == SQLITE_OK) return;
    if ((result & 0xFF) != SQLITE_BUSY || std::chrono::steady_clock::now() > end) ThrowLastError(handle);
    std::this_thread::sleep_for(2ms);
  }
}

void KeepLog(sqlite3* handle, bool keep) {
  int value = keep ? 1 : 0;
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_PERSIST_WAL, &value);
}

// The log is emptied, then the mark taken away, and the log goes last, still under the
// lock: killed at any moment, no mark is left without its log.
void Settle(sqlite3* handle) noexcept {
  sqlite3_busy_timeout(handle, 0);  // others who are there settle it when they leave
  KeepLog(handle, true);
  // Reading first undoes what somebody who was killed at this left half done.
  const char* sql = "PRAGMA main.user_version; PRAGMA main.locking_mode = EXCLUSIVE; "
                    "PRAGMA main.journal_size_limit = 0; PRAGMA main.journal_mode = DELETE";
  if (sqlite3_exec(handle, sql, nullptr, nullptr, nullptr) != SQLITE_OK) return;
  struct stat log{};
  if (::stat(LogOf(handle).c_str(), &log) == 0 && log.st_size > 0) return;
  ::unlink(LogOf(handle).c_str());
  ::unlink((PathOf(handle) + "-shm").c_str());
  ::unlink((PathOf(handle) + kLine).c_str());
}

}  // namespace tpv::sqlite
