#include "suite/store_database.h"

#include "base/text.h"
#include "data/schema.h"
#include "platform/database.h"
#include "suite/till_settings.h"
#include "suite/toolkit.h"

namespace tpv::suite {

namespace {

[[noreturn]] void Unknown(std::string_view member) {
  throw ObjectError("MyBd no tiene el miembro «" + std::string(member) + "»");
}

void RequireCount(std::string_view method, std::size_t found, std::size_t expected) {
  if (found != expected) {
    throw ObjectError("MyBd." + std::string(method) + ": número de argumentos incorrecto");
  }
}

ValueKind KindOf(const Variant& kind) {
  const std::int32_t code = kind.ToInt32();
  if (code < 0 || code > 6 || code == 5) {
    throw ObjectError("xlsCampos.Add: clase de valor desconocida " + kind.ToText());
  }
  return static_cast<ValueKind>(code);
}

// The builder's columns as an object of their own.
class Columns : public LateBound {
 public:
  explicit Columns(RowBuilder& builder) : LateBound("MyBd.xlsCampos") {
    Define("Add", 3, 3, [&builder](std::span<Variant> arguments) {
      builder.Add(arguments[0].ToText(), KindOf(arguments[1]), arguments[2]);
      return Variant();
    });
  }
};

}  // namespace

StoreDatabase::StoreDatabase(Connection& connection, std::int32_t user, ui::FrontEnd& front_end,
                             const Clock& clock, const Settings& settings)
    : connection_(connection),
      user_(user),
      front_end_(front_end),
      clock_(clock),
      settings_(settings),
      builder_(connection),
      columns_(std::make_shared<Columns>(builder_)) {}

Variant StoreDatabase::Parametro(std::string_view name) {
  const auto own = TillParameter(settings_, name);
  return own ? *own : StoreParameter(name);
}

Variant StoreDatabase::StoreParameter(std::string_view name) {
  static const schema::Table& parameters = *schema::FindTable("Parametros");
  const int column = parameters.Find(name);
  if (column < 0) throw ObjectError("No existe el parámetro «" + std::string(name) + "»");
  // The record whole: one statement, whose rows an engine may keep, for all of them.
  const auto row = connection_.Execute("SELECT TOP 1 * FROM Parametros");
  if (row->Eof()) throw ObjectError("Falta el registro de parámetros de la tienda");
  // Where the schema has it; a technician's table may have other places, or lack it.
  const auto place = static_cast<std::size_t>(column);
  const std::string_view stored = parameters.columns[place].name;
  if (place < row->FieldCount() && row->FieldName(place) == stored) return row->Field(place);
  for (std::size_t field = 0; field < row->FieldCount(); ++field) {
    if (EqualNoCase(row->FieldName(field), stored)) return row->Field(field);
  }
  throw ObjectError("Los parámetros de la tienda no tienen «" + std::string(name) + "»");
}

RowBuilder& StoreDatabase::NuevaSentencia() {
  builder_.Start();
  return builder_;
}

std::unique_ptr<FormToolkit> StoreDatabase::CreateFormToolkit() {
  return std::make_unique<Toolkit>(front_end_, clock_);
}

Variant StoreDatabase::Get(std::string_view property) {
  if (EqualNoCase(property, "IdUsuario")) return Variant(user_);
  if (EqualNoCase(property, "xlsCampos")) return Variant(columns_);
  Unknown(property);
}

void StoreDatabase::Put(std::string_view property, const Variant& value) {
  if (EqualNoCase(property, "Tabla")) {
    builder_.Start();
    builder_.Tabla(value.ToText());
  } else if (EqualNoCase(property, "BeginTrans")) {
    builder_.BeginTrans(value.ToBool());
  } else if (EqualNoCase(property, "Where")) {
    builder_.Where(value.ToText());
  } else {
    Unknown(property);
  }
}

Variant StoreDatabase::Call(std::string_view method, std::span<Variant> arguments) {
  if (EqualNoCase(method, "Parametros")) {
    RequireCount(method, arguments.size(), 1);
    return Parametro(arguments[0].ToText());
  }
  const bool update = EqualNoCase(method, "Update");
  if (!update && !EqualNoCase(method, "Insert")) Unknown(method);
  RequireCount(method, arguments.size(), 1);
  std::string error;
  const bool done = update ? builder_.Update(error) : builder_.Insert(error);
  arguments[0] = Variant(error);
  return Variant(done);
}

DatabaseObject& DatabaseOf(Object& component, std::string_view class_name) {
  const Variant value = component.Get("MyBd");
  auto* database = value.IsNull() ? nullptr : dynamic_cast<DatabaseObject*>(value.ToObject().get());
  if (database == nullptr) throw ObjectError(std::string(class_name) + ": falta MyBd");
  return *database;
}

}  // namespace tpv::suite
