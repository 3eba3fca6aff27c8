// What the embedded store keeps between statements is never older than the store:
// the parameters and lists of every sale, and the one state of a snapshot.
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "context/choice_lists.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

class SnapshotTest : public ::testing::Test {
 protected:
  SnapshotTest() : other_(store_.Open()) {
    store_.connection().Execute("INSERT INTO Parametros (Par_Nombre) VALUES ('La Esquina')");
    store_.connection().Execute("INSERT INTO zrcomun.dbo.PAIS (PAIS_COD, PAIS_NOM) VALUES ('011', 'España')");
    store_.connection().Execute("INSERT INTO Pro (Pro_Nom) VALUES ('Ana')");
  }

  std::string Name() { return store_.Value("SELECT TOP 1 Par_Nombre FROM Parametros"); }
  std::string Countries() {
    std::string names;
    for (auto rows = store_.connection().Execute("Select * from ZRCOMUN.dbo.PAIS"); !rows->Eof(); rows->MoveNext()) {
      names += rows->Field("PAIS_NOM").ToText() + " ";
    }
    return names;
  }
  void Rename(Connection& connection, const std::string& name) {
    connection.Execute("UPDATE Parametros SET Par_Nombre = '" + name + "'");
  }

  TestStore store_;
  std::unique_ptr<Connection> other_;
};

TEST_F(SnapshotTest, ListsAreReadAgainWhenAnyoneWroteThem) {
  EXPECT_EQ(Name(), "La Esquina");
  EXPECT_EQ(Name(), "La Esquina");
  Rename(*other_, "El Puerto");
  EXPECT_EQ(Name(), "El Puerto");
  Rename(store_.connection(), "La Plaza");
  EXPECT_EQ(Name(), "La Plaza");
  EXPECT_EQ(Countries(), "España ");
  other_->Execute("INSERT INTO zrcomun.dbo.PAIS (PAIS_COD, PAIS_NOM) VALUES ('012', 'Francia')");
  EXPECT_EQ(Countries(), "España Francia ");
  store_.connection().Execute("DELETE FROM zrcomun.dbo.PAIS WHERE PAIS_COD = '011'");
  EXPECT_EQ(Countries(), "Francia ");
  // Other writing changes nothing, and a tool that knows no till is noticed, even
  // one that takes away what counts the changes.
  const sqlite::Handle tool = sqlite::OpenFile(store_.path());
  for (const char* drop : {"", "DROP TRIGGER tpv_PAIS_UPDATE; ", ""}) {
    const std::string name = *drop == 0 ? "Italia" : "Portugal";
    other_->Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')");
    EXPECT_EQ(Countries(), Countries());
    sqlite::Run(tool.get(), drop + ("UPDATE PAIS SET PAIS_NOM = '" + name) + "'");
    EXPECT_EQ(Countries(), name + " ");
  }
}

TEST_F(SnapshotTest, WhatWasRolledBackIsNotKept) {
  EXPECT_EQ(Name(), "La Esquina");
  other_->Execute("UPDATE Pro SET Pro_Nom = 'Luz'");
  {
    const Transaction undone(store_.connection());
    Rename(store_.connection(), "Nunca");
    EXPECT_EQ(Name(), "Nunca");
  }
  EXPECT_EQ(Name(), "La Esquina");
  Rename(*other_, "El Puerto");  // as many changes as there were before the undoing
  EXPECT_EQ(Name(), "El Puerto");
  store_.connection().Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')");
  EXPECT_EQ(store_.Value("SELECT @@IDENTITY FROM Parametros"), "1");
  store_.connection().Execute("INSERT INTO Age (Age_NOM) VALUES ('Luis')");
  EXPECT_EQ(store_.Value("SELECT @@IDENTITY FROM Parametros"), "2");
  const std::string half = store_.Value("SELECT 2 FROM Parametros");
  EXPECT_EQ(half + store_.Value("SELECT 3 FROM Parametros"), "23");
}

TEST_F(SnapshotTest, OneStateUntilItEndsOrIsWritten) {
  Connection& connection = store_.connection();
  {
    const Snapshot snapshot(connection);
    const Snapshot nested(connection);
    EXPECT_EQ(Name(), "La Esquina");
    Rename(*other_, "El Puerto");
    EXPECT_EQ(Name(), "La Esquina");
    EXPECT_EQ(store_.Value("SELECT COUNT(*) FROM Parametros WHERE Par_Nombre = 'El Puerto'"), "0");
    EXPECT_FALSE(connection.InTransaction());
    EXPECT_THROW(connection.CommitTrans(), DatabaseError);
    const auto rows = connection.Execute("SELECT PAIS_NOM FROM zrcomun.dbo.PAIS WHERE PAIS_COD = '011'");
    {
      Transaction transaction(connection);
      EXPECT_EQ(Name(), "El Puerto");
      Rename(connection, "La Plaza");
      transaction.Commit();
    }
    EXPECT_EQ(rows->Field(0).ToText(), "España");
    EXPECT_EQ(Name(), "La Plaza");
  }
  Rename(*other_, "El Puerto");
  EXPECT_EQ(Name(), "El Puerto");
}

// Two tills that read, write, begin, commit and undo as it comes: what is kept is at
// every moment what a statement reads that nothing keeps.
class TwoTills : public SnapshotTest, public testing::WithParamInterface<unsigned> {
 protected:
  TwoTills() : random_(GetParam()) {}

  unsigned Below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  void Write(Connection& connection) {
    const std::string text = "'" + std::to_string(Below(4)) + "'";
    const char* tables[] = {"Parametros SET Par_Nombre = ", "zrcomun.dbo.PAIS SET PAIS_NOM = ", "Pro SET Pro_Nom = "};
    connection.Execute("UPDATE " + (tables[Below(3)] + text));
  }
  // A transaction or a snapshot begins, or what there is ends.
  void Move(Connection& connection, std::optional<Snapshot>& snapshot) {
    if (connection.InTransaction()) return Below(2) == 0 ? connection.CommitTrans() : connection.RollbackTrans();
    if (Below(3) == 0) return connection.BeginTrans();
    if (snapshot) return snapshot.reset();
    snapshot.emplace(connection);
  }
  std::string Lasting(Connection& connection, const char* sql) {
    return connection.Execute(sql)->Field(0).ToPlainText();
  }
  void Compare(Connection& connection, ChoiceLists& lists, int step) {
    const std::string name = Lasting(connection, "SELECT Par_Nombre FROM Parametros WHERE 1 = 1");
    EXPECT_EQ(Lasting(connection, "SELECT TOP 1 Par_Nombre FROM Parametros"), name) << step;
    const std::string country = Lasting(connection, "SELECT PAIS_NOM FROM zrcomun.dbo.PAIS WHERE 1 = 1");
    EXPECT_EQ(lists.Entries(connection, {"Select * from ZRCOMUN.dbo.PAIS", "PAIS_COD", "PAIS_NOM"})[0],
              "011 - " + country) << step;
  }

 private:
  std::minstd_rand random_;
};

TEST_P(TwoTills, SeeWhatTheStoreHolds) {
  Connection* tills[] = {&store_.connection(), other_.get()};
  std::optional<Snapshot> snapshots[2];
  ChoiceLists lists[2];
  std::unique_ptr<Recordset> half_read[2];
  for (int step = 0; step < 3000 && !HasFailure(); ++step) {
    const unsigned at = Below(2);
    Connection& till = *tills[at];
    const bool held = tills[1 - at]->InTransaction();
    switch (Below(6)) {
      case 0: if (!held) Write(till); break;
      case 1: if (!held) Move(till, snapshots[at]); break;
      case 2: if (held) Move(*tills[1 - at], snapshots[1 - at]); break;
      case 3: half_read[at] = Below(2) == 0 ? nullptr : till.Execute("SELECT PAIS_NOM FROM zrcomun.dbo.PAIS WHERE 1 = 1");
        break;
      default: Compare(till, lists[at], step);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TwoTills, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace tpv
