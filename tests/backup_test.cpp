// Safety copies: whole and checked while tills sell, the last good one stays whatever
// happens, and taking one back loses nothing.
#include "host/backup.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <thread>

#include "adapters/files/gzip.h"
#include "adapters/headless/recorders.h"
#include "host/safety_copies.h"
#include "host/store.h"
#include "host/store_check.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

class Backup : public testing::Test {
 protected:
  Backup() { store.connection().Execute("INSERT INTO Parametros (Par_Nombre) VALUES ('La Esquina')"); }
  BackupPlan Plan(int keep = 3) { return {store.path(), folder / "copias", keep}; }
  std::string Make(int keep = 3) {
    store.clock().now = AddSeconds(store.clock().now, 61);
    return BackupStore(Plan(keep), store.clock()).path;
  }
  void Sell(const char* note) {
    store.connection().Execute("INSERT INTO Cav (Cav_Ref, Cav_Caja, Cav_Ticket) VALUES ('" +
                               std::string(note) + "', 1, 1)");
  }
  // What a copy holds, taken back to a place of its own.
  std::string Notes(const std::string& backup) {
    const std::string place = folder / ("mirar" + std::to_string(++places_) + ".db");
    RestoreStore(backup, place, store.clock());
    return NotesOf(place);
  }
  std::string NotesOf(const std::string& place) {
    SqliteConnection connection(place, store.clock());
    std::string notes;
    const auto rows = connection.Execute("SELECT Cav_Ref FROM Cav ORDER BY Cav_Id");
    for (; !rows->Eof(); rows->MoveNext()) notes += rows->Field(0).ToText();
    return notes;
  }

  TestStore store;
  TestFolder folder;

 private:
  int places_ = 0;
};

TEST_F(Backup, HoldsWhatATillThatIsOpenHasSold) {
  Sell("a");
  const std::string first = Make();
  Sell("b");  // still in the log
  const std::string second = Make();
  EXPECT_EQ(Notes(first), "a");
  EXPECT_EQ(Notes(second), "ab");
  EXPECT_EQ(ModeOf(second), 0600u);
  EXPECT_EQ(LastBackup(Plan()), store.clock().now);
}

TEST_F(Backup, TheNewestStayAndOtherFilesToo) {
  std::filesystem::create_directory(folder / "copias");
  std::ofstream(folder / "copias/otra-20200101-000000.db.gz") << "x";
  std::ofstream(folder / "copias/tienda-vieja.db.gz") << "x";
  std::vector<std::string> made;
  for (int i = 0; i < 5; ++i) made.push_back(Make(2));
  EXPECT_EQ(Backups(Plan()), (std::vector<std::string>{made[4], made[3]}));
  EXPECT_EQ(folder.Files(".gz").size(), 4u);
  EXPECT_TRUE(folder.Files(".parcial").empty());
}

TEST_F(Backup, OfABrokenStoreIsKeptWithAllBeforeIt) {
  for (int i = 0; i < 2; ++i) Make(2);
  store.connection().Execute("INSERT INTO Lav (Lav_IdCav) VALUES (4711)");
  store.clock().now = AddSeconds(store.clock().now, 61);
  EXPECT_NE(BackupStore(Plan(2), store.clock()).findings.find("ROTO"), std::string::npos);
  EXPECT_EQ(Backups(Plan()).size(), 3u);
}

TEST_F(Backup, ADiskThatIsFullLeavesTheLastGoodOne) {
  Sell("a");
  const std::string good = Make(1);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  for (const rlim_t size : {4096u, 60'000u, 200'000u}) {
    const rlimit small{size, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_ANY_THROW(Make(1)) << size;
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(Backups(Plan()), std::vector<std::string>{good});
    EXPECT_TRUE(folder.Files(".parcial").empty()) << size;
  }
  EXPECT_EQ(Notes(good), "a");
}

TEST_F(Backup, ADamagedCopyIsNotTakenBack) {
  Sell("a");
  const std::string good = Make();
  std::string bytes = *ReadFile(good);
  const std::string place = folder / "sitio.db";
  const auto fails = [&](const std::string& damaged) {
    std::ofstream(folder / "mala.gz", std::ios::binary) << damaged;
    EXPECT_ANY_THROW(RestoreStore(folder / "mala.gz", place, store.clock()));
    EXPECT_FALSE(std::filesystem::exists(place));
  };
  fails(bytes.substr(0, bytes.size() / 2));
  fails(bytes.substr(0, bytes.size() - 4));
  fails("no es una copia");
  bytes[bytes.size() / 2] ^= 0x10;
  fails(bytes);
  EXPECT_ANY_THROW(RestoreStore(folder / "nada.gz", place, store.clock()));
}

TEST_F(Backup, WhatWasThereIsPutAside) {
  const std::string place = folder / "sitio.db";
  Sell("a");
  const std::string backup = Make();
  EXPECT_EQ(RestoreStore(backup, place, store.clock()), "");
  { SqliteConnection(place, store.clock()).Execute("INSERT INTO Cav (Cav_Ref) VALUES ('z')"); }
  {
    SqliteConnection till(place, store.clock());
    EXPECT_THROW(RestoreStore(backup, place, store.clock()), DatabaseError);
    EXPECT_EQ(NotesOf(place), "az");
  }
  const std::string aside = RestoreStore(backup, place, store.clock());
  EXPECT_EQ(NotesOf(place), "a");
  EXPECT_EQ(NotesOf(aside), "az");
  std::ofstream(place, std::ios::binary) << "roto";
  const std::string second = RestoreStore(backup, place, store.clock());
  EXPECT_EQ(*ReadFile(second), "roto");
  EXPECT_NE(second, aside);
  EXPECT_EQ(NotesOf(place), "a");
}

TEST_F(Backup, ManyWhileATillSells) {
  store.connection().Execute("INSERT INTO zrcomun.dbo.tivas (Tiva_Id, Tiva_iva) VALUES (1, 21)");
  std::atomic<bool> stop = false;
  std::thread till([&] {
    const auto connection = store.Open();
    for (int i = 0; !stop; ++i) {
      Transaction sale(*connection);
      connection->Execute("INSERT INTO Cav (Cav_Numero, Cav_Caja, Cav_Ticket) VALUES (" +
                          std::to_string(i) + ", 1, 1)");
      connection->Execute("INSERT INTO Lav (Lav_IdCav, Lav_Uni, Lav_Tiva) SELECT MAX(Cav_Id), 1, 1 FROM Cav");
      sale.Commit();
    }
  });
  FixedClock clock;  // the till reads the store's meanwhile
  for (int i = 0; i < 5; ++i) {
    clock.now = AddSeconds(clock.now, 61);
    EXPECT_EQ(BackupStore(Plan(), clock).findings, "");
  }
  stop = true;
  till.join();
}

TEST_F(Backup, AfterAClosingByItselfAndOldOnesAreSaid) {
  MemorySettings settings;
  settings.Write("TPV", "Backup", "Folder", folder / "copias");
  settings.Write("TPV", "Backup", "Keep", "2");
  SafetyCopies copies(settings, store.clock());
  EXPECT_EQ(copies.Said(), "");
  copies.Watch(store.path());
  EXPECT_EQ(copies.Warning(), "ninguna");
  const auto closed = [&] {
    copies.Closed();
    return copies.Failure(true);
  };
  EXPECT_TRUE(Backups(Plan()).empty());
  EXPECT_EQ(closed(), std::nullopt);
  EXPECT_EQ(Backups(Plan()).size(), 1u);
  EXPECT_EQ(copies.Said(), "Última copia de seguridad: 24/11/2026 10:30");
  EXPECT_EQ(copies.Warning(), "");
  store.clock().now = AddDays(store.clock().now, 8);
  EXPECT_EQ(copies.Warning(), "antigua");
  settings.Write("TPV", "Backup", "Folder", "/proc/no");
  EXPECT_TRUE(closed().has_value());
  EXPECT_EQ(copies.Failure(true), std::nullopt);
}

}  // namespace
}  // namespace tpv
