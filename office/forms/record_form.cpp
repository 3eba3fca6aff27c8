#include "office/forms/record_form.h"

#include "context/context.h"
#include "data/schema.h"
#include "data/sql_text.h"
#include "office/fields.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

const schema::Table& Described(const std::string& table) {
  return *schema::FindTable(table.substr(table.rfind('.') + 1));
}

// A choice's code is a number where the column is one.
bool HoldsText(const schema::Table& table, const char* column) {
  return table.columns[static_cast<std::size_t>(table.Find(column))].type == schema::Type::Text;
}

}  // namespace

RecordForm::RecordForm(Context& context, std::string form_name, const RecordTable& table, std::int32_t id)
    : FieldForm(context, std::move(form_name), table.fields), table_(table), id_(id) {
  caption = table.subject;
  if (table.id != nullptr) caption += IsNew() ? " · alta" : " · cambio";
}

bool RecordForm::InTable(const FormField& field) const { return Described(table_.table).Find(field.column) >= 0; }

std::string RecordForm::Select() const {
  std::string columns;
  for (const FormField& field : fields()) {
    if (InTable(field)) columns += std::string(columns.empty() ? "" : ", ") + field.column;
  }
  return "SELECT TOP 1 " + columns + " FROM " + table_.table + Where();
}

std::string RecordForm::Where() const {
  if (table_.id == nullptr) return {};
  return " WHERE " + std::string(table_.id) + " = " + sql::Number(std::int64_t{id_});
}

void RecordForm::Fill() {
  if (IsNew()) return FillNew();
  const auto row = Database().Execute(Select());
  if (row->Eof()) throw DatabaseError("El registro ya no existe");
  for (const FormField& field : fields()) {
    if (InTable(field)) Show(field.column, row->Field(field.column));
  }
  read_ = Read();
}

std::vector<std::string> RecordForm::Read() {
  const auto row = Database().Execute(Select());
  if (row->Eof()) throw FieldFault("", "Otro puesto ha borrado este registro mientras tanto");
  std::vector<std::string> values;
  for (const Variant& value : row->Fields()) values.push_back(PlainValue(value));
  return values;
}

void RecordForm::RequireUnchanged() {
  if (Read() == read_) return;
  throw FieldFault("", "Otro puesto ha cambiado estos datos mientras tanto. Salga y vuelva a abrirlos");
}

void RecordForm::RequireUnique() {
  for (const FormField& field : fields()) {
    const std::string value = Plain(field.column);
    if (!field.unique || value.empty() || !IsChanged(field.column)) continue;
    const auto other = Database().Execute("SELECT TOP 1 " + std::string(table_.id) + " FROM " + table_.table +
                                          " WHERE " + field.column + " = " + Literal(field) + " AND " + table_.id +
                                          " <> " + sql::Number(std::int64_t{id_}));
    if (!other->Eof()) throw FieldFault(field.column, "ya lo tiene otro registro");
  }
}

void RecordForm::Store() {
  const std::int32_t before = id_;
  try {
    Transaction transaction(Database());
    if (!IsNew()) RequireUnchanged();
    RequireUnique();
    if (IsNew()) {
      Insert();
    } else {
      Update();
    }
    StoreOwn();
    transaction.Commit();
  } catch (...) {
    id_ = before;
    throw;
  }
}

// The field's value as SQL text.
std::string RecordForm::Literal(const FormField& field) const {
  std::string value = Plain(field.column);
  if (value.empty()) return "NULL";
  switch (field.asks) {
    case Asks::Flag: return value;
    case Asks::Whole: return sql::WholeNumber(value);
    case Asks::Amount: return sql::Number(Amount(field.column));
    case Asks::Date: return "'" + sql::DateText(value) + "'";
    default: return HoldsText(Described(table_.table), field.column) ? sql::Quoted(value) : sql::WholeNumber(value);
  }
}

void RecordForm::Insert() {
  std::string columns;
  std::string values;
  const auto add = [&](std::string_view column, const std::string& value) {
    columns.append(columns.empty() ? "" : ", ").append(column);
    values.append(values.empty() ? "" : ", ").append(value);
  };
  for (const FormField& field : fields()) {
    if (InTable(field)) add(field.column, Literal(field));
  }
  for (const auto& [column, value] : Own()) add(column, sql::Number(std::int64_t{value}));
  Database().Execute("INSERT INTO " + std::string(table_.table) + " (" + columns + ") VALUES (" + values + ")");
  const auto last = Database().Execute("SELECT MAX(" + std::string(table_.id) + ") FROM " + table_.table);
  id_ = last->Field(0).ToInt32();
}

void RecordForm::Update() {
  std::string changes;
  for (const FormField& field : fields()) {
    if (!InTable(field) || !IsChanged(field.column)) continue;
    changes.append(changes.empty() ? "" : ", ").append(field.column).append(" = ").append(Literal(field));
  }
  for (const auto& [column, value] : Own()) {
    changes.append(changes.empty() ? "" : ", ").append(column + " = " + sql::Number(std::int64_t{value}));
  }
  if (changes.empty()) return;
  Database().Execute("UPDATE " + std::string(table_.table) + " SET " + changes + Where());
}

}  // namespace tpv::office
