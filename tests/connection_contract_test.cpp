// What the component expects of a store's connection, whatever is behind it: the
// embedded store, an ODBC driver, and SQL Server where TPV_TEST_ODBC names one.
#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "base/text.h"
#include "tests/test_store.h"
#ifdef TPV_HAS_ODBC
#include "host/server_store.h"
#include "tests/odbc_store.h"
#endif

namespace tpv {
namespace {

class Engine {
 public:
  virtual ~Engine() = default;
  virtual std::unique_ptr<Connection> Open() = 0;
  virtual bool SpeaksTheDialect() const { return true; }
};

class Embedded : public Engine {
 public:
  std::unique_ptr<Connection> Open() override { return store_.Open(); }

 private:
  TestStore store_;
};

#ifdef TPV_HAS_ODBC
class Driver : public Engine {
 public:
  std::unique_ptr<Connection> Open() override { return store_.Open(); }
  bool SpeaksTheDialect() const override { return false; }

 private:
  OdbcStore store_;
};

class Server : public Engine {
 public:
  Server() {
    const auto connection = Open();
    MakeServerTables(*connection);
    Clean(*connection);
  }
  ~Server() override { Clean(*Open()); }
  std::unique_ptr<Connection> Open() override { return OpenServer(std::getenv("TPV_TEST_ODBC")); }

 private:
  // Only the rows of these tests: the store may be one that somebody looks at.
  static void Clean(Connection& connection) {
    connection.Execute("DELETE FROM Pro WHERE Pro_Cod >= 900000");
    connection.Execute("DELETE FROM DiaCaj WHERE DiaCaj_Caja = 9901");
    connection.Execute("DELETE FROM QCIERRES WHERE QCIERRES_Asunto = 'contrato'");
  }
};
#endif

class ConnectionContract : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (GetParam() == "Embedded") engine_ = std::make_unique<Embedded>();
#ifdef TPV_HAS_ODBC
    if (GetParam() == "OdbcDriver" && kSqliteDriver != nullptr) engine_ = std::make_unique<Driver>();
    if (GetParam() == "SqlServer" && std::getenv("TPV_TEST_ODBC") != nullptr) {
      engine_ = std::make_unique<Server>();
    }
#endif
    if (engine_ == nullptr) {
      GTEST_SKIP() << "no " << GetParam() << " here (SQL Server: set TPV_TEST_ODBC)";
    }
    connection_ = engine_->Open();
  }

  Connection& store() { return *connection_; }
  std::unique_ptr<Recordset> Run(const std::string& sql) { return connection_->Execute(sql); }
  static std::string Plain(Connection& connection, const std::string& sql) {
    const auto rows = connection.Execute(sql);
    return rows->Eof() ? "NONE" : rows->Field(0).ToPlainText();
  }
  std::string Plain(const std::string& sql) { return Plain(*connection_, sql); }
  void InsertSupplier(int code, const std::string& name = "Proveedor") {
    Run("INSERT INTO Pro (Pro_Cod, Pro_Nom) VALUES (" + std::to_string(code) + ", '" + name + "')");
  }
  std::string Suppliers() { return Plain("SELECT COUNT(*) FROM Pro WHERE Pro_Cod >= 900000"); }

  std::unique_ptr<Engine> engine_;
  std::unique_ptr<Connection> connection_;
};

TEST_P(ConnectionContract, ValuesComeBackAsTheyWentIn) {
  Run("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Entrega, DiaCaj_Obs, DiaCaj_SaldoIni, DiaCaj_Fecha) "
      "VALUES (9901, 0.1, 'Peña ''El Niño'' 5 €', 1234567.8912, NULL)");
  const auto row = Run("SELECT * FROM DiaCaj WHERE DiaCaj_Caja = 9901");
  ASSERT_FALSE(row->Eof());
  EXPECT_EQ(row->Field("DIACAJ_caja").ToInt32(), 9901);
  EXPECT_EQ(row->Field("DiaCaj_Entrega"), Variant(0.1));
  EXPECT_EQ(row->Field("DiaCaj_Obs"), Variant("Peña 'El Niño' 5 €"));
  EXPECT_EQ(row->Field("DiaCaj_SaldoIni").ToMoney(), (Money{12345678912}));
  EXPECT_TRUE(row->Field("DiaCaj_Fecha").IsNull());
  EXPECT_EQ(row->FieldName(0), "DiaCaj_Id");
  try {
    row->Field("DiaCaj_Falta");
    ADD_FAILURE() << "an unknown field was read";
  } catch (const DatabaseError& error) {
    EXPECT_NE(std::string(error.what()).find("DiaCaj_Falta"), std::string::npos);
  }
}

TEST_P(ConnectionContract, DatesAreReadDayFirst) {
  if (!engine_->SpeaksTheDialect()) GTEST_SKIP() << "the driver's SQL has no such dates";
  Run("INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Fecha) VALUES (9901, '02/03/2026 23:59:58.500')");
  EXPECT_EQ(Run("SELECT DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Caja = 9901")->Field(0),
            Variant(DateTime{2026, 3, 2, 23, 59, 58, 500}));
  EXPECT_EQ(Plain("SELECT COUNT(*) FROM DiaCaj WHERE DiaCaj_Caja = 9901 AND "
                  "DiaCaj_Fecha < '01/04/2026'"),
            "1");
  EXPECT_EQ(Plain("SELECT 'a' + NULL"), "NULL");
}

TEST_P(ConnectionContract, LongTextComesWhole) {
  std::string text;
  for (int i = 0; i < 20'000; ++i) text += "línea " + std::to_string(i) + "\r\n";
  Run("INSERT INTO QCIERRES (QCIERRES_Asunto, QCIERRES_Texto) VALUES ('contrato', '" + text + "')");
  EXPECT_EQ(Run("SELECT QCIERRES_Texto FROM QCIERRES WHERE QCIERRES_Asunto = 'contrato'")->Field(0),
            Variant(text));
}

TEST_P(ConnectionContract, EndsOfRecordSets) {
  const auto inserted = Run("INSERT INTO Pro (Pro_Cod) VALUES (900001)");
  EXPECT_TRUE(inserted->Eof());
  EXPECT_EQ(inserted->FieldCount(), 0u);
  const auto none = Run("SELECT Pro_Cod FROM Pro WHERE Pro_Cod = 999999");
  EXPECT_TRUE(none->Bof());
  EXPECT_TRUE(none->Eof());
  EXPECT_EQ(none->FieldCount(), 1u);
  EXPECT_THROW(none->Field(0), DatabaseError);
  const auto one = Run("SELECT Pro_Cod FROM Pro WHERE Pro_Cod = 900001");
  EXPECT_FALSE(one->Bof());
  one->MoveNext();
  one->MoveNext();
  EXPECT_TRUE(one->Eof());
  EXPECT_FALSE(one->Bof());
  EXPECT_EQ(one->RecordCount(), 1);
  one->Close();
  one->Close();
}

TEST_P(ConnectionContract, StatementsRunWhileRowsAreBeingRead) {
  constexpr int kRows = 150;  // more than an adapter takes at once
  {
    Transaction transaction(store());
    for (int i = 0; i < kRows; ++i) InsertSupplier(900000 + i);
    transaction.Commit();
  }
  const auto outer = Run("SELECT Pro_Id, Pro_Cod FROM Pro WHERE Pro_Cod >= 900000 ORDER BY Pro_Cod");
  std::set<int> seen;
  for (; !outer->Eof(); outer->MoveNext()) {
    const std::string id = outer->Field("Pro_Id").ToPlainText();
    Run("UPDATE Pro SET Pro_Nom = 'visto' WHERE Pro_Id = " + id);
    EXPECT_EQ(Plain("SELECT Pro_Nom FROM Pro WHERE Pro_Id = " + id), "visto");
    seen.insert(outer->Field("Pro_Cod").ToInt32());
  }
  EXPECT_EQ(seen.size(), std::size_t{kRows});
  EXPECT_EQ(Plain("SELECT COUNT(*) FROM Pro WHERE Pro_Nom = 'visto' AND Pro_Cod >= 900000"),
            std::to_string(kRows));
}

TEST_P(ConnectionContract, RollbackLeavesNothing) {
  InsertSupplier(900001, "antes");
  const auto open = Run("SELECT Pro_Nom FROM Pro WHERE Pro_Cod >= 900000");
  {
    const Transaction transaction(store());
    EXPECT_TRUE(store().InTransaction());
    EXPECT_THROW(store().BeginTrans(), DatabaseError);
    InsertSupplier(900002);
    Run("UPDATE Pro SET Pro_Nom = 'después' WHERE Pro_Cod = 900001");
    EXPECT_EQ(Suppliers(), "2");
  }
  EXPECT_FALSE(store().InTransaction());
  EXPECT_THROW(store().CommitTrans(), DatabaseError);
  EXPECT_THROW(store().RollbackTrans(), DatabaseError);
  EXPECT_TRUE(open->Eof() || open->Field(0) == Variant("antes"));
  EXPECT_EQ(Suppliers(), "1");
}

// An engine may end the whole transaction; then nothing of it may be stored.
TEST_P(ConnectionContract, AFailedStatementChangesNothing) {
  std::string stored = "0";
  {
    Transaction transaction(store());
    InsertSupplier(900001);
    try {
      Run("UPDATE Pro SET Pro_Falta = 1 WHERE Pro_Cod = 900001");
      ADD_FAILURE() << "a statement on an unknown column ran";
    } catch (const DatabaseError& error) {
      EXPECT_FALSE(std::string(error.what()).empty());
      EXPECT_FALSE(error.sqlstate().empty());
    }
    try {
      InsertSupplier(900002);
      transaction.Commit();
      stored = "2";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.sqlstate(), "40000");
      EXPECT_THROW(store().CommitTrans(), DatabaseError);
    }
  }
  EXPECT_FALSE(store().InTransaction());
  EXPECT_EQ(Suppliers(), stored);
}

// Two tills take numbers as the screens do: the highest, plus one.
TEST_P(ConnectionContract, NumbersOfTwoTillsHaveNoDuplicateAndNoGap) {
  if (!engine_->SpeaksTheDialect()) GTEST_SKIP() << "the driver takes no lock at the beginning";
  constexpr int kEach = 25;
  InsertSupplier(900000);
  const auto sell = [this] {
    const auto till = engine_->Open();
    for (int i = 0; i < kEach; ++i) {
      Transaction transaction(*till);
      const std::string highest = Plain(*till, "SELECT MAX(Pro_Cod) FROM Pro");
      till->Execute("INSERT INTO Pro (Pro_Cod) VALUES (" + highest + " + 1)");
      const std::string id = Plain(*till, "SELECT MAX(Pro_Id) FROM Pro");
      EXPECT_EQ(Plain(*till, "SELECT Pro_Cod FROM Pro WHERE Pro_Id = " + id),
                std::to_string(std::stoi(highest) + 1));
      transaction.Commit();
    }
  };
  std::thread other(sell);
  sell();
  other.join();
  EXPECT_EQ(Suppliers(), std::to_string(1 + 2 * kEach));
  EXPECT_EQ(Plain("SELECT MAX(Pro_Cod) FROM Pro"), std::to_string(900000 + 2 * kEach));
}

INSTANTIATE_TEST_SUITE_P(Stores, ConnectionContract,
                         testing::Values("Embedded", "OdbcDriver", "SqlServer"),
                         [](const auto& engine) { return engine.param; });

}  // namespace
}  // namespace tpv
