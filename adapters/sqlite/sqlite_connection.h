// The embedded store: one SQLite file for the shop and one beside it for the
// shared catalogue, spoken to in the shop's dialect.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

struct sqlite3;

namespace tpv {

class Clock;

namespace sqlite {
struct Control;
class ReferenceRows;
class StatementCache;
class StepRecordset;
class Turns;
struct CachedShape;
}  // namespace sqlite

// "tienda.db" has its catalogue in "tienda.zrcomun.db".
std::string CataloguePath(const std::string& store_path);

// Creates both files, readable by the user alone, with all tables and no rows.
// Throws DatabaseError when one of them exists or cannot be made.
void CreateStore(const std::string& path);

class SqliteConnection : public Connection {
 public:
  // Opens an existing store. getdate() is `clock`'s time; the clock must outlive
  // the connection. Throws DatabaseError when the file is not such a store.
  SqliteConnection(const std::string& path, const Clock& clock);
  ~SqliteConnection() override;

  std::unique_ptr<Recordset> Execute(std::string_view sql) override;
  void BeginTrans() override;
  void CommitTrans() override;
  void RollbackTrans() override;
  bool InTransaction() const override;
  void BeginSnapshot() override;
  void EndSnapshot() noexcept override;

  // For a copy of an older store in which a customer code was given twice.
  void LetCodesRepeat();
  // What the engine finds damaged in both files, a line each; nothing in sound ones.
  std::vector<std::string> Damage();

  // How durable a commit is; on (the default) survives a power cut.
  void SetSynchronous(bool on);

 private:
  friend class sqlite::StepRecordset;

  void Run(const char* sql);
  std::unique_ptr<Recordset> Start(std::shared_ptr<sqlite::CachedShape> shape,
                                   std::vector<Variant> literals);
  std::unique_ptr<Recordset> ReadReference(std::shared_ptr<sqlite::CachedShape> shape);
  void CloseSnapshot();
  void ReadAhead();

  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  std::unique_ptr<sqlite::Turns> turns_;
  std::unique_ptr<sqlite3, Closer> handle_;
  std::unique_ptr<sqlite::StatementCache> cache_;
  std::unique_ptr<sqlite::ReferenceRows> references_;
  std::unique_ptr<sqlite::Control> control_;
  int snapshots_ = 0;           // how many are nested
  bool snapshot_open_ = false;  // the engine holds one state for them
  std::set<sqlite::StepRecordset*> open_;  // record sets that still step
};

}  // namespace tpv
