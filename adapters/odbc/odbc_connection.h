// A store on a server, reached through ODBC: SQL Server with FreeTDS's driver or
// any other. Statements go as the component writes them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/odbc/faults.h"
#include "adapters/odbc/session_sql.h"
#include "adapters/odbc/target.h"
#include "platform/database.h"

namespace tpv {

namespace odbc {
class Link;
class OdbcRecordset;
struct ActiveResult;
}  // namespace odbc

struct OdbcOptions {
  int login_seconds = 10;
  int query_seconds = 30;  // more than lock_seconds
  int lock_seconds = 10;   // how long a till waits for the others' writing
  int look_seconds = 20;   // how long it looks for a commit without an answer
  odbc::Faults faults;     // for tests
};

class OdbcConnection : public Connection {
 public:
  // Logs in and sets the session up. Throws DatabaseError, TargetError.
  explicit OdbcConnection(const odbc::Target& target, OdbcOptions options = {});
  ~OdbcConnection() override;

  // A lost session is opened again before the next statement outside of a
  // transaction; reading is tried once more, writing never.
  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  // On SQL Server under one lock for the store, held to the transaction's end.
  void BeginTrans() override;
  // When the answer is lost, the store is asked: returns when the transaction
  // is there, throws DatabaseError when it is not, CommitUnknown when the store
  // cannot be asked.
  void CommitTrans() override;
  void RollbackTrans() override;
  bool InTransaction() const override { return state_ != State::None; }

  bool IsSqlServer() const { return sql_server_; }

 private:
  // Undone: the server ended the transaction, the component does not know yet.
  enum class State { None, Open, Undone };
  // Whether the store keeps marks of transactions: one made by others may not.
  enum class Marks { Unknown, Missing, Kept };

  void Open();
  void SetUpSession();
  void FindMarks();
  std::vector<std::string> MarkTransaction();
  void EnsureOpen();
  void Drop();
  void ReadAhead();
  void RequireTransaction();
  bool StillOpenOnServer();
  void Probe();
  template <typename Work>
  auto OnceMore(Work work);
  std::unique_ptr<Recordset> Run(std::string_view sql, bool pulsing = false);
  std::unique_ptr<Recordset> Leap(std::string_view sql);
  std::optional<Variant> First(std::string_view sql);
  void Begin(const std::vector<std::string>& mark);
  void Undo();
  DatabaseError LockedOut() const;
  void ResolveCommit(const DatabaseError& loss);
  bool LookForCommit();

  const odbc::Login login_;
  const OdbcOptions options_;
  std::unique_ptr<odbc::Link> link_;  // null while there is no session
  std::unique_ptr<odbc::ActiveResult> active_;
  State state_ = State::None;
  bool sql_server_ = false;
  bool open_server_ = false;  // of the dialect, over another engine
  bool leaps_ = true;         // whether it takes what distinct_leap.h makes
  Marks marks_ = Marks::Unknown;
  bool had_lock_ = false;     // whether this till ever got the store's lock
  bool left_behind_ = false;  // a lost session of ours may still hold it
  odbc::Mark mark_;
};

}  // namespace tpv
