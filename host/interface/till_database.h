// MyBd as a host's till gives it: the suite's database object, which owns its
// connection and hands it to the host's components by name.
#pragma once

#include <functional>
#include <memory>

#include "suite/store_database.h"

namespace tpv::interface {

// What has to be there before the database object is made.
struct OwnedConnection {
  std::shared_ptr<void> keeps;  // what the connection and the front end live in
  std::unique_ptr<Connection> connection;
  // Another connection to the same store, for other threads; null: there is none.
  std::function<std::unique_ptr<Connection>()> reopen = nullptr;
};

class TillDatabase : private OwnedConnection,
                     public suite::StoreDatabase,
                     public std::enable_shared_from_this<TillDatabase> {
 public:
  using Parameters = std::function<Variant(std::string_view name)>;

  // Without `parameters` they are read from the table.
  TillDatabase(OwnedConnection owned, std::int32_t user, ui::FrontEnd& front_end,
               const Clock& clock, const Settings& settings, Parameters parameters = {});

  // The suite's members, and Conexion: Execute(statement), BeginTrans,
  // CommitTrans, RollbackTrans. Execute gives rows: EOF, BOF, RecordCount,
  // Fields(name or index), Count, Name(index), MoveNext, Close.
  Variant Get(std::string_view property) override;

  const auto& Reopen() const { return reopen; }

 private:
  Variant StoreParameter(std::string_view name) override;

  Parameters parameters_;
};

}  // namespace tpv::interface
