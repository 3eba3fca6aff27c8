// ZRALBARANES.ZRAlbVentas: headers and lines of sales, numbered per series, with
// the stock that the lines take.
#pragma once

#include "suite/late_bound.h"

namespace tpv {
class Connection;
}

namespace tpv::suite {

class DeliveryNotes : public LateBound {
 public:
  DeliveryNotes();

 private:
  Connection& Database();
  Variant StoreHeader(std::span<Variant> arguments);
  Variant StoreLine(std::span<Variant> arguments);
  Variant DeleteLine(std::span<Variant> arguments);

  std::int32_t InsertHeader(const std::string& date);
  std::int32_t WriteLine(std::int32_t sale, std::int32_t line);
  void TakeStock(std::int32_t line, std::int32_t article, std::int32_t warehouse, double units);
  void GiveStockBack(std::int32_t line);
  void ChangeStock(std::int32_t article, std::int32_t warehouse, double units);
};

}  // namespace tpv::suite
