#include "adapters/sqlite/sqlite_connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include "adapters/sqlite/ddl.h"
#include "adapters/sqlite/dialect/scanner.h"
#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/reference_rows.h"
#include "adapters/sqlite/statement_cache.h"
#include "adapters/sqlite/step_recordset.h"
#include "adapters/sqlite/turns.h"
#include "base/text.h"
#include "platform/clock.h"

namespace tpv {

struct sqlite::Control {
  explicit Control(sqlite3* handle)
      : begin_reading(handle, "BEGIN"),
        begin_writing(handle, "BEGIN IMMEDIATE"),
        commit(handle, "COMMIT"),
        rollback(handle, "ROLLBACK") {}

  ControlStatement begin_reading;
  ControlStatement begin_writing;
  ControlStatement commit;
  ControlStatement rollback;
};

namespace {

constexpr int kApplicationId = 0x54505631;  // "TPV1"
constexpr int kVersion = 4;

// A new file of the user alone; SQLite gives its journals the same rights.
void MakeFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file < 0) throw DatabaseError("No se puede crear «" + path + "»: ya existe o no hay permiso");
  ::close(file);
}

sqlite3* OpenFile(const std::string& path) {
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  if (sqlite3_open_v2(path.c_str(), &handle, flags, nullptr) != SQLITE_OK) {
    sqlite3_close(handle);
    throw DatabaseError("No se puede abrir el almacén «" + path + "»", "08001");
  }
  return handle;
}

int Pragma(sqlite3* handle, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr) != SQLITE_OK) {
    sqlite::ThrowLastError(handle);
  }
  const sqlite::StatementPtr owner(statement);
  const int result = sqlite3_step(statement);
  if (result == SQLITE_ROW) return sqlite3_column_int(statement, 0);
  if (result != SQLITE_DONE) sqlite::ThrowLastError(handle);
  return 0;
}

void RequireStore(sqlite3* handle, const std::string& path) {
  if (Pragma(handle, "PRAGMA main.application_id") != kApplicationId) {
    throw DatabaseError("«" + path + "» no es un almacén de la tienda", "08001");
  }
  if (Pragma(handle, "PRAGMA main.user_version") > kVersion) {
    throw DatabaseError("«" + path + "» es de una versión más nueva del programa", "08001");
  }
}

void RunOn(sqlite3* handle, const std::string& sql) {
  if (sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    sqlite::ThrowLastError(handle);
  }
}

// Stores of version 1 had a payment method's terms in its lines.
void MoveTermsOfPayment(sqlite3* handle) {
  if (Pragma(handle, "SELECT COUNT(*) FROM main.pragma_table_info('Fcol') WHERE name = 'Fcol_Dias'") == 0) {
    return;
  }
  RunOn(handle,
        "INSERT INTO main.Plazos SELECT Fcol_id, Fcol_Mod, Fcol_Dias, Fcol_Por FROM main.Fcol; "
        "ALTER TABLE main.Fcol DROP COLUMN Fcol_Dias; ALTER TABLE main.Fcol DROP COLUMN Fcol_Por");
}

// An older store's index of customer codes makes room for the unique one. Where a code
// was given twice it stays, and the store's check names the code.
void MakeRoomForUniqueCodes(sqlite3* handle) {
  if (Pragma(handle, "SELECT COUNT(*) FROM main.sqlite_master WHERE name = 'Cli'") == 0) return;
  const int given_twice = Pragma(
      handle, "SELECT COUNT(*) FROM (SELECT 1 FROM main.Cli GROUP BY CLI_COD HAVING COUNT(*) > 1)");
  if (given_twice == 0) RunOn(handle, "DROP INDEX IF EXISTS main.ix_Cli_CLI_COD");
}

// All tables and indexes of a new store, those that an older one lacks otherwise.
void AddWhatIsMissing(sqlite3* handle) {
  RunOn(handle, "BEGIN IMMEDIATE");
  MakeRoomForUniqueCodes(handle);
  for (const schema::Home home : {schema::Home::Store, schema::Home::Catalogue}) {
    for (const std::string& statement : SqliteDdl(home)) RunOn(handle, statement);
  }
  MoveTermsOfPayment(handle);
  RunOn(handle, "DROP INDEX IF EXISTS main.ix_Lav_Lav_IdCav");  // until version 2, without amounts
  RunOn(handle, "PRAGMA main.user_version = " + std::to_string(kVersion));
  RunOn(handle, "COMMIT");
}

// Texts are not copied: the literals must outlive what the statement reads.
void Bind(sqlite3_stmt* statement, const std::vector<Variant>& literals) {
  for (std::size_t i = 0; i < literals.size(); ++i) {
    const Variant& value = literals[i];
    const int at = static_cast<int>(i) + 1;
    if (at > sqlite3_bind_parameter_count(statement)) break;  // dropped by the translation
    int result = SQLITE_OK;
    if (const std::string* text = value.HeldText()) {
      result = sqlite3_bind_text(statement, at, text->data(), static_cast<int>(text->size()),
                                 SQLITE_STATIC);
    } else if (value.IsInteger()) {
      result = sqlite3_bind_int64(statement, at, value.ToInt64());
    } else {
      result = sqlite3_bind_double(statement, at, value.ToDouble());
    }
    if (result != SQLITE_OK) sqlite::ThrowLastError(sqlite3_db_handle(statement));
  }
}

}  // namespace

std::string CataloguePath(const std::string& store_path) {
  const std::size_t point = store_path.rfind('.');
  const std::size_t slash = store_path.rfind('/');
  const bool has_ending =
      point != std::string::npos && (slash == std::string::npos || point > slash);
  if (!has_ending) return store_path + ".zrcomun";
  return store_path.substr(0, point) + ".zrcomun" + store_path.substr(point);
}

void SqliteConnection::Closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

SqliteConnection::SqliteConnection(const std::string& path, const Clock& clock)
    : turns_(std::make_unique<sqlite::Turns>()), handle_(OpenFile(path)) {
  turns_->Govern(handle_.get());
  RegisterFunctions(handle_.get(), clock);
  RequireStore(handle_.get(), path);
  const std::string catalogue = CataloguePath(path);
  if (::access(catalogue.c_str(), R_OK) != 0) {
    throw DatabaseError("Falta el catálogo «" + catalogue + "»", "08001");
  }
  Run(("ATTACH DATABASE '" + ReplaceAll(catalogue, "'", "''") + "' AS zrcomun").c_str());
  Run("PRAGMA main.journal_mode = WAL; PRAGMA zrcomun.journal_mode = WAL;");
  SetSynchronous(true);
  if (Pragma(handle_.get(), "PRAGMA main.user_version") < kVersion) AddWhatIsMissing(handle_.get());
  Run("PRAGMA trusted_schema = OFF; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -65536;");
  cache_ = std::make_unique<sqlite::StatementCache>(handle_.get());
  references_ = std::make_unique<sqlite::ReferenceRows>(handle_.get());
  control_ = std::make_unique<sqlite::Control>(handle_.get());
}

SqliteConnection::~SqliteConnection() {
  while (!open_.empty()) (*open_.begin())->Close();
}

void SqliteConnection::Run(const char* sql) { RunOn(handle_.get(), sql); }

void SqliteConnection::SetSynchronous(bool on) {
  Run(on ? "PRAGMA main.synchronous = FULL; PRAGMA zrcomun.synchronous = FULL;"
         : "PRAGMA main.synchronous = OFF; PRAGMA zrcomun.synchronous = OFF;");
}

void SqliteConnection::LetCodesRepeat() {
  Run("DROP INDEX IF EXISTS main.ix_Cli_CLI_COD; CREATE INDEX main.ix_Cli_CLI_COD ON Cli (CLI_COD)");
}

std::vector<std::string> SqliteConnection::Damage() {
  std::vector<std::string> lines;
  for (const char* sql : {"PRAGMA main.integrity_check(20)", "PRAGMA zrcomun.integrity_check(20)"}) {
    sqlite3_stmt* statement = nullptr;
    int result = sqlite3_prepare_v2(handle_.get(), sql, -1, &statement, nullptr);
    const sqlite::StatementPtr owner(statement);
    while (result == SQLITE_OK && (result = sqlite3_step(statement)) == SQLITE_ROW) {
      lines.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
      result = SQLITE_OK;
    }
    if (result != SQLITE_DONE) sqlite::ThrowLastError(handle_.get());
  }
  std::erase(lines, "ok");
  return lines;
}

std::unique_ptr<Recordset> SqliteConnection::Execute(std::string_view sql) {
  dialect::Scanned scanned = dialect::Scan(sql);
  std::shared_ptr<sqlite::CachedShape> shape = cache_->Find(scanned.shape);
  const dialect::Translation& translation = shape->translation;
  if (translation.writes) {
    CloseSnapshot();
    references_->Written(*translation.table);
    if (!InTransaction()) ReadAhead();
  } else if (translation.table != nullptr && scanned.literals.empty()) {
    return ReadReference(std::move(shape));
  }
  return Start(std::move(shape), std::move(scanned.literals));
}

std::unique_ptr<Recordset> SqliteConnection::Start(std::shared_ptr<sqlite::CachedShape> shape,
                                                   std::vector<Variant> literals) {
  sqlite::StatementPtr statement = cache_->Take(*shape);
  Bind(statement.get(), literals);
  return std::make_unique<sqlite::StepRecordset>(*this, std::move(shape), std::move(literals),
                                                 std::move(statement));
}

std::unique_ptr<Recordset> SqliteConnection::ReadReference(
    std::shared_ptr<sqlite::CachedShape> shape) {
  if (auto rows = references_->Find(*shape)) return sqlite::Kept(std::move(shape), std::move(rows));
  if (InTransaction()) return Start(std::move(shape), {});  // it may be undone
  references_->Keep(*shape, *Start(shape, {}));
  auto rows = shape->kept;
  return sqlite::Kept(std::move(shape), std::move(rows));
}

void SqliteConnection::BeginTrans() {
  CloseSnapshot();
  if (InTransaction()) throw DatabaseError("Ya hay una transacción abierta", "25001");
  ReadAhead();
  turns_->Offer();
  control_->begin_writing.Run();
}

void SqliteConnection::CommitTrans() {
  if (!InTransaction()) throw DatabaseError("No hay ninguna transacción abierta", "25000");
  control_->commit.Run();
}

// Open record sets keep the rows that they would have shown.
void SqliteConnection::RollbackTrans() {
  if (!InTransaction()) throw DatabaseError("No hay ninguna transacción abierta", "25000");
  ReadAhead();
  control_->rollback.Run();
}

void SqliteConnection::BeginSnapshot() {
  if (snapshots_++ > 0 || InTransaction()) return;
  if (control_->begin_reading.Try() != SQLITE_OK) return;  // without it each reads on its own
  snapshot_open_ = true;
  references_->BeginSnapshot();
}

void SqliteConnection::EndSnapshot() noexcept {
  if (--snapshots_ == 0) CloseSnapshot();
}

// Record sets that are still read go on; the engine's state ends with the last.
void SqliteConnection::CloseSnapshot() {
  if (!snapshot_open_) return;
  if (sqlite3_get_autocommit(handle_.get()) == 0 && control_->commit.Try() != SQLITE_OK) {
    control_->rollback.Try();
  }
  snapshot_open_ = false;
  references_->EndSnapshot();
}

void SqliteConnection::ReadAhead() {
  while (!open_.empty()) (*open_.begin())->ReadAhead();
}

bool SqliteConnection::InTransaction() const {
  return !snapshot_open_ && sqlite3_get_autocommit(handle_.get()) == 0;
}

void CreateStore(const std::string& path) {
  const std::string catalogue = CataloguePath(path);
  MakeFile(path);
  MakeFile(catalogue);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> owner(OpenFile(path),
                                                                    &sqlite3_close_v2);
  sqlite3* handle = owner.get();
  struct NoClock : Clock {
    DateTime Now() const override { return {}; }
  } clock;
  RegisterFunctions(handle, clock);
  RunOn(handle, "ATTACH DATABASE '" + ReplaceAll(catalogue, "'", "''") + "' AS zrcomun");
  RunOn(handle, "PRAGMA main.journal_mode = WAL");
  RunOn(handle, "PRAGMA zrcomun.journal_mode = WAL");
  AddWhatIsMissing(handle);
  RunOn(handle, "PRAGMA main.application_id = " + std::to_string(kApplicationId));
}

}  // namespace tpv
