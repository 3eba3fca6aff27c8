// Old years leave the store for an archive: nothing is lost, owed twice or counted otherwise.
#include "host/archive/archive_order.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

#include "data/statements.h"
#include "fiscal/issuing.h"
#include "host/demo/demonstration.h"
#include "host/fiscal_check.h"
#include "host/store.h"
#include "host/store_check.h"
#include "suite/number_series.h"
#include "tests/fiscal_ground.h"
#include "tests/test_machine.h"
#include "tests/test_till.h"

namespace tpv {
namespace {

using Lines = std::vector<std::string>;

class Archive : public testing::Test {
 protected:
  // Sales from January 2025 on, on credit too.
  void MakeStore(std::uint64_t seed = 1) {
    clock.fixed = DateTime{2026, 11, 24, 10, 30};
    MakeLargeStore(store, {2100, 690, 60, seed}, clock);
  }
  std::unique_ptr<Connection> Open(const std::string& path) { return OpenExistingStore(path, clock, OpenMode::AsItIs); }
  ArchiveOrder Order(int year = 2026) const {
    ArchiveOrder order{store, ArchiveName(store, year), year};
    order.tickets_a_piece = 150;
    return order;
  }
  Lines Rows(const std::string& path, const std::string& sql) {
    Lines lines;
    const auto connection = Open(path);
    const auto rows = connection->Execute(sql);
    for (; !rows->Eof(); rows->MoveNext()) {
      lines.emplace_back();
      for (std::size_t i = 0; i < rows->FieldCount(); ++i) lines.back() += rows->Field(i).ToPlainText() + "|";
    }
    return lines;
  }
  std::string Found(const std::string& path) { return FindingsText(CheckStore(*Open(path))); }
  std::string Refusal(const ArchiveOrder& order) {
    try {
      ArchiveYears(order, clock);
      return "";
    } catch (const DatabaseError& refused) {
      return refused.what();
    }
  }

  TestFolder folder;
  StepClock clock{};
  const std::string store = folder / "tienda.db";
  const std::string archive = folder / "tienda-hasta-2025.db";
};

const std::string kDebts = PendingTickets{true, true, "", "ORDER BY Cav_Id"}.Select();
const std::string kClosures =
    "SELECT DiaCaj_Id, DiaCaj_Caja, DiaCaj_Fecha, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret "
    "FROM DiaCaj WHERE DiaCaj_Tipo IN (0, 9) ORDER BY DiaCaj_Id";
// What is in one place or the other, and in none twice.
const char* const kParted[] = {"SELECT Cav_Id, Cav_Serie, Cav_Numero, Cav_Fecha, Cav_IdCli, Cav_Cobrado FROM Cav",
                               "SELECT Lav_Id, Lav_IdCav, Lav_Des, Lav_Uni, Lav_Importe, Lav_Tiva FROM Lav",
                               "SELECT Tco_IdDiaCaj, Tco_IdCav, Tco_Importe FROM Tco",
                               "SELECT movi_idlav, movi_idart, movi_uni FROM Movi",
                               "SELECT DiaCaj_Id, DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Entrega, DiaCaj_Tarjeta, "
                               "DiaCaj_Devolucion, DiaCaj_IdCierre FROM DiaCaj WHERE DiaCaj_Tipo IN (1, 2, 3)"};

TEST_F(Archive, WhatIsSettledGoesAndEverythingAddsUpAsBefore) {
  for (const std::uint64_t seed : {1u, 2u, 3u}) {
    for (const std::string& file : {store, archive}) std::filesystem::remove(file);
    MakeStore(seed);
    std::map<std::string, Lines> before;
    for (const std::string& sql : {kDebts, kClosures}) before[sql] = Rows(store, sql);
    for (const char* sql : kParted) before[sql] = Rows(store, sql);
    const auto balances = Rows(store, "SELECT exis_idart, exis_uni FROM Exis ORDER BY exis_idart");
    const ArchiveResult result = ArchiveYears(Order(), clock);
    EXPECT_GT(result.removed, 300);
    EXPECT_GT(result.staying, 0);
    EXPECT_LT(result.bytes_after, result.bytes_before);
    EXPECT_EQ(result.not_shrunk, "");
    for (const std::string& sql : {kDebts, kClosures}) EXPECT_EQ(Rows(store, sql), before[sql]);
    for (const char* sql : kParted) {
      Lines both = Rows(store, sql);
      const Lines archived = Rows(archive, sql);
      EXPECT_FALSE(archived.empty()) << sql;
      both.insert(both.end(), archived.begin(), archived.end());
      std::sort(both.begin(), both.end());
      std::sort(before[sql].begin(), before[sql].end());
      EXPECT_EQ(both, before[sql]);
    }
    EXPECT_EQ(Rows(store, "SELECT exis_idart, exis_uni FROM Exis ORDER BY exis_idart"), balances);
    EXPECT_EQ(Found(store), "");
    EXPECT_EQ(Found(archive), "");
    EXPECT_EQ(Rows(archive, "SELECT Cav_Id FROM Cav WHERE Cav_Cobrado = 0 OR Cav_Fecha >= '01/01/2026'"), Lines());
    EXPECT_EQ(ArchiveYears(Order(), clock).removed, 0);
  }
}

TEST_F(Archive, NumbersAreNotGivenAgainWhereNobodyCountedThem) {
  MakeStore();
  {
    const auto connection = OpenExistingStore(store, clock);
    connection->Execute("DELETE FROM Contadores");
    connection->Execute("UPDATE Cav SET Cav_Serie = 'V' WHERE Cav_Id <= 100");
  }
  ArchiveYears(Order(), clock);
  const auto connection = OpenExistingStore(store, clock);
  Transaction transaction(*connection);
  EXPECT_EQ(suite::NextNumber(*connection, "ALBVENTA", "V", "SELECT MAX(Cav_Numero) FROM Cav WHERE Cav_Serie = 'V'"), 101);
}

TEST_F(Archive, KilledAtAnyMomentNothingIsInNeitherPlace) {
  MakeStore();
  const Lines tickets = Rows(store, "SELECT Cav_Id FROM Cav ORDER BY Cav_Id");
  const Lines debts = Rows(store, kDebts);
  int kills = 0;
  for (int pause = 20'000;; pause += pause / 3) {
    const pid_t child = ::fork();
    if (child == 0) {
      try {
        ArchiveYears(Order(), clock);
        ::_exit(0);
      } catch (const std::exception&) {
        ::_exit(1);
      }
    }
    ::usleep(static_cast<useconds_t>(pause));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    Lines held = Rows(store, "SELECT Cav_Id FROM Cav");
    if (std::filesystem::exists(archive)) {
      EXPECT_EQ(Found(archive), "");
      const Lines archived = Rows(archive, "SELECT Cav_Id FROM Cav");
      held.insert(held.end(), archived.begin(), archived.end());
    }
    std::sort(held.begin(), held.end());
    held.erase(std::unique(held.begin(), held.end()), held.end());
    Lines all = tickets;
    std::sort(all.begin(), all.end());
    ASSERT_EQ(held, all) << "after " << pause;
    ASSERT_EQ(Rows(store, kDebts), debts);
    ASSERT_EQ(Found(store), "") << "after " << pause;
    if (WIFEXITED(status)) {
      ASSERT_EQ(WEXITSTATUS(status), 0);
      break;
    }
    ++kills;
  }
  EXPECT_GT(kills, 2);
  EXPECT_EQ(ArchiveYears(Order(), clock).removed, 0);
}

TEST_F(Archive, RefusesWithoutTouchingAnything) {
  MakeStore();
  const Lines tickets = Rows(store, "SELECT Cav_Id FROM Cav");
  EXPECT_NE(Refusal(Order(2027)).find("El año 2026 no ha terminado"), std::string::npos);
  EXPECT_NE(Refusal(Order(12)).find("No hay ventas tan antiguas"), std::string::npos);
  EXPECT_TRUE(ArchiveYears(Order(2020), clock).nothing);
  {
    const auto till = OpenExistingStore(store, clock);
    EXPECT_NE(Refusal(Order()).find("está en uso: cierre antes todas sus cajas"), std::string::npos);
  }
  std::ofstream(archive) << "otra cosa";
  EXPECT_NE(Refusal(Order()).find("Ya existe"), std::string::npos);
  std::filesystem::remove(archive);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  for (const rlim_t size : {4096u, 90'000u}) {
    const rlimit small{size, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string refusal = Refusal(Order());
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_NE(refusal, "") << size;
    EXPECT_FALSE(std::filesystem::exists(archive)) << size;
  }
  EXPECT_EQ(Rows(store, "SELECT Cav_Id FROM Cav"), tickets);
  OpenExistingStore(store, clock)->Execute("INSERT INTO Lav (Lav_IdCav) VALUES (4711)");
  EXPECT_NE(Refusal(Order()).find("así no se archiva"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(archive));
}

// It is opened like a shop, shows everything and takes nothing.
TEST_F(Archive, IsLookedAtAndSellsNothing) {
  MakeStore();
  ArchiveYears(Order(), clock);
  EXPECT_NE(Refusal({archive, folder / "otro.db", 2026}).find("ya es un archivo"), std::string::npos);
  TestTill looking(OpenExistingStore(archive, clock), clock);
  EXPECT_THROW(looking.store().Execute("DELETE FROM Cav"), DatabaseError);
  EXPECT_THROW(looking.store().BeginTrans(), DatabaseError);
  EXPECT_EQ(looking.Play("call zDiario\nenter Text1(5) 01/01/2025\nenter Text1(2) 28/02/2025\nclick cmdInforme\n"
                         "cellbutton DbgDiario 0 2\nmenu mnu01\nexpect documents 1\n"
                         "cellbutton DbgDiario 0 2\nmenu mnu03\nanswer Yes\nanswer Yes\nanswer Yes\nanswer OK \"Error en la eliminación "
                         "de ticketEste almacén es un archivo de años anteriores: se consulta, y no se vende ni se cambia "
                         "nada en él\"\ncellbutton DbgDiario 0 2\nmenu mnu02\nexpect screen frmTpv\nkey Esc\nclose\n"
                         "call zDiarioCaja\nenter Text1(9) 01/01/2025\nenter Text1(5) 28/02/2025\nclick cmdInforme\n"
                         "close\ncall zInfPendienteCobro\nclick cmdInforme\nclose\n"), "");
  TestTill selling(OpenExistingStore(store, clock), clock);
  EXPECT_EQ(selling.Play("set Caja 1\ncall zTpv\nenter Text1(6) 1\nenter Text1(0) 2\nclick cmdApertura\n"
                         "enter Text1(14) 100\nclick cmdGrabar\nanswer Yes\nclick cmdDevoluciones\nenter Text1(9) T\n"
                         "enter Text1(11) 3\nclick cmdBuscar\nanswer OK \"La venta T/3 no está en la tienda: mírela en "
                         "el archivo hasta 2025, «tienda-hasta-2025.db»\"\nclick cmdSalir\nclose\n"
                         "call zDiario\nenter Text1(5) 01/12/2025\nclick cmdInforme\nanswer OK \"Lo saldado hasta "
                         "2025 no sale aquí: está en el archivo «tienda-hasta-2025.db»\"\nclose\n"), "");
}

// Two tickets of 2025 with their records are archived, one is owed, one is of 2026.
TEST_F(Archive, TheChainOfRecordsStaysWholeInBothPlaces) {
  clock.fixed = DateTime{2025, 12, 30, 10, 30};
  {
    const auto connection = OpenStore(store, Contents::Demonstration, clock);
    if (!MakeRecords(*connection)) GTEST_SKIP() << "built without libcrypto";
    const auto digest = MakeDigest();
    const auto value = [&](const char* sql) { return connection->Execute(sql)->Field(0).ToText(); };
    const auto sell = [&](int number, bool paid) {
      connection->Execute("INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Caja, Cav_Agente, Cav_IdCli, Cav_Ticket, Cav_Situa, "
                          "Cav_Cobrado) VALUES ('K', " + std::to_string(number) + ", 1, 1, 2, 1, 1, " + (paid ? "1" : "0") + ")");
      const std::string ticket = value("SELECT MAX(Cav_Id) FROM Cav");
      connection->Execute("INSERT INTO Lav (Lav_IdCav, Lav_Uni, Lav_Importe, Lav_Tiva) VALUES (" + ticket + ", 1, 100, 1)");
      const std::string total = value(("SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = " + ticket).c_str());
      if (paid) {
        connection->Execute("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Cobrado) VALUES "
                            "(1, 1, 1, " + total + ", " + total + ")");
        connection->Execute("INSERT INTO Tco (Tco_IdDiaCaj, Tco_IdCav, Tco_Importe) SELECT MAX(DiaCaj_Id), " + ticket + ", " +
                            total + " FROM DiaCaj");
      }
      Transaction transaction(*connection);
      fiscal::RecordTicket(fiscal::DeskOf(*connection, digest.get()), std::stoi(ticket));
      transaction.Commit();
      clock.Step();
    };
    connection->Execute("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_SaldoIni) VALUES (1, 0, 50)");
    clock.Step();
    sell(1, true);
    sell(2, false);
    sell(3, true);
    clock.Step();
    connection->Execute("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, "
                        "DiaCaj_Ret) SELECT 1, 9, 50, SUM(DiaCaj_Cobrado), 0, 0, 0 FROM DiaCaj WHERE DiaCaj_IdCierre = 0 AND "
                        "DiaCaj_Tipo = 1");
    connection->Execute("UPDATE DiaCaj SET DiaCaj_IdCierre = (SELECT MAX(DiaCaj_Id) FROM DiaCaj) WHERE DiaCaj_IdCierre = 0 AND "
                        "DiaCaj_Tipo = 1");
    clock.fixed = DateTime{2026, 11, 24, 10, 30};
    sell(4, false);
  }
  ArchiveYears(Order(), clock);
  EXPECT_EQ(Rows(store, "SELECT Cav_Numero FROM Cav WHERE Cav_Serie = 'K' ORDER BY Cav_Id"), (Lines{"2|", "4|"}));
  EXPECT_EQ(Rows(archive, "SELECT Cav_Numero FROM Cav WHERE Cav_Serie = 'K' ORDER BY Cav_Id"), (Lines{"1|", "3|"}));
  EXPECT_EQ(CheckFiscal(*Open(store)).records, 4);
  EXPECT_EQ(CheckFiscal(*Open(archive)).records, 3);
  EXPECT_EQ(Found(store), "");
  EXPECT_EQ(Found(archive), "");
  const auto connection = OpenExistingStore(store, clock);
  connection->Execute("DELETE FROM Lav WHERE Lav_IdCav IN (SELECT Cav_Id FROM Cav WHERE Cav_Numero = 4 AND Cav_Serie = 'K')");
  connection->Execute("DELETE FROM Cav WHERE Cav_Numero = 4 AND Cav_Serie = 'K'");
  EXPECT_EQ(FindingsText(CheckStore(*connection)),
            "ROTO  Registros de facturación sin su ticket que no son los de los archivos: 1 (4)\n");
}

}  // namespace
}  // namespace tpv
