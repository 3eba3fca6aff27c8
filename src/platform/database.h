// The port to the shop's database: SQL Server's dialect as text, ADO's manners.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"

namespace tpv {

// Any failure of the engine or the connection. what() is readable by an
// operator; sqlstate and native tell a technician more ("" and 0 when unknown).
class DatabaseError : public std::runtime_error {
 public:
  explicit DatabaseError(const std::string& text, std::string sqlstate = {}, int native = 0)
      : std::runtime_error(text), sqlstate_(std::move(sqlstate)), native_(native) {}
  const std::string& sqlstate() const { return sqlstate_; }
  int native() const { return native_; }

 private:
  std::string sqlstate_;
  int native_;
};

// A commit got no answer and the store could not be asked: the transaction may
// be stored or not. Repeating it blindly might store it twice.
class CommitUnknown : public DatabaseError {
 public:
  explicit CommitUnknown(const DatabaseError& loss)
      : DatabaseError(
            "Se perdió la conexión al grabar y no se sabe si quedó grabado. Compruébelo antes de "
            "repetirlo",
            loss.sqlstate(), loss.native()) {}
};

class MonthMemory;  // month_memory.h

// The rows of one statement, read forward only. It stays readable while other
// statements run on its connection; a rollback may end it (then it is at EOF).
// It must not outlive its connection. Statements without rows give a record set
// without fields that is at EOF.
class Recordset {
 public:
  virtual ~Recordset() = default;

  virtual bool Bof() const = 0;  // true only when there is no row at all
  virtual bool Eof() const = 0;
  // Rows of the result; -1 while not known (the rows are read lazily).
  virtual long RecordCount() const = 0;
  // Record sets of one number have the same rows, wherever they come from; 0 when
  // the engine cannot tell.
  virtual std::int64_t RowsIdentity() const { return 0; }

  virtual std::size_t FieldCount() const = 0;
  virtual const std::string& FieldName(std::size_t index) const = 0;
  // The current row's value; throws DatabaseError at EOF or for a bad index.
  virtual Variant Field(std::size_t index) const = 0;
  // By name regardless of case; throws DatabaseError naming an unknown field.
  virtual Variant Field(std::string_view name) const = 0;
  // All values of the current row, in order; throws DatabaseError at EOF.
  virtual std::vector<Variant> Fields() const;
  // The index of a field by name, for reading it in many rows; throws as Field.
  std::size_t IndexOf(std::string_view name) const;

  virtual void MoveNext() = 0;  // no effect at EOF
  virtual void Close() = 0;     // no effect twice; the destructor closes too
};

// One open connection, used by one thread.
class Connection {
 public:
  virtual ~Connection() = default;

  // Runs one statement. Throws DatabaseError; a failed statement changes nothing.
  virtual std::unique_ptr<Recordset> Execute(std::string_view sql) = 0;

  // A writing transaction: it takes the store's lock here, so that numbers read
  // inside are its own. Transactions do not nest: a second BeginTrans throws.
  virtual void BeginTrans() = 0;
  // CommitUnknown when it may have happened; after any other error it did not.
  virtual void CommitTrans() = 0;
  virtual void RollbackTrans() = 0;
  virtual bool InTransaction() const = 0;

  // Statements in between may read one state of the store, which spares an engine
  // the locks of each; a writing statement or transaction ends that state early.
  // Engines that gain nothing by it take no notice. Nests.
  virtual void BeginSnapshot() {}
  virtual void EndSnapshot() noexcept {}

  // Whether a short list that is read whole costs the store nothing until somebody changes
  // it (Recordset::RowsIdentity).
  virtual bool KeepsLists() const { return false; }

  // Another number whenever anything in the store may have changed since, whoever changed
  // it; nullopt where the store does not tell. Throws DatabaseError.
  virtual std::optional<std::uint64_t> ChangeMark() { return std::nullopt; }

  // Where sums of whole months are kept; null where the store would not notice that they
  // no longer hold.
  virtual MonthMemory* Months() { return nullptr; }
};

// One state of the store for the statements of a scope. Short: nothing that waits
// for the operator or a device belongs in it.
class Snapshot {
 public:
  explicit Snapshot(Connection& connection) : connection_(connection) {
    connection_.BeginSnapshot();
  }
  ~Snapshot() { connection_.EndSnapshot(); }
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

 private:
  Connection& connection_;
};

// Begins on construction and rolls back on destruction unless committed, so an
// error on the way leaves nothing half-written.
class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(connection) {
    connection_.BeginTrans();
  }
  ~Transaction() {
    if (committed_) return;
    try {
      connection_.RollbackTrans();
    } catch (const std::exception&) {
      // The connection is gone and the transaction with it: the error that led
      // here is the one to report.
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    connection_.CommitTrans();
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

}  // namespace tpv
