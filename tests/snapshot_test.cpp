// What the embedded store keeps between statements is never older than the store:
// the parameters and lists of every sale, and the one state of a snapshot.
#include <gtest/gtest.h>

#include "tests/test_store.h"

namespace tpv {
namespace {

class SnapshotTest : public ::testing::Test {
 protected:
  SnapshotTest() : other_(store_.Open()) {
    store_.connection().Execute("INSERT INTO Parametros (Par_Nombre) VALUES ('La Esquina')");
    store_.connection().Execute("INSERT INTO zrcomun.dbo.PAIS (PAIS_COD, PAIS_NOM) VALUES ('011', 'España')");
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
}

TEST_F(SnapshotTest, WhatWasRolledBackIsNotKept) {
  EXPECT_EQ(Name(), "La Esquina");
  {
    const Transaction undone(store_.connection());
    Rename(store_.connection(), "Nunca");
    EXPECT_EQ(Name(), "Nunca");
  }
  EXPECT_EQ(Name(), "La Esquina");
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

}  // namespace
}  // namespace tpv
