// Builds the INSERT or UPDATE of one row from a table, columns with value kinds
// and a condition.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "context/database_object.h"

namespace tpv::suite {

class StatementBuilder : public RowBuilder {
 public:
  explicit StatementBuilder(Connection& connection) : connection_(connection) {}

  void Start();
  void Tabla(std::string_view table) override { table_ = table; }
  void BeginTrans(bool own_transaction) override { own_transaction_ = own_transaction; }
  void Add(std::string_view column, ValueKind kind, const Variant& value) override;
  void Where(std::string_view condition) override { condition_ = condition; }
  bool Insert(std::string& error) override;
  bool Update(std::string& error) override;

 private:
  struct Field {
    std::string column;
    ValueKind kind;
    Variant value;
  };

  std::string InsertText() const;
  std::string UpdateText() const;
  template <typename Text>
  bool Run(Text text, std::string& error);

  Connection& connection_;
  std::string table_;
  bool own_transaction_ = true;
  std::vector<Field> fields_;
  std::string condition_;
};

}  // namespace tpv::suite
