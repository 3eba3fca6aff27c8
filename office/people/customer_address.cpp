#include "office/people/customer_address.h"

#include "data/sql_text.h"
#include "office/fields.h"
#include "office/people/customer_fields.h"
#include "platform/database.h"

namespace tpv::office {

CustomerAddress ReadAddress(Connection& connection, std::int32_t customer) {
  std::string columns;
  for (const FormField& field : customer::Fields()) {
    if (customer::IsOfAddress(field)) columns += std::string(", ") + field.column;
  }
  const auto row = connection.Execute("SELECT TOP 1 DIR_ID" + columns +
                                      " FROM CliDir INNER JOIN Dir ON DIR_ID = CLIDIR_DIR WHERE CLIDIR_CLI = " +
                                      sql::Number(std::int64_t{customer}) + " ORDER BY DIR_ID");
  if (row->Eof()) return {};
  CustomerAddress address{row->Field(0).ToInt32(), {}};
  for (std::size_t i = 1; i < row->FieldCount(); ++i) address.values.push_back(PlainValue(row->Field(i)));
  return address;
}

void StoreAddress(Connection& connection, std::int32_t customer, const CustomerAddress& address) {
  std::string columns;
  std::string literals;
  std::string changes;
  std::size_t next = 0;
  for (const FormField& field : customer::Fields()) {
    if (!customer::IsOfAddress(field)) continue;
    const auto kind = field.asks == Asks::Whole ? FieldKind::Whole : FieldKind::Text;
    const std::string literal = Literal(address.values[next++], kind);
    const std::string comma = columns.empty() ? "" : ", ";
    columns += comma + field.column;
    literals += comma + literal;
    changes += comma + field.column + " = " + literal;
  }
  if (address.id != 0) {
    connection.Execute("UPDATE Dir SET " + changes + " WHERE DIR_ID = " + sql::Number(std::int64_t{address.id}));
    return;
  }
  connection.Execute("INSERT INTO Dir (" + columns + ") VALUES (" + literals + ")");
  connection.Execute("INSERT INTO CliDir (CLIDIR_CLI, CLIDIR_DIR) SELECT " + sql::Number(std::int64_t{customer}) +
                     ", MAX(DIR_ID) FROM Dir");
}

}  // namespace tpv::office
