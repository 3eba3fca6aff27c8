// The embedded store: one SQLite file for the shop, the suite's catalogue in it,
// spoken to in the shop's dialect.
#pragma once

#include <exception>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/sqlite/store_file.h"
#include "platform/database.h"

namespace tpv {

class Clock;

namespace sqlite {
struct Control;
class KeptMonths;
class ReferenceRows;
class StatementCache;
class StepRecordset;
class Turns;
class CopyToRead;
struct CachedShape;
}  // namespace sqlite

enum class OpenMode {
  ToSell,  // an older store is brought up to date, a copy of it kept beside
  AsItIs,  // nothing of its shape changes; an older store is refused; also a store
           // that one may not write can be read
};

class SqliteConnection : public Connection {
 public:
  // Opens an existing store; an archive is only ever looked at. getdate() is `clock`'s time; the clock must outlive
  // the connection. Throws DatabaseError when the file is not such a store.
  SqliteConnection(const std::string& path, const Clock& clock, OpenMode opening = OpenMode::ToSell);
  ~SqliteConnection() override;

  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  void BeginTrans() override;
  void CommitTrans() override;
  void RollbackTrans() override;
  bool InTransaction() const override { return in_transaction_; }
  void BeginSnapshot() override;
  void EndSnapshot() noexcept override;
  bool KeepsLists() const override { return true; }
  std::optional<std::uint64_t> ChangeMark() override;
  MonthMemory* Months() override;

  bool IsArchive() const { return archive_; }

  // For a copy of an older store in which a customer code was given twice.
  void LetCodesRepeat();
  // What is missing or what the engine finds damaged, a line each; nothing in a sound file.
  std::vector<std::string> Damage();

  // What a technician should know of a log that was not there, now or when the store was
  // opened to sell; "" for a store that always had its log.
  std::string MissingLog() const;

  // All of the store as it is at one moment, in a new file that needs no log; other
  // connections go on selling. Throws DatabaseError; what it began is left there.
  void CopyTo(const std::string& path);

  // How durable a commit is; on (the default) survives a power cut.
  void SetSynchronous(bool on);

 private:
  friend class sqlite::StepRecordset;

  void Run(const char* sql);
  void TakeOver(const Clock& clock);
  void NoteMissingLog(const Clock& clock);
  std::unique_ptr<Recordset> Start(std::shared_ptr<sqlite::CachedShape> shape,
                                   std::vector<Variant> literals);
  std::unique_ptr<Recordset> WriteAlone(std::shared_ptr<sqlite::CachedShape> shape,
                                        std::vector<Variant> literals);
  std::unique_ptr<Recordset> ReadReference(std::shared_ptr<sqlite::CachedShape> shape);
  void EndTrans();
  void CloseSnapshot();
  void ReadAhead();
  void RequireNotUndone() const;
  void RequireNoArchive() const;
  // SQLite's progress handler: true ends the statement.
  static int OnProgress(void* connection);
  void RaiseInterruption();
  void RequireSameVersion();

  std::unique_ptr<sqlite::Turns> turns_;
  std::unique_ptr<sqlite::CopyToRead> copy_;  // of a store that cannot be read in its place
  sqlite::Handle handle_;
  std::unique_ptr<sqlite::StatementCache> cache_;
  std::unique_ptr<sqlite::ReferenceRows> references_;
  std::unique_ptr<sqlite::KeptMonths> months_;  // of a store that is open to sell
  std::unique_ptr<sqlite::Control> control_;
  bool archive_ = false;
  bool lacks_log_ = false;       // the file was left with a log that is not there
  bool in_transaction_ = false;  // though the engine may have undone it
  int snapshots_ = 0;            // how many are nested
  bool snapshot_open_ = false;   // the engine holds one state for them
  std::exception_ptr interruption_;  // what a pulse threw: the statement ends with it
  std::set<sqlite::StepRecordset*> open_;  // record sets that still step
};

}  // namespace tpv
