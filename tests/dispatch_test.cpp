// ZRTPVE as a host drives it: by name and by dispatch id.
#include "component/dispatch.h"

#include <gtest/gtest.h>

#include "component/zrtpve.h"
#include "tests/test_shop.h"

namespace tpv {
namespace {

class Dispatch : public testing::Test {
 protected:
  Variant Run(std::uint32_t id, InvokeKind kind, std::vector<Variant> arguments = {}) {
    return Invoke(component, id, kind, arguments);
  }
  std::optional<DispatchFault> FaultOf(std::uint32_t id, InvokeKind kind,
                                       std::vector<Variant> arguments = {}) {
    try {
      Run(id, kind, std::move(arguments));
      return std::nullopt;
    } catch (const DispatchError& error) {
      return error.fault();
    }
  }

  TestStore store;
  TestShop shop{store.connection(), store.clock()};
  Zrtpve component{shop.ports};
};

TEST_F(Dispatch, IdsAreTheInterfaces) {
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

TEST_F(Dispatch, PropertiesStartAtNothingAndKeepWhatFits) {
  for (const char* name : {"IdCliente", "Caja", "IdAgente", "IdAlbaran"}) {
    const std::uint32_t id = DispatchId(name);
    EXPECT_EQ(Run(id, InvokeKind::Get).ToInt32(), 0) << name;
    Run(id, InvokeKind::Put, {Variant("-32768")});
    EXPECT_EQ(Run(id, InvokeKind::Get).ToInt32(), -32768) << name;
  }
  EXPECT_EQ(FaultOf(DispatchId("Caja"), InvokeKind::Put, {Variant(32768)}), DispatchFault::BadValue);
  EXPECT_EQ(FaultOf(DispatchId("IdAgente"), InvokeKind::Put, {Variant(2147483648.0)}),
            DispatchFault::BadValue);
  EXPECT_EQ(Run(DispatchId("Caja"), InvokeKind::Get).ToInt32(), -32768);

  EXPECT_TRUE(Run(DispatchId("MyBd"), InvokeKind::Get).IsNull());
  Run(DispatchId("MyBd"), InvokeKind::PutReference, {Variant(std::shared_ptr<Object>(shop.database))});
  EXPECT_EQ(Run(DispatchId("MyBd"), InvokeKind::Get).ToObject(), shop.database);
}

TEST_F(Dispatch, EachMisuseIsItsOwnFault) {
  EXPECT_EQ(FaultOf(0x60030004, InvokeKind::Call), DispatchFault::UnknownId);
  EXPECT_EQ(FaultOf(DispatchId("Caja"), InvokeKind::Call), DispatchFault::WrongKind);
  EXPECT_EQ(FaultOf(DispatchId("zTpv"), InvokeKind::Get), DispatchFault::WrongKind);
  EXPECT_EQ(FaultOf(DispatchId("Caja"), InvokeKind::Put), DispatchFault::WrongCount);
  EXPECT_EQ(FaultOf(DispatchId("fnPendienteCliente"), InvokeKind::Call), DispatchFault::WrongCount);
  EXPECT_EQ(FaultOf(DispatchId("fnPendienteCliente"), InvokeKind::Call, {Variant("x")}),
            DispatchFault::BadValue);
  EXPECT_EQ(FaultOf(DispatchId("MyBd"), InvokeKind::PutReference, {Variant(1)}),
            DispatchFault::BadValue);
  EXPECT_THROW(Run(DispatchId("zTpv"), InvokeKind::Call), ObjectError);  // no database yet
}

TEST_F(Dispatch, TheNewestComponentOfTheThreadIsTheCurrentOne) {
  EXPECT_EQ(Zrtpve::Current(), &component);
  {
    Zrtpve second(shop.ports);
    EXPECT_EQ(Zrtpve::Current(), &second);
  }
  EXPECT_EQ(Zrtpve::Current(), nullptr);
}

}  // namespace
}  // namespace tpv
