#include "host/interface/till_database.h"

#include "base/text.h"
#include "platform/database.h"
#include "suite/late_bound.h"

namespace tpv::interface {

namespace {

// Methods alone, each with its number of arguments.
class Methods : public suite::LateBound {
 public:
  using LateBound::LateBound;

 protected:
  void Add(std::string_view name, std::size_t arguments, Method method) {
    Define(name, arguments, arguments, std::move(method));
  }
};

class Rows : public Methods {
 public:
  Rows(std::shared_ptr<TillDatabase> database, std::unique_ptr<Recordset> rows)
      : Methods("Recordset"), database_(std::move(database)), rows_(std::move(rows)) {
    Add("Fields", 1, [this](std::span<Variant> arguments) { return Field(arguments[0]); });
    Add("Name", 1, [this](std::span<Variant> arguments) {
      return Variant(rows_->FieldName(Index(arguments[0])));
    });
    Add("MoveNext", 0, [this](auto) { return rows_->MoveNext(), Variant(); });
    Add("Close", 0, [this](auto) { return rows_->Close(), Variant(); });
  }

  Variant Get(std::string_view property) override {
    if (EqualNoCase(property, "EOF")) return Variant(rows_->Eof());
    if (EqualNoCase(property, "BOF")) return Variant(rows_->Bof());
    if (EqualNoCase(property, "Count")) return Variant(std::int64_t(rows_->FieldCount()));
    if (EqualNoCase(property, "RecordCount")) return Variant(std::int64_t{rows_->RecordCount()});
    return LateBound::Get(property);
  }

 private:
  std::size_t Index(const Variant& index) const {
    const std::int32_t number = index.ToInt32();
    if (number >= 0 && static_cast<std::size_t>(number) < rows_->FieldCount()) {
      return static_cast<std::size_t>(number);
    }
    throw DatabaseError("El resultado no tiene el campo " + index.ToText());
  }
  Variant Field(const Variant& which) const {
    return which.IsText() ? rows_->Field(which.ToText()) : rows_->Field(Index(which));
  }

  std::shared_ptr<TillDatabase> database_;  // outlives its rows
  std::unique_ptr<Recordset> rows_;
};

class Link : public Methods {
 public:
  explicit Link(std::shared_ptr<TillDatabase> database)
      : Methods("Conexion"), database_(std::move(database)) {
    Add("Execute", 1, [this](std::span<Variant> arguments) {
      return Variant(Variant::ObjectRef(std::make_shared<Rows>(
          database_, database_->Conexion().Execute(arguments[0].ToText()))));
    });
    Add("BeginTrans", 0, [this](auto) { return database_->Conexion().BeginTrans(), Variant(); });
    Add("CommitTrans", 0, [this](auto) { return database_->Conexion().CommitTrans(), Variant(); });
    Add("RollbackTrans", 0,
        [this](auto) { return database_->Conexion().RollbackTrans(), Variant(); });
  }

 private:
  std::shared_ptr<TillDatabase> database_;
};

}  // namespace

TillDatabase::TillDatabase(OwnedConnection owned, std::int32_t user, ui::FrontEnd& front_end,
                           const Clock& clock, const Settings& settings,
                           Parameters parameters)
    : OwnedConnection(std::move(owned)),
      StoreDatabase(*connection, user, front_end, clock, settings),
      parameters_(std::move(parameters)) {}

Variant TillDatabase::StoreParameter(std::string_view name) {
  if (!parameters_) return StoreDatabase::StoreParameter(name);
  // A host with parameters of its own need not know those of invoice records.
  return StartsWithNoCase(name, "Par_Fis") ? Variant() : parameters_(name);
}

Variant TillDatabase::Get(std::string_view property) {
  if (EqualNoCase(property, "Conexion")) {
    return Variant(Variant::ObjectRef(std::make_shared<Link>(shared_from_this())));
  }
  Variant value = StoreDatabase::Get(property);
  if (!value.IsObject()) return value;
  // What works on the database holds on to it.
  return Variant(Variant::ObjectRef(shared_from_this(), value.ToObject().get()));
}

}  // namespace tpv::interface
