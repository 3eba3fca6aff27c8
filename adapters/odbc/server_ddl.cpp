#include "adapters/odbc/server_ddl.h"

#include "adapters/odbc/session_sql.h"

namespace tpv {

namespace {

std::string TypeText(const schema::Column& column) {
  switch (column.type) {
    case schema::Type::Int:
      return "int";
    case schema::Type::SmallInt:
      return "smallint";
    case schema::Type::Bit:
      return "bit";
    case schema::Type::Float:
      return "float";
    case schema::Type::Money:
      return "money";
    case schema::Type::DateTime:
      return "datetime";
    default:
      return "nvarchar(" + (column.length == 0 ? "max" : std::to_string(column.length)) + ")";
  }
}

std::string DefaultText(schema::Default initial) {
  switch (initial) {
    case schema::Default::Zero:
      return " DEFAULT (0)";
    case schema::Default::One:
      return " DEFAULT (1)";
    case schema::Default::Now:
      return " DEFAULT (getdate())";
    default:
      return {};
  }
}

}  // namespace

std::string ServerColumn(const schema::Table& table, std::size_t index) {
  const schema::Column& column = table.columns[index];
  const bool numbered = index == 0 && table.identity;
  const bool key = index == 0 && (table.identity || table.keyed);
  return "[" + std::string(column.name) + "] " + TypeText(column) +
         (numbered ? " IDENTITY(1,1)" : "") + (key || column.required ? " NOT NULL" : " NULL") +
         (key ? " PRIMARY KEY" : "") + DefaultText(column.initial);
}

namespace {

ServerObject TableObject(const schema::Table& table) {
  const std::string name(table.name);
  std::string columns;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    columns += (i == 0 ? "" : ", ") + ServerColumn(table, i);
  }
  ServerObject object{name, true, {"CREATE TABLE dbo.[" + name + "] (" + columns + ")"}};
  for (const schema::Index& index : table.indexes) {
    object.statements.push_back(std::string("CREATE ") + (index.unique ? "UNIQUE " : "") +
                                "INDEX [" + schema::IndexName(table, index) + "] ON dbo.[" + name +
                                "] (" + schema::IndexColumns(index) + ")");
  }
  return object;
}

// What a line's price or amount is with its tax, in cents.
ServerObject WithTaxFunction(const std::string& name, const std::string& column) {
  return {name, false,
          {"CREATE FUNCTION dbo." + name +
           " (@lav_id int) RETURNS money AS BEGIN DECLARE @r money; SELECT @r = ROUND(CAST(" +
           column + " + (" + column + " / 100 * Tiva_iva) AS money), 2) FROM Lav INNER JOIN "
           "zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva WHERE Lav_Id = @lav_id; RETURN @r; END"}};
}

ServerObject Marks() {
  return {odbc::kMarkTable, true,
          {std::string("CREATE TABLE dbo.[") + odbc::kMarkTable +
           "] ([Sesion] nvarchar(40) NOT NULL PRIMARY KEY, [Numero] int NOT NULL, "
           "[Momento] datetime NULL DEFAULT (getdate()))"}};
}

}  // namespace

std::vector<ServerObject> ServerObjects(schema::Home home) {
  std::vector<ServerObject> objects;
  for (const schema::Table& table : schema::Tables()) {
    if (table.home == home) objects.push_back(TableObject(table));
  }
  if (home == schema::Home::Store) {
    objects.push_back(WithTaxFunction("FncPrecioConIva", "Lav_precio"));
    objects.push_back(WithTaxFunction("FncImporteConIva", "Lav_Importe"));
    objects.push_back(Marks());
  }
  return objects;
}

}  // namespace tpv
