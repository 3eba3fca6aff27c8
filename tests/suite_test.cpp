// The suite's stand-ins as a host drives them: by property and method name.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "tests/test_shop.h"

namespace tpv {
namespace {

std::int32_t SellOne(TestShop& shop, const char* series) {
  auto notes = shop.Create("ZRALBARANES.ZRAlbVentas");
  notes->Put("serie", Variant(series));
  notes->Put("idCli", Variant(1));
  return notes->Invoke("GrabaCabeceraAlbaran", 0, "", "", false).ToInt32();
}

// The error's text, "" when there is none.
template <typename Action>
std::string ErrorOf(Action action) {
  try {
    action();
    return {};
  } catch (const std::exception& error) {
    return error.what();
  }
}

bool Names(const std::string& text, const char* name) { return text.find(name) != std::string::npos; }

TEST(RowBuilder, StoresEveryKindOfValueAsItIs) {
  TestStore store;
  TestShop shop(store.connection(), store.clock());
  RowBuilder& row = shop.database->NuevaSentencia();
  row.Tabla("DiaCaj");
  row.Add("DiaCaj_Caja", ValueKind::Whole, Variant("3"));
  row.Add("DiaCaj_Cobrado", ValueKind::Amount, Variant("12,35"));
  row.Add("DiaCaj_Obs", ValueKind::Text, Variant("Cobro de O'Hara; DROP TABLE DiaCaj --"));
  row.Add("DiaCaj_Fecha", ValueKind::Date, Variant("13/03/2026"));
  row.Add("DiaCaj_IdCierre", ValueKind::Literal, Variant("Null"));
  std::string error;
  ASSERT_TRUE(row.Insert(error)) << error;
  EXPECT_EQ(store.Value("SELECT DiaCaj_Obs FROM DiaCaj WHERE DiaCaj_Caja = 3 AND DiaCaj_Cobrado = "
                        "12.35 AND DiaCaj_Fecha = '13/03/2026' AND DiaCaj_IdCierre IS NULL"),
            "Cobro de O'Hara; DROP TABLE DiaCaj --");

  // By name, as a sibling component does it; an update without a condition is refused.
  Object& by_name = *shop.database;
  const auto columns = by_name.Get("xlsCampos").ToObject();
  for (const char* condition : {"", " WHERE DiaCaj_Caja = 3"}) {
    by_name.Put("Tabla", Variant("DiaCaj"));
    columns->Invoke("add", "DiaCaj_Caja", 1, 4);
    by_name.Put("Where", Variant(condition));
    Variant text[] = {Variant("")};
    EXPECT_EQ(by_name.Call("Update", text).ToBool(), *condition != '\0') << text[0].ToText();
  }
  EXPECT_EQ(store.Value("SELECT DiaCaj_Caja FROM DiaCaj"), "4");
}

TEST(RowBuilder, RefusesWhatDoesNotFitAndStoresNothing) {
  TestStore store;
  TestShop shop(store.connection(), store.clock());
  const std::tuple<const char*, ValueKind, const char*> bad[] = {
      {"DiaCaj_Caja", ValueKind::Whole, "uno"}, {"DiaCaj_Cobrado", ValueKind::Amount, "1e400"},
      {"DiaCaj_Fecha", ValueKind::Date, "31/02/2026"},
      {"DiaCaj_Caja) VALUES (1) --", ValueKind::Whole, "1"}, {"NoExiste", ValueKind::Whole, "1"},
  };
  for (const auto& [column, kind, value] : bad) {
    RowBuilder& row = shop.database->NuevaSentencia();
    row.Tabla("DiaCaj");
    row.Add(column, kind, Variant(value));
    std::string error;
    EXPECT_FALSE(row.Insert(error)) << column;
    EXPECT_NE(error, "") << column;
  }
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM DiaCaj"), "0");
}

TEST(LateBound, SaysWhichMemberIsUnknownOrDoesNotFit) {
  TestStore store;
  TestShop shop(store.connection(), store.clock());
  EXPECT_TRUE(Names(ErrorOf([&] { shop.objects.Create("ZROTRO.Clase"); }), "ZROTRO.Clase"));
  auto notes = shop.Create("zralbaranes.ZRALBVENTAS");
  EXPECT_TRUE(Names(ErrorOf([&] { notes->Put("NoHay", Variant(1)); }), "NoHay"));
  EXPECT_TRUE(Names(ErrorOf([&] { notes->Invoke("NoHay"); }), "NoHay"));
  EXPECT_TRUE(Names(ErrorOf([&] { notes->Invoke("GrabaCabeceraAlbaran", 0); }), "GrabaCabeceraAlbaran"));
  EXPECT_TRUE(Names(ErrorOf([&] { notes->Put("Uni", Variant("dos")); }), "Uni"));
  EXPECT_TRUE(Names(ErrorOf([&] { notes->Put("idCli", Variant("99999999999")); }), "idCli"));
  auto alone = shop.objects.Create("ZRALBARANES.ZRAlbVentas");
  EXPECT_TRUE(Names(ErrorOf([&] { alone->Invoke("borraLineaAlbaran", 1); }), "MyBd"));
  EXPECT_TRUE(Names(ErrorOf([&] { shop.database->Parametro("Par_Otro"); }), "Par_Otro"));
}

TEST(DeliveryNotes, NumberEverySeriesWithoutGapUnderTwoProcesses) {
  constexpr int kSales = 40;
  TestStore store;
  const auto sell = [&] {
    const auto connection = store.Open();
    TestShop shop(*connection, store.clock());
    for (int sale = 0; sale < kSales; ++sale) SellOne(shop, sale % 4 == 3 ? "" : "T");
  };
  const pid_t other = ::fork();
  if (other == 0) {
    sell();
    ::_exit(0);
  }
  sell();
  int status = 0;
  ::waitpid(other, &status, 0);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(store.Value("SELECT COUNT(DISTINCT Cav_Numero) FROM Cav WHERE Cav_Serie = 'T'"), "60");
  EXPECT_EQ(store.Value("SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = 'T'"), "60");
  EXPECT_EQ(store.Value("SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = ''"), "20");
}

}  // namespace
}  // namespace tpv
