// The line to the server breaks at every moment of a till's work. A real driver
// manager and driver carry the statements; the breaks are made on purpose.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/server_store.h"
#include "tests/odbc_store.h"

namespace tpv {
namespace {

using odbc::Call;
using odbc::Moment;

// Breaks the line at the first statement that holds a text, and notes all sent.
class Breaker {
 public:
  void BreakAt(std::string fragment, Moment moment, bool for_good = false) {
    fragment_ = std::move(fragment);
    moment_ = moment;
    for_good_ = for_good;
    state_ = "08S01";
  }
  // The line holds, the statement is given up.
  void TimeOutAt(std::string fragment) {
    BreakAt(std::move(fragment), Moment::Before);
    state_ = "HYT00";
  }
  void BreakFetchAfter(int rows) { rows_left_ = rows; }

  odbc::Faults Faults() {
    return [this](Call call, Moment moment, std::string_view sql) { return Ask(call, moment, sql); };
  }
  long Sent(std::string_view fragment) const {
    return std::count_if(sent_.begin(), sent_.end(), [&](const std::string& sql) {
      return sql.find(fragment) != std::string::npos;
    });
  }

 private:
  std::string Ask(Call call, Moment moment, std::string_view sql) {
    if (call == Call::Execute && moment == Moment::Before) sent_.emplace_back(sql);
    if (call == Call::Connect) return down_ ? "08001" : "";
    if (call == Call::Fetch) return rows_left_ > 0 && --rows_left_ == 0 ? "08S01" : "";
    if (fragment_.empty() || moment != moment_ || sql.find(fragment_) == std::string_view::npos) {
      return "";
    }
    down_ = for_good_;
    fragment_.clear();
    return state_;
  }

  std::string fragment_;
  Moment moment_ = Moment::Before;
  bool for_good_ = false;
  std::string state_;
  bool down_ = false;
  int rows_left_ = 0;
  std::vector<std::string> sent_;
};

class OdbcFaults : public testing::Test {
 protected:
  void SetUp() override {
    if (kSqliteDriver == nullptr) GTEST_SKIP() << "no ODBC driver for SQLite here";
    store_ = std::make_unique<OdbcStore>();
    Connect();
  }
  void Connect() {
    OdbcOptions options;
    options.faults = line_.Faults();
    options.look_seconds = 0;
    till_ = store_->Open(options);
  }
  static std::string Insert(int code) {
    return "INSERT INTO Pro (Pro_Cod) VALUES (" + std::to_string(code) + ")";
  }
  // Asked by another till.
  std::int32_t Stored() {
    return store_->Open()->Execute("SELECT COUNT(*) FROM Pro")->Field(0).ToInt32();
  }

  std::unique_ptr<OdbcStore> store_;
  Breaker line_;
  std::unique_ptr<OdbcConnection> till_;
};

TEST_F(OdbcFaults, ASessionLostWhileIdleIsOpenedAgain) {
  till_->Execute(Insert(1));
  line_.BreakAt("SELECT COUNT", Moment::Before);
  EXPECT_EQ(till_->Execute("SELECT COUNT(*) FROM Pro")->Field(0).ToInt32(), 1);
  line_.BreakAt("SELECT 1", Moment::Before);  // what tries the session before a write
  till_->Execute(Insert(2));
  EXPECT_EQ(Stored(), 2);
  line_.BreakAt("BEGIN", Moment::Before);
  Transaction transaction(*till_);
  till_->Execute(Insert(3));
  transaction.Commit();
  EXPECT_EQ(Stored(), 3);
}

TEST_F(OdbcFaults, AWriteWithoutAnswerIsNotSentAgain) {
  line_.BreakAt("INSERT INTO Pro", Moment::After);
  try {
    till_->Execute(Insert(1));
    ADD_FAILURE() << "the loss went unnoticed";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.sqlstate(), "08S01");
    EXPECT_NE(std::string(error.what()).find("perdido la conexión"), std::string::npos);
  }
  EXPECT_EQ(line_.Sent("INSERT INTO Pro"), 1);
  EXPECT_EQ(Stored(), 1);
}

TEST_F(OdbcFaults, ALossInATransactionStoresNothingAndTheNextOneWorks) {
  {
    Transaction transaction(*till_);
    till_->Execute(Insert(1));
    line_.BreakAt("INSERT INTO Pro", Moment::Before);
    EXPECT_THROW(till_->Execute(Insert(2)), DatabaseError);
    EXPECT_TRUE(till_->InTransaction());
    // Sent now, it would be stored on its own.
    EXPECT_THROW(till_->Execute(Insert(3)), DatabaseError);
    EXPECT_THROW(transaction.Commit(), DatabaseError);
  }
  EXPECT_FALSE(till_->InTransaction());
  EXPECT_EQ(Stored(), 0);
  Transaction transaction(*till_);
  till_->Execute(Insert(4));
  transaction.Commit();
  EXPECT_EQ(Stored(), 1);
}

class LostCommit : public OdbcFaults {
 protected:
  // Stores one row through a commit whose call or answer is lost.
  void Sell(Moment lost, bool for_good = false) {
    Transaction transaction(*till_);
    till_->Execute(Insert(1));
    line_.BreakAt("COMMIT", lost, for_good);
    transaction.Commit();
  }
};

TEST_F(LostCommit, IsFoundWhenItHappened) {
  store_->KeepMarks();
  Connect();
  EXPECT_NO_THROW(Sell(Moment::After));
  EXPECT_EQ(Stored(), 1);
  EXPECT_EQ(line_.Sent("COMMIT"), 1);
  // An earlier transaction's mark is no proof for a later one.
  EXPECT_THROW(Sell(Moment::Before), DatabaseError);
  EXPECT_EQ(Stored(), 1);
}

TEST_F(LostCommit, IsFoundThoughTheMarksWereInUseAtTheLogIn) {
  store_->KeepMarks();
  line_.TimeOutAt("TpvSesiones");
  Connect();
  EXPECT_NO_THROW(Sell(Moment::After));
  EXPECT_EQ(Stored(), 1);
}

TEST_F(LostCommit, IsReportedAsNotStoredWhenItDidNotHappen) {
  store_->KeepMarks();
  Connect();
  try {
    Sell(Moment::Before);
    ADD_FAILURE() << "a commit that never arrived passed for done";
  } catch (const CommitUnknown&) {
    ADD_FAILURE() << "the store could be asked";
  } catch (const DatabaseError& error) {
    EXPECT_NE(std::string(error.what()).find("no se ha grabado nada"), std::string::npos);
  }
  EXPECT_FALSE(till_->InTransaction());
  EXPECT_EQ(Stored(), 0);
}

TEST_F(LostCommit, StaysUnknownWhenNobodyCanBeAsked) {
  EXPECT_THROW(Sell(Moment::After), CommitUnknown);  // a store without marks
  EXPECT_EQ(Stored(), 1);
  store_->KeepMarks();
  Connect();
  EXPECT_THROW(Sell(Moment::After, true), CommitUnknown);
  EXPECT_EQ(Stored(), 2);
}

TEST(OdbcLock, SaysWhetherAnotherTillHoldsItOrPerhapsALostSessionOfItsOwn) {
  if (kPretendedServer == nullptr) GTEST_SKIP() << "no ODBC driver for SQLite here";
  const OdbcStore store(kPretendedServer);
  Breaker line;
  OdbcOptions options;
  options.faults = line.Faults();
  const auto other = store.Open();
  const auto till = store.Open(options);
  ASSERT_TRUE(till->IsSqlServer());
  // It passes for the open one, and takes no number that touches a word either.
  EXPECT_EQ(till->Execute("SELECT Pro_Nom FROM Pro WHERE Pro_Cod = 1ORDER BY Pro_Nom")->RecordCount(), 0);
  const auto told = [&] {
    try {
      const Transaction transaction(*till);
      return std::string();
    } catch (const DatabaseError& error) {
      return std::string(error.what());
    }
  };
  other->BeginTrans();
  EXPECT_EQ(told(), "Otra caja está grabando en este momento, o esta misma se cortó mientras grababa y el servidor "
                    "todavía la espera; inténtelo de nuevo dentro de un minuto");
  other->RollbackTrans();
  EXPECT_EQ(told(), "");
  other->BeginTrans();
  EXPECT_EQ(told(), "Otra caja está grabando en este momento; inténtelo de nuevo");
  other->RollbackTrans();
  for (const char* cut : {"INSERT INTO Pro", "IF @@TRANCOUNT"}) {
    {
      const Transaction transaction(*till);
      line.BreakAt(cut, Moment::Before);
      try {
        till->Execute("INSERT INTO Pro (Pro_Cod) VALUES (1)");
      } catch (const DatabaseError&) {
      }
    }
    till->Execute("SELECT 1");  // by a new session
    other->BeginTrans();        // the lost one, as the server sees it
    EXPECT_EQ(told(), "La conexión se cortó mientras esta caja grababa y el servidor todavía la espera; inténtelo de "
                      "nuevo dentro de un minuto") << cut;
    other->RollbackTrans();
    EXPECT_EQ(told(), "");
  }
}

TEST(ServerStore, NamesATableThatItLacksAndThatThisUserCannotMake) {
  if (kPretendedServer == nullptr) GTEST_SKIP() << "no ODBC driver for SQLite here";
  try {
    OpenServerStore(OdbcStore(kPretendedServer).target().connection);
    ADD_FAILURE() << "three tables passed for a store";
  } catch (const DatabaseError& error) {
    EXPECT_TRUE(std::string(error.what()).starts_with("Al almacén le falta la tabla Cav y este usuario")) << error.what();
  }
}

class RowsUnderWay : public OdbcFaults {
 protected:
  static constexpr int kRows = 200;
  void SetUp() override {
    OdbcFaults::SetUp();
    if (IsSkipped()) return;
    Transaction transaction(*till_);
    for (int i = 0; i < kRows; ++i) till_->Execute(Insert(i));
    transaction.Commit();
  }
  std::unique_ptr<Recordset> All() { return till_->Execute("SELECT Pro_Cod FROM Pro ORDER BY Pro_Id"); }
  static int ReadToTheEnd(Recordset& rows) {
    int read = 0;
    for (; !rows.Eof(); rows.MoveNext()) ++read;
    return read;
  }
};

TEST_F(RowsUnderWay, StreamAndAreTakenIntoMemoryWhenAnotherStatementNeedsTheSession) {
  const auto rows = All();
  EXPECT_EQ(rows->RecordCount(), -1);
  EXPECT_EQ(ReadToTheEnd(*rows), kRows);
  EXPECT_EQ(rows->RecordCount(), kRows);
  const auto buffered = All();
  till_->Execute(Insert(kRows));
  EXPECT_EQ(buffered->RecordCount(), kRows);
  EXPECT_EQ(ReadToTheEnd(*buffered), kRows);
  const auto few = till_->Execute("SELECT Pro_Cod FROM Pro WHERE Pro_Cod < 5");
  EXPECT_EQ(few->RecordCount(), 5);  // small results free the server at once
}

TEST_F(RowsUnderWay, ALossShowsToItsReaderBehindTheRowsThatArrived) {
  const auto rows = All();
  line_.BreakFetchAfter(50);
  EXPECT_THROW(ReadToTheEnd(*rows), DatabaseError);
  EXPECT_TRUE(rows->Eof());

  const auto other = All();
  line_.BreakFetchAfter(50);
  till_->Execute(Insert(kRows));  // takes `other` into memory, on a new session
  EXPECT_EQ(Stored(), kRows + 1);
  EXPECT_THROW(ReadToTheEnd(*other), DatabaseError);
}

}  // namespace
}  // namespace tpv
