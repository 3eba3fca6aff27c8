#include "adapters/odbc/odbc_connection.h"

#include <chrono>
#include <random>
#include <thread>

#include "adapters/odbc/distinct_leap.h"
#include "adapters/odbc/odbc_recordset.h"
#include "adapters/odbc/open_server.h"
#include "base/text.h"

namespace tpv {

using odbc::IsConnectionLoss;

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{500};

std::string NewSessionName() {
  std::random_device device;
  std::string name;
  constexpr char kHex[] = "0123456789abcdef";
  for (int i = 0; i < 32; ++i) name += kHex[device() % 16];
  return name;
}

bool OnlyReads(std::string_view sql) { return StartsWithNoCase(Trim(sql), "SELECT"); }

DatabaseError UndoneError() {
  return DatabaseError("El servidor deshizo la operación: no se ha grabado nada", "40000");
}

}  // namespace

OdbcConnection::OdbcConnection(const odbc::Target& target, OdbcOptions options)
    : login_(odbc::LoginTo(target)),
      options_(std::move(options)),
      active_(std::make_unique<odbc::ActiveResult>()) {
  mark_.session = NewSessionName();
  Open();
}

OdbcConnection::~OdbcConnection() {
  if (active_->owner != nullptr) active_->owner->Close();
}

void OdbcConnection::Open() {
  link_ = std::make_unique<odbc::Link>(
      login_, odbc::Limits{options_.login_seconds, options_.query_seconds}, options_.faults);
  try {
    sql_server_ = link_->IsSqlServer();
    if (sql_server_) SetUpSession();
    FindMarks();
  } catch (const DatabaseError&) {
    link_.reset();
    throw;
  }
}

void OdbcConnection::SetUpSession() {
  try {
    link_->Run(odbc::SessionLanguage());
  } catch (const DatabaseError& error) {
    if (link_->IsDead()) throw;  // otherwise its messages stay in its own language
  }
  for (const std::string& statement : odbc::SessionSetup()) link_->Run(statement);
  const auto day = First(odbc::DateProbe());
  if (!day || day->ToInt32() != 2) {
    throw DatabaseError("El servidor no lee las fechas en el orden día/mes/año", "22007");
  }
  const auto version = First(odbc::AskVersion());
  open_server_ = version && odbc::IsOpenServer(version->TextOr(""));
}

// Another till that is storing must not hold up a log-in: what could not be seen
// at once is looked for again by the next transaction. Without marks a lost answer
// stays unknown.
void OdbcConnection::FindMarks() {
  marks_ = Marks::Unknown;
  if (sql_server_) link_->Run(odbc::WaitForRows(0));
  try {
    link_->Run(odbc::LookForMarks());
    marks_ = Marks::Kept;
  } catch (const DatabaseError& error) {
    if (link_->IsDead()) throw;
    if (odbc::IsMissingTable(error)) marks_ = Marks::Missing;
  }
  if (sql_server_) link_->Run(odbc::WaitForRows(odbc::kRowPatience));
}

std::vector<std::string> OdbcConnection::MarkTransaction() {
  if (marks_ == Marks::Unknown) FindMarks();
  if (marks_ != Marks::Kept) return {};
  std::vector<std::string> statements = mark_.Write();
  // Under the store's lock nobody else holds a mark.
  if (sql_server_ && mark_.number == 1) statements.push_back(odbc::ForgetOldMarks());
  return statements;
}

void OdbcConnection::Drop() {
  if (active_->owner != nullptr) active_->owner->ReadAhead();  // ends in its failure
  link_.reset();
}

void OdbcConnection::EnsureOpen() {
  if (link_ != nullptr && link_->IsDead()) Drop();
  if (link_ == nullptr) Open();
}

void OdbcConnection::ReadAhead() {
  if (active_->owner != nullptr) active_->owner->ReadAhead();
}

// Runs the work again, on a new session, when the old one turns out to be lost.
template <typename Work>
auto OdbcConnection::OnceMore(Work work) {
  EnsureOpen();
  try {
    return work();
  } catch (const DatabaseError&) {
    if (!link_->IsDead()) throw;
  }
  EnsureOpen();
  return work();
}

std::unique_ptr<Recordset> OdbcConnection::Run(std::string_view sql, bool pulsing) {
  const std::string with_blanks = open_server_ ? odbc::WithBlanksBehindNumbers(sql) : std::string();
  const auto waiting = pulsing ? odbc::Link::Waiting::Pulsing : odbc::Link::Waiting::Silent;
  auto reader = std::make_unique<odbc::RowReader>(*link_, link_->Execute(open_server_ ? with_blanks : sql, waiting));
  return std::make_unique<odbc::OdbcRecordset>(std::move(reader), *active_);
}

std::optional<Variant> OdbcConnection::First(std::string_view sql) {
  const auto rows = Run(sql);
  if (rows->Eof()) return std::nullopt;
  return rows->Field(std::size_t{0});
}

std::unique_ptr<Recordset> OdbcConnection::Execute(std::string_view sql) {
  ReadAhead();
  if (state_ != State::None) {
    RequireTransaction();
    return Run(sql, true);
  }
  if (OnlyReads(sql)) {
    if (auto rows = Leap(sql)) return rows;
    return OnceMore([&] { return Run(sql, true); });
  }
  // A write whose answer is lost must not be sent again, so the session is
  // tried with something harmless first. Nor can it be given up: it is stored at once.
  OnceMore([this] { return First("SELECT 1 AS vivo"); });
  return Run(sql);
}

// Null where the statement has to go out as it is: also for good when the server does not
// take what would stand for it.
std::unique_ptr<Recordset> OdbcConnection::Leap(std::string_view sql) {
  const auto leap = leaps_ && sql_server_ ? odbc::LeapThroughIndex(sql, open_server_) : std::nullopt;
  if (!leap) return nullptr;
  try {
    return OnceMore([&] { return Run(*leap, true); });
  } catch (const DatabaseError& error) {
    if (link_ == nullptr || link_->IsDead() || odbc::IsTimeout(error.sqlstate())) throw;
    leaps_ = false;
    return nullptr;
  }
}

// After a failure the server may have ended the transaction: what followed would
// be stored at once, piece by piece.
void OdbcConnection::RequireTransaction() {
  if (state_ == State::None) {
    throw DatabaseError("No hay ninguna transacción abierta", "25000");
  }
  if (state_ == State::Open && !StillOpenOnServer()) state_ = State::Undone;
  if (state_ == State::Undone) throw UndoneError();
}

bool OdbcConnection::StillOpenOnServer() {
  if (link_ == nullptr || link_->IsDead()) return false;
  if (!link_->TakeFailure() || !sql_server_) return true;
  try {
    return First(odbc::TransactionProbe()).value_or(Variant(0)).ToInt32() == 1;
  } catch (const DatabaseError&) {
    return false;
  }
}

void OdbcConnection::BeginTrans() {
  if (state_ != State::None) throw DatabaseError("Ya hay una transacción abierta", "25001");
  ReadAhead();
  ++mark_.number;
  OnceMore([this] { Begin(MarkTransaction()); });
  link_->TakeFailure();
  state_ = State::Open;
}

void OdbcConnection::Begin(const std::vector<std::string>& mark) {
  try {
    if (!sql_server_) {
      link_->Run("BEGIN TRANSACTION");
      for (const std::string& statement : mark) link_->Run(statement);
      return;
    }
    const auto lock = First(odbc::BeginLocked(options_.lock_seconds, mark));
    if (lock && lock->ToInt32() >= 0) {
      had_lock_ = true;
      left_behind_ = false;
      return;
    }
  } catch (const DatabaseError&) {
    if (!link_->IsDead()) Undo();
    throw;
  }
  throw LockedOut();
}

// A session that was cut off keeps the lock until the server notices.
DatabaseError OdbcConnection::LockedOut() const {
  const char* text = "Otra caja está grabando en este momento; inténtelo de nuevo";
  if (!had_lock_) {
    text = "Otra caja está grabando en este momento, o esta misma se cortó mientras grababa y el "
           "servidor todavía la espera; inténtelo de nuevo dentro de un minuto";
  }
  if (left_behind_) {
    text = "La conexión se cortó mientras esta caja grababa y el servidor todavía la espera; "
           "inténtelo de nuevo dentro de un minuto";
  }
  return DatabaseError(text, "HYT00");
}

void OdbcConnection::Undo() {
  try {
    link_->Run(sql_server_ ? odbc::RollbackIfOpen() : "ROLLBACK TRANSACTION");
  } catch (const DatabaseError& error) {
    if (odbc::IsNothingToRollBack(error)) return;
    left_behind_ = true;
    Drop();  // the server undoes what a session leaves behind
  }
}

void OdbcConnection::CommitTrans() {
  ReadAhead();
  RequireTransaction();
  try {
    link_->Run("COMMIT TRANSACTION");
    state_ = State::None;
  } catch (const DatabaseError& error) {
    if (!link_->IsDead() && !odbc::IsTimeout(error.sqlstate())) throw;
    state_ = State::None;
    ResolveCommit(error);
  }
}

void OdbcConnection::ResolveCommit(const DatabaseError& loss) {
  const bool kept = marks_ == Marks::Kept;
  left_behind_ = true;
  Drop();
  const auto end =
      std::chrono::steady_clock::now() + std::chrono::seconds(options_.look_seconds);
  while (kept) {
    try {
      if (LookForCommit()) return;
      break;
    } catch (const DatabaseError&) {
      if (std::chrono::steady_clock::now() >= end) {
        throw CommitUnknown(loss);
      }
      std::this_thread::sleep_for(kBetweenLooks);
    }
  }
  if (!kept) throw CommitUnknown(loss);
  throw DatabaseError("Se perdió la conexión con el servidor y no se ha grabado nada; repítalo",
                      loss.sqlstate(), loss.native());
}

// Under the store's lock, so that the lost session's transaction is over.
bool OdbcConnection::LookForCommit() {
  EnsureOpen();
  Begin({});
  const auto number = First(mark_.Read());
  Undo();
  return number && number->IntOr(0) == mark_.number;
}

void OdbcConnection::RollbackTrans() {
  if (state_ == State::None) throw DatabaseError("No hay ninguna transacción abierta", "25000");
  ReadAhead();
  state_ = State::None;
  if (link_ != nullptr && !link_->IsDead()) return Undo();
  left_behind_ = true;
}

}  // namespace tpv
