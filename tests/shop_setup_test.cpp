// A shop of its own begins: checked whole, stored at once, ready to sell.
#include "office/shop_setup.h"

#include <gtest/gtest.h>

#include "adapters/files/private_files.h"
#include "base/rounding.h"
#include "office/price.h"
#include "office/shop_ini.h"
#include "office/tax_number.h"
#include "tests/test_store.h"

namespace tpv::office {
namespace {

std::string Example() { return ReadFile(TPV_TEST_FOLDER "/../examples/shop.ini").value(); }

std::string Lines(const Refusals& refusals) {
  std::string text;
  for (const Refusal& refusal : refusals) text += RefusalText(refusal) + "\n";
  return text;
}

TEST(TaxNumbers, HaveTheirControlCharacter) {
  for (const char* good : {"12345678Z", "12.345.678-z", "X1234567L", "Y1234567X", "K1234567L",
                           "B30123459", "A58818501", "P3003000A", "Q2818002D", "G28029643"}) {
    EXPECT_TRUE(TaxNumber(good)) << good;
  }
  for (const char* bad : {"", "12345678A", "X1234567A", "B30123452", "P30030001", "A5881850A",
                          "I1234567L", "1234567Z", "123456789", "B3012345", "Ñ1234567L"}) {
    EXPECT_FALSE(TaxNumber(bad)) << bad;
  }
  EXPECT_EQ(TaxNumber("b-30.123.459"), "B30123459");
}

TEST(Prices, WithTaxAreRungExactlyWithFourDecimals) {
  for (const Tax& tax : {Tax{1, 21, 0}, Tax{1, 10, 0}, Tax{1, 4, 0}, Tax{1, 0, 0}, Tax{1, 21, 5.2},
                         Tax{1, 10, 1.4}, Tax{1, 4, 0.5}}) {
    for (int cents = 0; cents < 30000; cents += 1 + cents / 300) {
      const double typed = cents / 100.0;
      const auto net = NetThatRings(typed, tax, kNewShopPriceDecimals);
      ASSERT_TRUE(net) << typed << " at " << tax.rate;
      EXPECT_TRUE(SameCents(PriceWithTax(*net, tax), typed)) << typed;
      EXPECT_EQ(RoundHalfAway(*net, kNewShopPriceDecimals), *net);
    }
  }
  EXPECT_FALSE(NetThatRings(1.01, {1, 21, 0}, 2));  // 0.83 rings 1.00, 0.84 1.02
}

TEST(ShopFile, TheExampleIsAShopThatCanSell) {
  const ShopFile file = ReadShopFile(Example());
  ASSERT_EQ(Lines(file.refusals), "");
  TestStore store;
  ASSERT_EQ(Lines(StoreShop(store.connection(), file.setup)), "");
  EXPECT_EQ(
      store.Value("SELECT Par_Nombre + '|' + Par_Doc + '|' + Par_SerTic + '|' + Par_SerTicFac "
                  "FROM Parametros"),
      "Ultramarinos La Esquina|B30123459|T|F");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Parametros"), "1");
  EXPECT_EQ(store.Value("SELECT par_decpre FROM Parametros"), std::to_string(kNewShopPriceDecimals));
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Age"), "2");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Plazos WHERE plazo_por = 50"), "2");
  EXPECT_EQ(store.Value("SELECT CLI_COMER FROM Cli INNER JOIN Parametros ON CLI_COD = Par_CliCon"),
            "CLIENTE CONTADO");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM zrcomun.dbo.PROV"), "52");
  const std::string rate =
      "SELECT TOP 1 cast(Tiva_iva as varchar) + ' ' + cast(Tiva_rec as varchar) FROM "
      "zrcomun.dbo.tivas WHERE tiva_art = 2 AND Tiva_Fecha <= getdate() AND tiva_reg = ";
  EXPECT_EQ(store.Value(rate + "1"), "10 0");
  EXPECT_EQ(store.Value(rate + "2"), "10 1.4");
  EXPECT_EQ(Lines(StoreShop(store.connection(), file.setup)),
            "el almacén ya tiene datos: se dejan como están\n");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Age"), "2");
}

TEST(ShopFile, EveryWrongLineIsNamed) {
  EXPECT_EQ(
      Lines(
          ReadShopFile(
              "nombre = X\n[tienda\r\n[tienda]\nnombre\ncolor = azul\nnombre = A\nnombre = B\n"
              "[iva]\ntipo = 1; 21\ntipo = 1; x; 0; 01/09/2012\n[tickets]\nentrada_rapida = quizá\n"
              "caja = uno\n\xff = 1\n")
              .refusals),
      "Línea 1: está antes de la primera [sección]\n"
      "Línea 2: se espera «[sección]»\n"
      "Línea 4: se espera «clave = valor»\n"
      "Línea 5, tienda.color: clave desconocida\n"
      "Línea 7, tienda.nombre: ya estaba en la línea 6\n"
      "Línea 9, iva.tipo: se espera «tipo; IVA; recargo; desde»: 1; 21; 5,2; 01/09/2012\n"
      "Línea 10, iva.tipo: el tipo, el IVA y el recargo son números\n"
      "Línea 12, tickets.entrada_rapida: se espera si o no\n"
      "Línea 13, tickets.caja: se espera un número entero\n"
      "Línea 14: no es texto UTF-8\n");
  EXPECT_EQ(Lines(ReadShopFile(
                      "[tienda]\nnombre = " + std::string(101, 'x') +
                      "\nnif = B30123452\nvia = Mayor\ncodigo_postal = 3001\n[cajon]\nmetodo = 1\n"
                      "[vendedores]\nvendedor = Ana\nvendedor =\n[tickets]\nserie = LARGAS\n")
                      .refusals),
            "tienda.poblacion: falta\n"
            "cajon.codigos: se esperan números de 0 a 255 separados por comas: 27,112,0,25,250\n"
            "Línea 2, tienda.nombre: caben 100 caracteres\n"
            "Línea 3, tienda.nif: no es un NIF (12345678Z), un NIE (X1234567L) ni un CIF (A12345674): la letra o la "
            "cifra de control no corresponde\n"
            "Línea 5, tienda.codigo_postal: se esperan cinco cifras\n"
            "Línea 10, vendedores.vendedor: falta\n"
            "Línea 12, tickets.serie: caben 5 caracteres\n");
}

TEST(ShopSetup, IsStoredWholeOrNotAtAll) {
  TestStore store;
  ShopSetup setup = ReadShopFile(Example()).setup;
  store.connection().Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')");
  EXPECT_FALSE(StoreShop(store.connection(), setup).empty());
  setup.sellers.clear();
  EXPECT_EQ(Lines(StoreShop(store.connection(), setup)),
            "vendedores.vendedor: falta: hace falta un vendedor al menos\n");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM Cli"), "0");
  EXPECT_FALSE(store.connection().InTransaction());
}

}  // namespace
}  // namespace tpv::office
