// The suite's database object over one open connection.
#pragma once

#include "context/database_object.h"
#include "suite/late_bound.h"
#include "suite/row_builder.h"

namespace tpv {
class Clock;
class Settings;
namespace ui {
class FrontEnd;
}
}  // namespace tpv

namespace tpv::suite {

class StoreDatabase : public DatabaseObject {
 public:
  // All references outlive the object.
  StoreDatabase(Connection& connection, std::int32_t user, ui::FrontEnd& front_end,
                const Clock& clock, const Settings& settings);

  Connection& Conexion() override { return connection_; }
  // Read at the moment of the call: another till may have changed it. What the
  // machine says (till_settings.h) stands before the store.
  Variant Parametro(std::string_view name) override;
  std::int32_t IdUsuario() const override { return user_; }
  RowBuilder& NuevaSentencia() override;
  std::unique_ptr<FormToolkit> CreateFormToolkit() override;

  // IdUsuario, Parametros(name), Tabla, BeginTrans, Where, xlsCampos with its
  // Add(column, kind, value), Insert(error), Update(error).
  Variant Get(std::string_view property) override;
  void Put(std::string_view property, const Variant& value) override;
  Variant Call(std::string_view method, std::span<Variant> arguments) override;

 protected:
  virtual Variant StoreParameter(std::string_view name);

 private:
  Connection& connection_;
  std::int32_t user_;
  ui::FrontEnd& front_end_;
  const Clock& clock_;
  const Settings& settings_;
  StatementBuilder builder_;
  std::shared_ptr<Object> columns_;
};

// The database object that a sibling component was given as its MyBd. Throws
// ObjectError when it was given none.
DatabaseObject& DatabaseOf(Object& component, std::string_view class_name);

}  // namespace tpv::suite
