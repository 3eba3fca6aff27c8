// Customers from a file, each with the address that stands first in its card.
#include <algorithm>
#include <map>
#include <set>

#include "base/text.h"
#include "office/import/record.h"
#include "office/import/sql_lists.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr const char* kCode = "codigo";
constexpr const char* kCustomerTable = "Cli";
constexpr const char* kAddressTable = "Dir";
constexpr int kGeneral = 1;  // tax regime, and the payment method of a new customer

struct Customer : StoredRecord {
  std::int32_t address = 0;  // 0 for none
};
using Customers = std::map<std::string, Customer>;  // by code

std::size_t IndexOf(std::string_view name) {
  const auto fields = CustomerFields();
  std::size_t index = 0;
  while (fields[index].name != name) ++index;
  return index;
}

// The table's values of the current row, read from `first` on, into their fields.
void TakeValues(const Recordset& row, std::size_t first, std::string_view table,
                Customer& customer) {
  const auto fields = CustomerFields();
  customer.values.resize(fields.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].table == table) customer.values[i] = PlainValue(row.Field(first++));
  }
}

// Throws DatabaseError where the store has a code twice.
Customers ReadCustomers(Connection& connection, const std::vector<std::int64_t>& codes) {
  Customers customers;
  if (codes.empty()) return customers;
  std::map<std::int32_t, Customer*> by_id;
  const auto rows =
      connection.Execute("SELECT CLI_ID, " + ColumnsOf(CustomerFields(), kCustomerTable) +
                         " FROM Cli WHERE CLI_COD IN (" + NumberList(codes) + ")");
  for (; !rows->Eof(); rows->MoveNext()) {
    const auto [place, added] = customers.try_emplace(PlainValue(rows->Field(1)));
    if (!added)
      throw DatabaseError("La tienda tiene varios clientes con el código " + place->first);
    place->second.id = rows->Field(0).ToInt32();
    TakeValues(*rows, 1, kCustomerTable, place->second);
    by_id[place->second.id] = &place->second;
  }
  if (by_id.empty()) return customers;
  std::vector<std::int64_t> ids;
  for (const auto& [id, customer] : by_id) ids.push_back(id);
  const auto addresses = connection.Execute(
      "SELECT CLIDIR_CLI, DIR_ID, " + ColumnsOf(CustomerFields(), kAddressTable) +
      " FROM CliDir INNER JOIN Dir ON DIR_ID = CLIDIR_DIR WHERE CLIDIR_CLI IN (" + NumberList(ids) +
      ") ORDER BY CLIDIR_CLI, DIR_ID DESC");
  for (; !addresses->Eof(); addresses->MoveNext()) {
    Customer& customer = *by_id.at(addresses->Field(0).ToInt32());
    customer.address = addresses->Field(1).ToInt32();
    TakeValues(*addresses, 2, kAddressTable, customer);
  }
  return customers;
}

std::set<std::string> ReadNumbers(Connection& connection, const char* statement) {
  std::set<std::string> numbers{"0"};  // none
  const auto rows = connection.Execute(statement);
  for (; !rows->Eof(); rows->MoveNext()) numbers.insert(PlainValue(rows->Field(0)));
  return numbers;
}

class CustomersImport : public ImportTarget {
 public:
  std::vector<std::string> Columns() const override {
    std::vector<std::string> columns;
    for (const Field& field : CustomerFields()) columns.emplace_back(field.name);
    return columns;
  }

  bool IsNumber(const std::string& column) const override {
    return CustomerFields()[IndexOf(column)].kind == FieldKind::Number;
  }

  Refusals CheckHeading(const Heading& heading) const override {
    if (heading.Has(kCode)) return {};
    return {{0, kCode, "falta la columna"}};
  }

  std::vector<std::string> Keys(const Heading& heading, const TableRow& row) const override {
    const std::string code = Code(heading, row);
    return code.empty() ? std::vector<std::string>() : std::vector{code};
  }

  void Begin(Connection& connection) override {
    known_ = {{"forma_pago", ReadNumbers(connection, "SELECT Fco_Id FROM Fco")},
              {"vendedor", ReadNumbers(connection, "SELECT Age_ID FROM Age")},
              {"banco", ReadNumbers(connection, "SELECT Ban_Id FROM BANCOS")}};
  }

  void Take(Connection& connection, ImportFile& file, const Batch& batch, bool write,
            Findings& findings) override {
    std::vector<WantedRecord> rows;
    std::vector<std::int64_t> codes;
    for (const TableRow& row : batch) {
      rows.push_back(Read(file, row, findings));
      if (!rows.back().refused)
        codes.push_back(static_cast<std::int64_t>(NumberOf(*rows.back().values[0])));
    }
    const Customers stored = ReadCustomers(connection, codes);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      WantedRecord& wanted = rows[i];
      if (wanted.refused) continue;
      const auto found = stored.find(*wanted.values[0]);
      const Customer* customer = found == stored.end() ? nullptr : &found->second;
      Check(wanted, customer, findings);
      if (wanted.refused) continue;
      std::string changes = Changes(CustomerFields(), wanted, customer);
      if (customer != nullptr && changes.empty()) {
        findings.Same();
        continue;
      }
      if (customer == nullptr) changes = file.heading.CellsBeside(batch[i], "codigo");
      findings.Took(wanted.line, *wanted.values[0], customer == nullptr, changes);
      if (write) Store(connection, wanted, customer);
    }
  }

 private:
  // The digits without zeros before them; "" when it is no code.
  static std::string Code(const Heading& heading, const TableRow& row) {
    const std::string code = Trim(heading.Cell(row, kCode));
    const bool digits =
        code.size() <= 6 && code.find_first_not_of("0123456789") == std::string::npos;
    return digits ? code.substr(std::min(code.find_first_not_of('0'), code.size())) : "";
  }

  static WantedRecord Read(ImportFile& file, const TableRow& row, Findings& findings) {
    WantedRecord wanted = ReadRecord(CustomerFields(), file, row, findings);
    const auto refuse = [&](const std::string& reason) {
      findings.Refuse(row.line, kCode, reason);
      wanted.refused = true;
    };
    const std::string code = Code(file.heading, row);
    if (code.empty()) {
      refuse("se espera un número de 1 a 999999");
    } else if (const long before = file.repeated.Before(code, row.line); before > 0) {
      refuse("ya está en la línea " + std::to_string(before));
    }
    wanted.values[0] = code;
    return wanted;
  }

  void Check(WantedRecord& wanted, const Customer* customer, Findings& findings) const {
    const auto fields = CustomerFields();
    const auto refuse = [&](const char* field, const std::string& reason) {
      findings.Refuse(wanted.line, field, reason);
      wanted.refused = true;
    };
    CheckTexts(fields, wanted, customer, findings);
    const std::size_t name = IndexOf("nombre");
    if (wanted.values[name] ? Trim(*wanted.values[name]).empty() : customer == nullptr)
      refuse("nombre", "falta");
    for (std::size_t i = 1; i < fields.size(); ++i) {
      if (fields[i].kind == FieldKind::Text || !IsNew(wanted, customer, i)) continue;
      const double number = NumberOf(*wanted.values[i]);
      const auto known = known_.find(fields[i].name);
      const double most = fields[i].kind == FieldKind::Number ? 100 : 32767;
      if (number < 0 || number > most) {
        refuse(fields[i].name,
               "se espera un número de 0 a " + std::to_string(static_cast<int>(most)));
      } else if (known != known_.end() && !known->second.contains(*wanted.values[i])) {
        refuse(fields[i].name, "no hay ninguno con ese número");
      }
    }
    if (customer != nullptr) return;
    for (const char* usual : {"forma_pago", "regimen_iva"}) {
      if (!wanted.values[IndexOf(usual)]) wanted.values[IndexOf(usual)] = std::to_string(kGeneral);
    }
    std::optional<std::string>& trade = wanted.values[IndexOf("nombre_comercial")];
    if (!trade && !wanted.refused) trade = Left(*wanted.values[name], MostCharacters(fields[name]));
  }

  static std::int32_t NewId(Connection& connection, const char* statement) {
    return connection.Execute(statement)->Field(0).ToInt32();
  }

  static void Store(Connection& connection, const WantedRecord& wanted, const Customer* customer) {
    const auto fields = CustomerFields();
    std::int32_t id = customer == nullptr ? 0 : customer->id;
    if (customer == nullptr) {
      connection.Execute("INSERT INTO Cli (" + ColumnsOf(fields, kCustomerTable) + ") VALUES (" +
                         ValuesOf(fields, kCustomerTable, wanted) + ")");
      id = NewId(connection, "SELECT MAX(CLI_ID) FROM Cli");
    } else if (const auto changed = Assignments(fields, kCustomerTable, wanted, customer);
               !changed.empty()) {
      connection.Execute("UPDATE Cli SET " + changed + " WHERE CLI_ID = " + std::to_string(id));
    }
    const Customer none{{0, std::vector<std::string>(fields.size())}};
    const std::string address =
        Assignments(fields, kAddressTable, wanted, customer == nullptr ? &none : customer);
    if (address.empty()) return;
    if (customer != nullptr && customer->address != 0) {
      connection.Execute("UPDATE Dir SET " + address +
                         " WHERE DIR_ID = " + std::to_string(customer->address));
      return;
    }
    connection.Execute("INSERT INTO Dir (" + ColumnsOf(fields, kAddressTable) + ") VALUES (" +
                       ValuesOf(fields, kAddressTable, wanted) + ")");
    connection.Execute("INSERT INTO CliDir (CLIDIR_CLI, CLIDIR_DIR) VALUES (" + std::to_string(id) +
                       ", " + std::to_string(NewId(connection, "SELECT MAX(DIR_ID) FROM Dir")) +
                       ")");
  }

  std::map<std::string, std::set<std::string>> known_;
};

}  // namespace

std::unique_ptr<ImportTarget> CustomerImport() { return std::make_unique<CustomersImport>(); }

}  // namespace tpv::office
