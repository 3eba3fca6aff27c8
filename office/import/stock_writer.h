// Writes the units that a warehouse has of articles.
#pragma once

#include <cstdint>

#include "office/import/sql_lists.h"

namespace tpv {
class Connection;
}

namespace tpv::office {

// One for each batch; all within the caller's transaction.
class StockWriter {
 public:
  explicit StockWriter(Connection& connection) : connection_(connection) {}

  // `known`: the store has a row of it, which is changed at once.
  void Set(std::int64_t article, std::int64_t warehouse, double units, bool known);
  // Writes the rows that are new.
  void Flush();

 private:
  Connection& connection_;
  RowList added_{"INSERT INTO Exis (exis_idart, exis_idalma, exis_uni)"};
};

}  // namespace tpv::office
