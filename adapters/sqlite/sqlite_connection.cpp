#include "adapters/sqlite/sqlite_connection.h"

#include <sqlite3.h>

#include <utility>

#include "adapters/sqlite/dialect/scanner.h"
#include "adapters/sqlite/functions.h"
#include "adapters/sqlite/kept_months.h"
#include "adapters/sqlite/list_changes.h"
#include "adapters/sqlite/reference_rows.h"
#include "adapters/sqlite/statement_cache.h"
#include "adapters/sqlite/step_recordset.h"
#include "adapters/sqlite/store_upgrade.h"
#include "adapters/sqlite/turns.h"
#include "adapters/sqlite/unwritten_store.h"
#include "base/date_time.h"
#include "platform/clock.h"
#include "platform/pulse.h"

namespace tpv {

struct sqlite::Control {
  explicit Control(sqlite3* handle)
      : begin_reading(handle, "BEGIN"),
        begin_writing(handle, "BEGIN IMMEDIATE"),
        commit(handle, "COMMIT"),
        rollback(handle, "ROLLBACK"),
        version(handle, "PRAGMA main.user_version"),
        data_version(handle, "PRAGMA main.data_version") {}

  ControlStatement begin_reading;
  ControlStatement begin_writing;
  ControlStatement commit;
  ControlStatement rollback;
  ControlStatement version;
  ControlStatement data_version;  // the engine's count of what others committed
};

namespace {

DatabaseError UndoneError() {
  return DatabaseError("El almacén deshizo la operación: no se ha grabado nada", "40000");
}

void RequireCurrent(sqlite3* handle, const std::string& path) {
  const int version = sqlite::VersionOf(handle);
  if (version == sqlite::kVersion) return;
  throw DatabaseError("«" + path + "» es un almacén de la versión " + std::to_string(version) +
                          " y hace falta la " + std::to_string(sqlite::kVersion) +
                          ": ábralo con la caja, que lo pone al día",
                      "08001");
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

SqliteConnection::SqliteConnection(const std::string& path, const Clock& clock, OpenMode opening)
    : turns_(std::make_unique<sqlite::Turns>()) {
  if (opening == OpenMode::ToSell) {
    handle_ = sqlite::OpenFile(path);
  } else {
    sqlite::Looked looked = sqlite::OpenToLook(path);
    copy_ = std::move(looked.copy);
    handle_ = std::move(looked.handle);
  }
  lacks_log_ = sqlite::LacksItsLog(handle_.get());
  sqlite::KeepLog(handle_.get(), !lacks_log_);
  turns_->Govern(handle_.get());
  RegisterFunctions(handle_.get(), clock);
  sqlite::RequireStore(handle_.get(), path);
  SetSynchronous(true);
  archive_ = sqlite::IsArchive(handle_.get());
  if (opening == OpenMode::ToSell && archive_) {
    sqlite::BringUpToDate(handle_.get());
  } else if (opening == OpenMode::ToSell) {
    TakeOver(clock);
    months_ = std::make_unique<sqlite::KeptMonths>(handle_.get());
  } else {
    RequireCurrent(handle_.get(), path);
  }
  if (copy_ || archive_) Run("PRAGMA query_only = ON");  // what is written to a copy would be lost
  Run("PRAGMA trusted_schema = OFF; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -24576;");
  cache_ = std::make_unique<sqlite::StatementCache>(handle_.get());
  references_ = std::make_unique<sqlite::ReferenceRows>(handle_.get());
  control_ = std::make_unique<sqlite::Control>(handle_.get());
  constexpr int kInstructionsAPulse = 20000;  // about a millisecond
  sqlite3_progress_handler(handle_.get(), kInstructionsAPulse, &OnProgress, this);
}

// What a till that was killed left in the log goes into the file at once.
void SqliteConnection::TakeOver(const Clock& clock) {
  // Stores of older versions were left without a log and nothing was missing.
  const bool missing = lacks_log_ && sqlite::VersionOf(handle_.get()) == sqlite::kVersion;
  sqlite::LayLog(handle_.get());
  sqlite::SwitchLogOn(handle_.get());
  sqlite::KeepLog(handle_.get(), true);
  lacks_log_ = false;
  sqlite::BringUpToDate(handle_.get());
  if (missing) NoteMissingLog(clock);
  Run("PRAGMA main.wal_checkpoint(PASSIVE)");
}

// From now on the file has a log again, so nothing but this note tells.
void SqliteConnection::NoteMissingLog(const Clock& clock) {
  sqlite::Run(handle_.get(),
              "CREATE TABLE IF NOT EXISTS main.TpvAvisos (Momento TEXT, Aviso TEXT); "
              "INSERT INTO main.TpvAvisos VALUES (" + sqlite::Literal(ToDayFirstSeconds(clock.Now())) + ", " +
                  sqlite::Literal(sqlite::LogOf(handle_.get())) + ")");
}

std::string SqliteConnection::MissingLog() const {
  constexpr const char* kIfCopied = "»: si el almacén se copió a mano, no está lo último que se grabó";
  if (lacks_log_) return "Falta «" + sqlite::LogOf(handle_.get()) + kIfCopied;
  if (sqlite::Number(handle_.get(), "SELECT COUNT(*) FROM main.sqlite_master WHERE name = 'TpvAvisos'") == 0) {
    return "";
  }
  return sqlite::Text(handle_.get(), "SELECT 'El ' || Momento || ' se abrió sin «' || Aviso || " +
                                         sqlite::Literal(std::string(kIfCopied) + " antes") +
                                         " FROM main.TpvAvisos ORDER BY rowid DESC LIMIT 1");
}

// A file whose log is not there keeps its mark.
SqliteConnection::~SqliteConnection() {
  while (!open_.empty()) (*open_.begin())->Close();
  if (sqlite3_get_autocommit(handle_.get()) == 0) control_->rollback.Try();
  turns_->Leave();
  if (!lacks_log_) sqlite::Settle(handle_.get());
}

// No exception may pass through the engine: it waits until the statement has ended.
int SqliteConnection::OnProgress(void* connection) {
  try {
    Pulse();
    return 0;
  } catch (...) {
    static_cast<SqliteConnection*>(connection)->interruption_ = std::current_exception();
    return 1;
  }
}

void SqliteConnection::RaiseInterruption() {
  if (interruption_ != nullptr) std::rethrow_exception(std::exchange(interruption_, nullptr));
}

void SqliteConnection::Run(const char* sql) { sqlite::Run(handle_.get(), sql); }

void SqliteConnection::SetSynchronous(bool on) {
  Run(on ? "PRAGMA main.synchronous = FULL" : "PRAGMA main.synchronous = OFF");
}

void SqliteConnection::LetCodesRepeat() {
  Run("DROP INDEX IF EXISTS main.ix_Cli_CLI_COD; CREATE INDEX main.ix_Cli_CLI_COD ON Cli (CLI_COD)");
}

std::vector<std::string> SqliteConnection::Damage() {
  std::vector<std::string> lines;
  if (lacks_log_) lines.push_back(MissingLog());
  for (const std::string& table : sqlite::MissingTables(handle_.get())) {
    lines.push_back("Falta la tabla «" + table + "»");
  }
  sqlite3_stmt* statement = nullptr;
  int result = sqlite3_prepare_v2(handle_.get(), "PRAGMA main.integrity_check(20)", -1, &statement, nullptr);
  const sqlite::StatementPtr owner(statement);
  while (result == SQLITE_OK && (result = sqlite3_step(statement)) == SQLITE_ROW) {
    lines.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    result = SQLITE_OK;
  }
  if (result != SQLITE_DONE) sqlite::ThrowLastError(handle_.get());
  std::erase(lines, "ok");
  return lines;
}

void SqliteConnection::CopyTo(const std::string& path) {
  if (lacks_log_) {
    throw DatabaseError("Falta «" + sqlite::LogOf(handle_.get()) + "»: no está lo último que se grabó");
  }
  sqlite::MakeFile(path);
  sqlite::CopyPages(handle_.get(), path);
  sqlite::Settle(sqlite::OpenFile(path).get());
}

std::unique_ptr<Recordset> SqliteConnection::Execute(std::string_view sql) {
  RequireNotUndone();
  std::vector<Variant> literals;
  std::shared_ptr<sqlite::CachedShape> shape = cache_->FindWhole(sql);
  if (shape == nullptr) {
    dialect::Scanned scanned = dialect::Scan(sql);
    shape = cache_->Find(scanned.shape);
    literals = std::move(scanned.literals);
  }
  const dialect::Translation& translation = shape->translation;
  if (translation.writes) {
    RequireNoArchive();
    CloseSnapshot();
    references_->Written(*translation.table);
    if (!InTransaction()) return WriteAlone(std::move(shape), std::move(literals));
  } else if (translation.table != nullptr && literals.empty()) {
    return ReadReference(std::move(shape));
  }
  return Start(std::move(shape), std::move(literals));
}

// A write on its own is a transaction too, with all that one asks.
std::unique_ptr<Recordset> SqliteConnection::WriteAlone(std::shared_ptr<sqlite::CachedShape> shape,
                                                        std::vector<Variant> literals) {
  Transaction transaction(*this);
  auto rows = Start(std::move(shape), std::move(literals));
  transaction.Commit();
  return rows;
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

void SqliteConnection::RequireNoArchive() const {
  if (!archive_) return;
  throw DatabaseError("Este almacén es un archivo de años anteriores: se consulta, y no se vende ni se cambia nada en él",
                      "25006");
}

void SqliteConnection::BeginTrans() {
  RequireNoArchive();
  CloseSnapshot();
  if (InTransaction()) throw DatabaseError("Ya hay una transacción abierta", "25001");
  ReadAhead();
  if (turns_->Take([this] { return control_->begin_writing.Try(); }) != SQLITE_OK) {
    sqlite::ThrowLastError(handle_.get());
  }
  in_transaction_ = true;
  try {
    RequireSameVersion();
  } catch (const DatabaseError&) {
    RollbackTrans();
    throw;
  }
}

// Asked under the lock that an upgrade takes too.
void SqliteConnection::RequireSameVersion() {
  if (control_->version.Value() == sqlite::kVersion) return;
  throw DatabaseError("Otro programa ha cambiado la versión del almacén: cierre este y ábralo de nuevo",
                      "08001");
}

// After some failures the engine undoes all by itself: what followed would be
// stored at once, piece by piece.
void SqliteConnection::RequireNotUndone() const {
  if (in_transaction_ && sqlite3_get_autocommit(handle_.get()) != 0) throw UndoneError();
}

void SqliteConnection::CommitTrans() {
  if (!in_transaction_) throw DatabaseError("No hay ninguna transacción abierta", "25000");
  RequireNotUndone();
  turns_->LeaveSoon();
  control_->commit.Run();
  EndTrans();
}

// Open record sets keep the rows that they would have shown.
void SqliteConnection::RollbackTrans() {
  if (!in_transaction_) throw DatabaseError("No hay ninguna transacción abierta", "25000");
  ReadAhead();
  const bool undone = sqlite3_get_autocommit(handle_.get()) != 0;
  if (!undone) control_->rollback.Run();
  EndTrans();
}

void SqliteConnection::EndTrans() {
  in_transaction_ = false;
  turns_->Leave();
}

// The engine tells what others have stored, and counts the rows that were changed here.
std::optional<std::uint64_t> SqliteConnection::ChangeMark() {
  const auto others = static_cast<std::uint32_t>(control_->data_version.Value());
  const auto own = static_cast<std::uint32_t>(sqlite3_total_changes64(handle_.get()));
  return std::uint64_t{others} << 32 | own;
}

MonthMemory* SqliteConnection::Months() {
  return months_ != nullptr && sqlite::CountsListChanges(handle_.get()) ? months_.get() : nullptr;
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

}  // namespace tpv
