// What a host of ZRTPVE counts on beside tests/interface: ids, and who is current.
#include "component/dispatch.h"

#include <gtest/gtest.h>

#include "component/zrtpve.h"
#include "tests/test_shop.h"

namespace tpv {
namespace {

TEST(Dispatch, IdsAreTheInterfaces) {
  const std::pair<const char*, std::uint32_t> ids[] = {
      {"MyBd", 0x68030000},     {"idalbaran", 0x68030001},      {"IdAgente", 0x68030002},
      {"CAJA", 0x68030003},     {"IdCliente", 0x68030004},      {"zTpv", 0x60030005},
      {"zDiario", 0x60030006},  {"zAperturaCierre", 0x60030007}, {"zMovCaja", 0x60030008},
      {"zFacturacion", 0x60030009}, {"zDiarioCaja", 0x6003000a}, {"zInfPendienteCobro", 0x6003000b},
      {"zFindByName", 0x6003000c}, {"msCancelaVenta", 0x6003000d}, {"Abre_Cajon", 0x6003000e},
      {"Emite_Ticket", 0x6003000f}, {"fnPendienteCliente", 0x60030010}};
  for (const auto& [name, id] : ids) EXPECT_EQ(DispatchId(name), id) << name;
  EXPECT_EQ(Members().size(), std::size(ids));
  EXPECT_THROW(DispatchId("zOtro"), DispatchError);
}

}  // namespace
}  // namespace tpv
