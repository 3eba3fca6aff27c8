// The check of a store: it finds what is broken, says which rows, and leaves
// sound stores in peace.
#include <gtest/gtest.h>

#include <fstream>

#include "base/text.h"
#include "host/store.h"
#include "host/store_check.h"
#include "host/store_commands.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

// A paid ticket of two lines, closed and invoiced: nothing to find.
constexpr const char* kSound[] = {
    "INSERT INTO Parametros (Par_NumCaja) VALUES (1)",
    "INSERT INTO zrcomun.dbo.tivas (Tiva_iva) VALUES (21)",
    "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Caja, Cav_Ticket, Cav_Situa, Cav_IdFactura, "
    "Cav_Cobrado) VALUES ('T', 1, 1, 1, 2, 1, 1)",
    "INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_Uni, Lav_Importe, Lav_Tiva) VALUES (1, 7, 1, 10, 1)",
    "INSERT INTO Lav (Lav_IdCav, Lav_Idart, Lav_Uni, Lav_Importe, Lav_Tiva) VALUES (1, 8, 2, 20, 1)",
    "INSERT INTO Movi (movi_idlav, movi_idart, movi_idalma, movi_uni) VALUES (1, 7, 1, 1)",
    "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_SaldoIni) "
    "VALUES ('24/11/2026 09:00', 1, 0, 50)",
    "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Entrega, DiaCaj_Tarjeta, "
    "DiaCaj_Devolucion, DiaCaj_Descuento, DiaCaj_Cobrado, DiaCaj_IdCierre) "
    "VALUES ('24/11/2026 09:30', 1, 1, 40, 0, 4, 0.3, 36, 3)",
    "INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos) "
    "VALUES (1, 9, 36, 0, 0)",
    "INSERT INTO Tco (Tco_IdDiaCaj, Tco_IdCav, Tco_Importe) VALUES (2, 1, 36.3)",
    "INSERT INTO Fav (Fav_Serie, Fav_Numero, Fav_Total) VALUES ('F', 1, 36.3)",
    "INSERT INTO Fal (Fal_IdFav, Fal_Total) VALUES (1, 36.3)",
    "INSERT INTO Vto (Vto_IdFav, Vto_Importe) VALUES (1, 36.3)"};

TEST(StoreCheck, NamesWhatIsBroken) {
  struct Case {
    const char* harm;
    const char* found;
  };
  const Case cases[] = {
      {"DELETE FROM Parametros", "ROTO  Los parámetros de la tienda no son una fila: 1 (0)"},
      {"UPDATE Lav SET Lav_Tiva = 7 WHERE Lav_Id = 2", "ROTO  Líneas cuyo tipo de impuesto no existe: 1 (2)"},
      {"DELETE FROM Cav", "ROTO  Líneas sin cabecera: 2 (1, 2)\n"},
      {"DELETE FROM DiaCaj WHERE DiaCaj_Tipo = 1", "Cobros de tickets sin su apunte de caja: 1 (2)"},
      {"DELETE FROM Tco", "Tickets cobrados sin ningún cobro: 1 (1)"},
      {"DELETE FROM Tco", "Cobros en caja que no son de un solo ticket: 1 (2)"},
      {"DELETE FROM Lav WHERE Lav_Id = 2", "Tickets cobrados cuyos cobros no suman su importe: 1 (1)"},
      {"DELETE FROM Lav WHERE Lav_Id = 2", "Tickets cobrados de más: 1 (1)"},
      {"UPDATE Tco SET Tco_Importe = 36.2",
       "Apuntes cuyos cobros no suman lo cobrado y descontado: 1 (2)"},
      {"UPDATE DiaCaj SET DiaCaj_Devolucion = 5 WHERE DiaCaj_Id = 2",
       "Apuntes cuyo cobro no es lo entregado menos lo devuelto: 1 (2)"},
      {"UPDATE DiaCaj SET DiaCaj_Tipo = 3 WHERE DiaCaj_Id = 2",
       "Apuntes con cobros que no son de cobro: 1 (2)"},
      {"UPDATE Tco SET Tco_IdCav = 9", "Cobros de tickets sin su ticket: 1 (9)"},
      {"UPDATE DiaCaj SET DiaCaj_Caja = 2 WHERE DiaCaj_Id = 2",
       "Apuntes de un cierre que no existe o es de otra caja: 1 (2)"},
      {"UPDATE DiaCaj SET DiaCaj_CobMet = 40 WHERE DiaCaj_Id = 3",
       "Aviso Cierres cuyo efectivo no es el de sus apuntes: 1 (3)"},
      {"UPDATE DiaCaj SET DiaCaj_CobTar = 1 WHERE DiaCaj_Id = 3",
       "Cierres cuyas tarjetas no son las de sus apuntes: 1 (3)"},
      {"UPDATE DiaCaj SET DiaCaj_Pagos = 1 WHERE DiaCaj_Id = 3",
       "ROTO  Cierres cuyos pagos no son los de sus apuntes: 1 (3)"},
      {"UPDATE DiaCaj SET DiaCaj_IdCierre = 0 WHERE DiaCaj_Id = 2",
       "Aviso Apuntes que ningún cierre recogió: 1 (2)"},
      {"UPDATE Cav SET Cav_Caja = NULL", "Tickets sin caja: 1 (1)"},
      {"UPDATE Movi SET movi_uni = 2", "Movimientos de almacén que no son los de su línea: 1 (1)"},
      {"UPDATE Movi SET movi_idlav = 5", "Aviso Movimientos de almacén de líneas eliminadas: 1 (5)"},
      {"UPDATE Fal SET Fal_Total = 36", "Facturas cuyas líneas no suman su total: 1 (1)"},
      {"UPDATE Vto SET Vto_Importe = 36", "Facturas cuyos vencimientos no suman su total: 1 (1)"},
      {"DELETE FROM Fav", "Tickets de una factura que no existe: 1 (1)"},
      {"INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Caja, Cav_Ticket) VALUES ('t ', 1, 2, 1)",
       "Números de ticket repetidos: 1 (2)"},
      {"INSERT INTO Tco (Tco_IdDiaCaj, Tco_IdCav, Tco_Importe) VALUES (2, 1, 0)",
       "Tickets pagados dos veces en caja: 1 (1)"},
      {"UPDATE DiaCaj SET DiaCaj_Caja = 2 WHERE DiaCaj_Tipo = 0", "Aviso Apuntes de una caja sin abrir: 1 (2)"},
      {"UPDATE DiaCaj SET DiaCaj_Caja = 2 WHERE DiaCaj_Tipo = 0",
       "Aviso Cierres de una caja que no estaba abierta: 1 (3)"},
      {"INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo) VALUES (2, 0); INSERT INTO DiaCaj (DiaCaj_Caja, "
       "DiaCaj_Tipo) VALUES (2, 0)", "Aviso Aperturas de una caja que ya estaba abierta: 1 (5)"},
      {"UPDATE DiaCaj SET DiaCaj_Fecha = '24/11/2026' WHERE DiaCaj_Tipo = 9",
       "Aviso Aperturas y cierres fechados antes que lo anterior de su caja: 1 (3)"},
      {"UPDATE DiaCaj SET DiaCaj_Tipo = 9 WHERE DiaCaj_Id = 1",
       "Aviso Cierres de una caja que no estaba abierta: 2 (1, 3)"},
      {"UPDATE DiaCaj SET DiaCaj_Fecha = '01/01/2062' WHERE DiaCaj_Id = 1",
       "Aviso Apuntes fechados después de hoy: 1 (1)"},
      {"UPDATE Cav SET Cav_Fecha = '25/11/2026'", "Aviso Ventas fechadas después de hoy: 1 (1)"},
      // Counted by its own closure and stamped by the next.
      {"INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_CobMet) VALUES (1, 9, 36); "
       "UPDATE DiaCaj SET DiaCaj_IdCierre = 4 WHERE DiaCaj_Id = 2",
       "ROTO  Apuntes que no recogió el cierre siguiente de su caja, sino otro: 1 (2)"},
      {"INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_IdCierre) VALUES (1, 3, 3)",
       "ROTO  Apuntes que no recogió el cierre siguiente de su caja, sino otro: 1 (4)"},
  };
  TestStore store;
  for (const char* statement : kSound) store.connection().Execute(statement);
  EXPECT_EQ(FindingsText(CheckStore(store.connection())), "");
  for (const Case& harm : cases) {
    const Transaction undone(store.connection());
    for (const std::string& statement : Split(harm.harm, "; ")) store.connection().Execute(statement);
    const std::string text = FindingsText(CheckStore(store.connection()));
    EXPECT_NE(text.find(harm.found), std::string::npos) << harm.harm << "\n" << text;
  }
}

// A till whose opening was typed for 2062, and what was sold there since.
TEST(StoreMend, PutsDatesOfDaysToComeWhereTheyBelong) {
  const TestFolder folder;
  const FixedClock clock;
  const std::string path = folder / "tienda.db";
  MakeStore(path, Contents::Demonstration, clock);
  const auto run = [&](const std::vector<std::string>& arguments) {
    std::ostringstream out;
    EXPECT_EQ(StoreCommand(arguments, out), 0) << out.str();
    return out.str();
  };
  const auto ask = [&](const std::string& statement) {
    std::ostringstream out;
    SqlCommand({path, statement}, out);
    return out.str();
  };
  const std::string nothing = run({"mend", path});
  EXPECT_EQ(nothing, "Nada está fechado después de hoy: no hay nada que arreglar\n");
  for (const char* row : {"'01/01/2062', 9, 0", "'01/11/2026 10:00', 9, 1", "'02/01/2062', 9, 3",
                          "'01/11/2026 20:00', 9, 9"}) {
    ask("INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_Tipo) VALUES (" + std::string(row) + ")");
  }
  ask("INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Caja, Cav_Ticket) "
      "VALUES ('T', 9999, '03/01/2062', 9, 1)");
  ask("INSERT INTO Tco (Tco_IdDiaCaj, Tco_IdCav, Tco_Importe) SELECT MIN(DiaCaj_Id), "
      "(SELECT MAX(Cav_Id) FROM Cav), 1 FROM DiaCaj WHERE DiaCaj_Caja = 9 AND DiaCaj_Tipo = 1");
  const std::string dates = "SELECT DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Caja = 9 ORDER BY DiaCaj_Id";
  const std::string before = ask(dates);
  const std::string listed = run({"mend", path});
  EXPECT_EQ(ask(dates), before);
  EXPECT_NE(listed.find("apertura de la caja 9: 01/01/2062 00:00:00 pasa a 01/11/2026 09:59:59\n"),
            std::string::npos) << listed;
  EXPECT_NE(run({"mend", path, "--yes"}).find("Arreglado: 3 fechas"), std::string::npos);
  EXPECT_EQ(ask(dates), "2026-11-01 09:59:59\n2026-11-01 10:00:00\n2026-11-01 19:59:59\n2026-11-01 20:00:00\n");
  EXPECT_EQ(ask("SELECT Cav_Fecha FROM Cav WHERE Cav_Caja = 9"), "2026-11-01 10:00:00\n");
  EXPECT_EQ(run({"mend", path}), nothing);
}

// All that a filled store says of its sales.
std::string Content(const std::string& path) {
  std::ostringstream out;
  for (const char* table : {"Cav", "Lav", "DiaCaj", "Tco", "Fav", "Fal", "Vto", "Movi"}) {
    EXPECT_EQ(SqlCommand({path, std::string("SELECT * FROM ") + table}, out), 0);
  }
  return out.str();
}

TEST(StoreCheck, FilledStoresAreSoundAndTheSameForASeed) {
  const TestFolder folder;
  const auto fill = [&](const char* name, const char* seed) {
    const std::string path = folder / name;
    std::ostringstream out;
    StoreCommand({"fill", path, "--tickets", "900", "--days", "4", "--articles", "300", "--seed", seed}, out);
    EXPECT_EQ(StoreCommand({"check", path}, out), 0) << out.str();
    return Content(path);
  };
  const std::string content = fill("a.db", "7");
  EXPECT_EQ(fill("b.db", "7"), content);
  EXPECT_NE(fill("c.db", "8"), content);
  std::ostringstream open;
  SqlCommand({folder / "a.db", "SELECT COUNT(*) FROM Cav WHERE Cav_Cobrado = 0"}, open);
  EXPECT_NEAR(std::stoi(open.str()), 45, 5);  // a twentieth stays on credit
}

TEST(StoreCheck, ACustomerCodeGivenTwiceIsNamedAndCopied) {
  const TestFolder folder;
  const FixedClock clock;
  const std::string path = folder / "vieja.db";
  MakeStore(path, Contents::Demonstration, clock);
  {
    SqliteConnection store(path, clock);
    store.LetCodesRepeat();  // as it was
    store.Execute("INSERT INTO Cli (CLI_COD, CLI_NOM) VALUES (7, 'El segundo siete')");
  }
  std::ostringstream out;
  EXPECT_EQ(StoreCommand({"copy", path, folder / "copia.db"}, out), 0) << out.str();
  EXPECT_EQ(StoreCommand({"check", folder / "copia.db"}, out), 1);
  EXPECT_NE(out.str().find("Códigos de cliente repetidos (se nombra el código: cambie uno de los dos): 1 (7)"),
            std::string::npos) << out.str();
}

TEST(StoreCheck, LooksAtTheFilesFirst) {
  const TestFolder folder;
  const FixedClock clock;
  const std::string path = folder / "tienda.db";
  MakeStore(path, Contents::Demonstration, clock);
  std::ostringstream out;
  EXPECT_EQ(StoreCommand({"check", path}, out), 0) << out.str();
  {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    // Rows, not the description of the tables, without which nothing opens.
    const auto pages = static_cast<std::streamoff>(std::filesystem::file_size(path) / 4096);
    for (std::streamoff page = pages / 2; page < pages; page += 3) {
      std::string held(4096, '\0');
      file.seekg(page * 4096).read(held.data(), 4096);
      if (held.find("CREATE ") != std::string::npos) continue;
      file.seekp(page * 4096 + 100);
      file << std::string(2000, 'x');
    }
  }
  out.str("");
  EXPECT_EQ(StoreCommand({"check", path}, out), 1);
  EXPECT_TRUE(out.str().starts_with("DAÑADO ")) << out.str();
}

}  // namespace
}  // namespace tpv
