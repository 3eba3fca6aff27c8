#include "office/shop_parameters.h"

#include "platform/database.h"

namespace tpv::office {

ShopParameters ReadShopParameters(Connection& connection) {
  ShopParameters shop;
  const auto row = connection.Execute("SELECT TOP 1 par_decpre, Par_Alma FROM Parametros");
  if (row->Eof()) return shop;
  shop.price_decimals = row->Field(0).IntOr(shop.price_decimals);
  if (!row->Field(1).IsNull()) shop.warehouse = row->Field(1).ToInt32();
  return shop;
}

std::set<int> ReadWarehouses(Connection& connection) {
  std::set<int> warehouses;
  const auto rows = connection.Execute("SELECT alm_id FROM alm");
  for (; !rows->Eof(); rows->MoveNext()) warehouses.insert(rows->Field(0).ToInt32());
  return warehouses;
}

}  // namespace tpv::office
