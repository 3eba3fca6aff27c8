// The suite's database object: connection, parameters record, user, and the row
// builder through which screens insert and update single rows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/variant.h"
#include "context/form_toolkit.h"
#include "platform/objects.h"

namespace tpv {

class Connection;

enum class ValueKind : int {
  Flag = 0,
  Whole = 1,
  Amount = 2,
  Text = 3,
  Date = 4,     // day/month/year text as typed
  Literal = 6,  // SQL written unchanged: "Null", "Getdate()"
};

// One statement on one row (or, for updates, the rows of a condition).
class RowBuilder {
 public:
  virtual ~RowBuilder() = default;

  virtual void Tabla(std::string_view table) = 0;
  // Whether the statement runs in a transaction of its own. Screens that hold
  // one set it to false.
  virtual void BeginTrans(bool own_transaction) = 0;
  virtual void Add(std::string_view column, ValueKind kind, const Variant& value) = 0;
  // "" for an insert; " WHERE Cav_Id = 5" for an update.
  virtual void Where(std::string_view condition) = 0;

  // True on success; otherwise false with the reason in `error`. A value that
  // does not fit its kind is such a failure. Never throws for them.
  virtual bool Insert(std::string& error) = 0;
  virtual bool Update(std::string& error) = 0;
};

// Also an Object: sibling components get it through their property MyBd and
// reach Conexion, Parametros, IdUsuario and the builder's members by name.
class DatabaseObject : public Object {
 public:
  virtual Connection& Conexion() = 0;
  // Current value of a store parameter, by name regardless of case; may be null.
  // An unknown name is an ObjectError.
  virtual Variant Parametro(std::string_view name) = 0;
  virtual std::int32_t IdUsuario() const = 0;

  // Starts a new statement; whatever the builder held before is dropped.
  virtual RowBuilder& NuevaSentencia() = 0;
  virtual std::unique_ptr<FormToolkit> CreateFormToolkit() = 0;
};

}  // namespace tpv
