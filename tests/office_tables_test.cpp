// Articles, customers and stocks come from files and go into files, all or nothing.
#include <gtest/gtest.h>

#include <fstream>
#include <utility>

#include "adapters/csv/csv_files.h"
#include "adapters/files/private_files.h"
#include "base/mask.h"
#include "base/text.h"
#include "host/store.h"
#include "office/export.h"
#include "office/import/file_number.h"
#include "office/import/import.h"
#include "office/shop_ini.h"
#include "platform/pulse.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv::office {
namespace {

class OfficeTables : public testing::Test {
 protected:
  OfficeTables() {
    const ShopFile shop = ReadShopFile(ReadFile(TPV_TEST_FOLDER "/../examples/shop.ini").value());
    EXPECT_TRUE(StoreShop(store.connection(), shop.setup).empty());
  }

  std::string File(const std::string& text) {
    std::ofstream(folder / "in.csv", std::ios::binary) << text;
    return folder / "in.csv";
  }
  // What an import says: counts, then its lines and refusals.
  static std::string Said(const ImportReport& report) {
    std::string text = std::to_string(report.added) + " " + std::to_string(report.changed) + " " +
                       std::to_string(report.same) + " " + std::to_string(report.refused) +
                       (report.stored ? " stored\n" : "\n");
    for (const ImportLine& line : report.lines) {
      if (!line.added) text += std::to_string(line.line) + " " + line.changes + "\n";
    }
    for (const Refusal& refusal : report.refusals) text += RefusalText(refusal) + "\n";
    return text;
  }
  std::string Import(const std::string& text, ImportKind kind = ImportKind::Articles) {
    const ImportOrder order{kind, File(text)};
    const std::string before = All();
    const ImportReport looked = PreviewImport(store.connection(), files, order);
    EXPECT_EQ(All(), before);
    const ImportReport stored = StoreImport(store.connection(), files, order);
    if (looked.refused == 0) {
      EXPECT_EQ(Said(looked).substr(0, Said(looked).find('\n')) + " stored",
                Said(stored).substr(0, Said(stored).find('\n')));
    } else {
      EXPECT_FALSE(stored.stored);
      EXPECT_EQ(All(), before);
    }
    EXPECT_FALSE(store.connection().InTransaction());
    return Said(looked.refused > 0 ? looked : stored);
  }
  std::string Export(ExportKind kind, Connection& from) {
    ExportTable(from, files, {kind, folder / "out.csv", {}, {}});
    return folder.Text("out.csv");
  }
  std::string All() {
    return Export(ExportKind::Articles, store.connection()) +
           Export(ExportKind::Customers, store.connection()) +
           Export(ExportKind::Stock, store.connection());
  }

  // Gives the work up at its n-th pulse.
  struct Impatience : PulseListener {
    explicit Impatience(int pulses) : left(pulses) {}
    void OnPulse(double share) override {
      if (left-- == 1) throw GivenUp();
      if (share < 0) return;
      EXPECT_GE(share, std::exchange(last, share));
    }
    int left;
    double last = 0;
  };

  TestStore store;
  TestFolder folder;
  CsvFiles files;
};

TEST_F(OfficeTables, ArticlesAreAddedChangedAndLeft) {
  EXPECT_EQ(Import("Código;CODIGO_BARRAS;Descripción;precio_con_iva;tipo_iva;existencias\n"
                   "A1;8436210000011;Pan;1,20;3;10\nA2;;\"Vino, tinto\";4,95 €;21 %;\n"),
            "2 0 0 0 stored\n");
  EXPECT_EQ(store.Value("SELECT art_pve FROM ART WHERE ART_Cod = 'A2'"), "4.0909");
  EXPECT_EQ(store.Value("SELECT art_alma FROM ART WHERE ART_Cod = 'A2'"), "1");
  EXPECT_EQ(store.Value("SELECT exis_uni FROM Exis INNER JOIN ART ON art_id = exis_idart"), "10");
  EXPECT_EQ(Import("precio_con_iva,codigo\n1.20,a1\n5.00,A2\n"), "0 1 1 0 stored\n3 precio\n");
  EXPECT_EQ(Import("codigo;existencias;codigo_barras\nA1;7,5;\nA2;-3;A2\n"),
            "0 2 0 0 stored\n2 codigo_barras, existencias\n3 codigo_barras, existencias\n");
  EXPECT_EQ(Import("codigo;existencias;codigo_barras\nA1;7,5;\nA2;-3;A2\n"), "0 0 2 0 stored\n");
}

TEST_F(OfficeTables, EveryFaultIsNamedAndNothingIsStored) {
  Import(
      "codigo;codigo_barras;descripcion;precio;tipo_iva\nA1;8436210000011;Pan;1,20;3\nA2;B2;Vino;2,"
      "00;1\n");
  EXPECT_EQ(Import("codigo;codigo_barras;descripcion;precio_con_iva;tipo_iva;almacen;existencias\n"
                   ";;Pan;1,00;1;1;1\n"
                   "A3;8436210000012;Pan;1,00;1;1;1\n"
                   "A4;A1;Pan;1,00;1;1;1\n"
                   "A5;A5;;1,00;1;1;1\n"
                   "A6;;Pan;;7;1;1\n"
                   "A6;;Pan;1,00;1;9;x\n"
                   "8436210000011;;Pan;1,00;1;1;1\n"
                   "A8;;Pan;-1,00;1;1;999999999\n"
                   "A9;8,43E+12;" +
                   std::string(101, 'x') +
                   ";1,00;1;1;1\n"
                   "A10;;Pan;1,00;1;1;1;de más\n"),
            "0 0 0 10\n"
            "Línea 2, codigo: falta\n"
            "Línea 3, codigo_barras: la última cifra tendría que ser 1: mire si el código está "
            "bien copiado\n"
            "Línea 4, codigo_barras: es el código del artículo A1\n"
            "Línea 5, descripcion: falta\n"
            "Línea 6, precio: falta el precio\n"
            "Línea 6, tipo_iva: no es un tipo vigente; hay 1 (21 %), 2 (10 %), 3 (4 %), 4 (0 %)\n"
            "Línea 7, existencias: «x» no es un número\n"
            "Línea 7: «a6» ya está en la línea 6\n"
            "Línea 8, codigo: es el código de barras del artículo A1\n"
            "Línea 9, precio_con_iva: un precio va de 0 a 99999999\n"
            "Línea 9, existencias: las existencias son demasiado grandes\n"
            "Línea 10, codigo_barras: la hoja de cálculo ha estropeado el código: dé a su columna "
            "formato de texto\n"
            "Línea 10, descripcion: tiene 101 caracteres y caben 100\n"
            "Línea 11: tiene más celdas que la cabecera; puede que a un texto con el separador le "
            "falten las comillas\n");
  EXPECT_EQ(Import("codigo;color\nA1;rojo\n").substr(0, 45),
            "0 0 0 1\nLínea 1, color: columna desconocida;");
  EXPECT_EQ(Import("descripcion\nPan\n"), "0 0 0 1\nLínea 1, codigo: falta la columna\n");
  EXPECT_EQ(Import(""), "0 0 0 1\nel fichero está vacío\n");
  EXPECT_EQ(Import("codigo;descripcion\nA1;\"Pan\n"),
            "0 0 0 1\nLínea 2: faltan las comillas de cierre\n");
  EXPECT_EQ(Import("codigo;precio\nA1;1.234\nA2;2\n").substr(0, 39),
            "0 0 1 1\nLínea 2, precio: «1.234» pue");
  EXPECT_EQ(Import("codigo;precio_con_iva\nA1;1,0051\n"),
            "0 0 0 1\nLínea 2, precio_con_iva: un precio con IVA tiene dos decimales\n");
}

TEST_F(OfficeTables, APriceThatTheDecimalsCannotRingIsRefused) {
  store.connection().Execute("UPDATE Parametros SET par_decpre = 2");
  EXPECT_EQ(Import("codigo;descripcion;precio_con_iva;tipo_iva\nA1;Pan;1,01;1\n"),
            "0 0 0 1\nLínea 2, precio_con_iva: con 2 decimales de precio no se puede cobrar "
            "exactamente; hacen falta 4\n");
}

TEST_F(OfficeTables, CustomersAndStocks) {
  Import("codigo;descripcion;precio;tipo_iva\nA1;Pan;1,20;3\n");
  EXPECT_EQ(Import("codigo;nombre;nif;via;numero;forma_pago;vendedor\n7;Ana;12345678Z;Mayor;3;2;"
                   "1\n008;Luis;;;;;\n",
                   ImportKind::Customers),
            "2 0 0 0 stored\n");
  EXPECT_EQ(
      store.Value(
          "SELECT DIR_NOMBRE FROM Dir INNER JOIN CliDir ON CLIDIR_DIR = DIR_ID INNER JOIN Cli ON "
          "CLI_ID = CLIDIR_CLI WHERE CLI_COD = 7"),
      "Mayor");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM CliDir"), "1");
  EXPECT_EQ(Import("codigo;via;apellido1\n7;Menor;Ruiz\n8;Ancha;\n", ImportKind::Customers),
            "0 2 0 0 stored\n2 apellido1, via\n3 via\n");
  EXPECT_EQ(
      Import("codigo;nombre;forma_pago;descuento1\n7;;9;101\n07;Eva;;\nx;Eva;;\n9;;;\n",
             ImportKind::Customers),
      "0 0 0 4\nLínea 2, nombre: falta\nLínea 2, forma_pago: no hay ninguno con ese número\n"
      "Línea 2, descuento1: se espera un número de 0 a 100\nLínea 3, codigo: ya está en la línea "
      "2\n"
      "Línea 4, codigo: «x» no es un número\nLínea 4, codigo: se espera un número de 1 a 999999\n"
      "Línea 5, nombre: falta\n");
  EXPECT_EQ(Import("codigo;existencias\nA1;5\n", ImportKind::Stock), "1 0 0 0 stored\n");
  EXPECT_EQ(Import("codigo;existencias;almacen\nA1;6;1\nA1;7;\nA9;1;1\nA1;;3\n", ImportKind::Stock),
            "0 1 0 3\n2 existencias\nLínea 3, codigo: ya está en la línea 2\n"
            "Línea 4, codigo: no hay ningún artículo con ese código\n"
            "Línea 5, almacen: no hay ningún almacén con ese número\n");
}

TEST_F(OfficeTables, WhatWasExportedComesBackWithoutADifference) {
  TestStore demo;
  Transaction filling(demo.connection());
  FillStore(demo.connection(), Contents::Demonstration, demo.clock());
  demo.connection().Execute(
      "UPDATE ART SET art_pve = 0.1 + 0.2, art_des = 'Con \"comillas\"; y\r\nlínea' WHERE art_id = "
      "3");
  demo.connection().Execute("UPDATE ART SET art_pve = 1.234, art_des = '=1+1;\t\"@€ŸŒ –' WHERE art_id = 4");
  demo.connection().Execute(
      "UPDATE Cli SET CLI_OBSER = '-2+3, \"\"\n\r\n''fin''', CLI_COMER = '@SUM(A1)' WHERE CLI_ID = 3");
  demo.connection().Execute("UPDATE Exis SET exis_uni = -1.125 WHERE exis_idart = 5");
  filling.Commit();
  store.connection().Execute("INSERT INTO BANCOS (Ban_CCC) VALUES ('1')");
  for (const auto& [out, in] : {std::pair{ExportKind::Articles, ImportKind::Articles},
                                {ExportKind::Customers, ImportKind::Customers},
                                {ExportKind::Stock, ImportKind::Stock}}) {
    const std::string exported = Export(out, demo.connection());
    const ImportOrder order{in, File(exported)};
    const ImportReport same = StoreImport(demo.connection(), files, order);
    EXPECT_EQ(same.added + same.changed + same.refused, 0) << Said(same);
    const ImportReport report = StoreImport(store.connection(), files, order);
    EXPECT_TRUE(report.stored) << Said(report);
    EXPECT_EQ(Export(out, store.connection()), exported);
  }
}

TEST_F(OfficeTables, BatchesSeeEachOtherAndStopTogether) {
  std::string text = "codigo;descripcion;precio;tipo_iva;existencias\n";
  for (int i = 1; i <= 1000; ++i) text += FormatNumber(i, "00000") + ";Artículo;1,50;1;2\n";
  EXPECT_EQ(Import(text + "00001;otra vez;1,00;1;1\n").substr(0, 60),
            "1000 0 0 1\nLínea 1002: «00001» ya está en la línea 2\n");
  const ImportOrder order{ImportKind::Articles, File(text)};
  const std::string before = All();
  int pulses = 1;
  for (bool given_up = true; given_up; pulses *= 2) {
    const Impatience impatience(pulses);
    try {
      given_up = !StoreImport(store.connection(), files, order).stored;
      EXPECT_DOUBLE_EQ(impatience.last, 1);
    } catch (const GivenUp&) {
      EXPECT_EQ(All(), before);
      EXPECT_FALSE(store.connection().InTransaction());
      store.Open()->Execute("UPDATE Parametros SET Par_NumCaja = 1");  // another till can write
    }
  }
  EXPECT_GT(pulses, 16);
  EXPECT_EQ(store.Value("SELECT SUM(exis_uni) FROM Exis"), "2000");
}

TEST_F(OfficeTables, AnotherTillsArticleSinceThePreviewIsRefused) {
  const ImportOrder order{
      ImportKind::Articles,
      File("codigo;descripcion;precio;tipo_iva\nA1;Pan;1,00;1\nA2;Pan;1,00;1\n")};
  EXPECT_EQ(PreviewImport(store.connection(), files, order).added, 2);
  store.Open()->Execute("INSERT INTO ART (ART_Cod, ART_BARCODE) VALUES ('A9', 'A2')");
  EXPECT_EQ(StoreImport(store.connection(), files, order).refused, 1);
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM ART"), "1");
}

TEST_F(OfficeTables, SalesGoOutByDay) {
  TestStore demo;
  Transaction filling(demo.connection());
  FillStore(demo.connection(), Contents::Demonstration, demo.clock());
  filling.Commit();
  const DateTime day{2026, 11, 20};
  for (const auto& [kind, count] :
       {std::pair{ExportKind::Tickets, "FROM Cav WHERE Cav_Fecha"},
        {ExportKind::Lines, "FROM Lav INNER JOIN Cav ON Cav_Id = Lav_IdCav WHERE Cav_Fecha"},
        {ExportKind::Payments, "FROM DiaCaj WHERE DiaCaj_Tipo IN (1, 2, 3) AND DiaCaj_Fecha"},
        {ExportKind::Closures, "FROM DiaCaj WHERE DiaCaj_Tipo = 9 AND DiaCaj_Fecha"}}) {
    const long rows = ExportTable(demo.connection(), files, {kind, folder / "day.csv", day, day});
    EXPECT_GT(rows, 0);
    EXPECT_EQ(std::to_string(rows), demo.Value("SELECT COUNT(*) " + std::string(count) +
                                               " between '20/11/2026' AND '20/11/2026 23:59:59'"));
  }
}

TEST(FileNumbers, AreReadWhateverTheirCountry) {
  const auto read = [](const std::vector<std::string>& learnt, const std::string& text) {
    DecimalMark mark;
    for (const std::string& one : learnt) mark.Learn(one);
    std::string reason;
    const auto number = mark.Read(text, reason);
    return number ? FormatNumber(*number, "0.0000") : std::string("?");
  };
  EXPECT_EQ(read({}, "1.234,50"), "1234,5000");
  EXPECT_EQ(read({}, "1,234.50 €"), "1234,5000");
  EXPECT_EQ(read({}, "-12,5"), "-12,5000");
  EXPECT_EQ(read({}, "0.250"), "0,2500");
  EXPECT_EQ(read({}, "1.234.567"), "1234567,0000");
  EXPECT_EQ(read({}, "1.234"), "?");
  EXPECT_EQ(read({"2,50"}, "1.234"), "1234,0000");
  EXPECT_EQ(read({"2,50"}, "1,234"), "1,2340");
  EXPECT_EQ(read({"2.50"}, "1.234"), "1,2340");
  EXPECT_EQ(read({"2.50", "2,50"}, "1.234"), "?");
  for (const char* wrong :
       {"", "x", "1,2,3", "1.23.4", "--1", "1e5", "€", ",", "1.234,5.6", "2000000000"}) {
    EXPECT_EQ(read({}, wrong), "?") << wrong;
  }
}

}  // namespace
}  // namespace tpv::office
