// A store moves to another place: everything arrives exactly, or nothing does.
#include "host/store_copy.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "data/schema.h"
#include "host/store.h"
#include "host/store_commands.h"
#include "tests/test_store.h"

namespace tpv {
namespace {

std::string AllRows(Connection& connection, const schema::Table& table) {
  const std::string prefix = table.home == schema::Home::Catalogue ? "zrcomun.dbo." : "";
  std::multiset<std::string> lines;
  const auto rows = connection.Execute("SELECT * FROM " + prefix + std::string(table.name));
  for (; !rows->Eof(); rows->MoveNext()) {
    std::string line;
    for (std::size_t i = 0; i < rows->FieldCount(); ++i) line += rows->Field(i).ToPlainText() + "|";
    lines.insert(line + "\n");
  }
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

const CopyProgress kQuiet = [](std::string_view, long) {};

class StoreCopy : public testing::Test {
 protected:
  void FillSource() {
    Connection& from = from_.connection();
    Transaction transaction(from);
    FillStore(from, Contents::Demonstration, from_.clock());
    from.Execute("DELETE FROM Cav WHERE Cav_Id < 10");  // numbers do not begin at 1
    from.Execute("INSERT INTO QCIERRES (QCIERRES_Texto, QCIERRES_Enviado) VALUES "
                 "('O''Brien\r\n5 € ñ', '24/11/2026 23:59:59.998')");
    from.Execute("INSERT INTO DiaCaj (DiaCaj_Entrega, DiaCaj_SaldoIni) VALUES "
                 "(0.1 + 0.2, -922337203685.4775)");
    transaction.Commit();
  }

  TestStore from_;
  TestStore to_;
};

TEST_F(StoreCopy, EverythingArrivesExactlyAndTheNumbersGoOn) {
  FillSource();
  to_.connection().Execute("INSERT INTO Parametros (Par_NumCaja) VALUES (NULL)");
  std::map<std::string, long> copied;
  CopyStore(from_.connection(), to_.connection(), Numbers::Plain,
            [&](std::string_view table, long rows) { copied[std::string(table)] = rows; });
  for (const schema::Table& table : schema::Tables()) {
    EXPECT_EQ(AllRows(to_.connection(), table), AllRows(from_.connection(), table)) << table.name;
  }
  EXPECT_EQ(std::to_string(copied["Lav"]), from_.Value("SELECT COUNT(*) FROM Lav"));
  EXPECT_EQ(to_.connection().Execute("SELECT MAX(QCIERRES_Enviado) FROM QCIERRES")->Field(0),
            Variant(DateTime{2026, 11, 24, 23, 59, 59, 998}));
  to_.connection().Execute("INSERT INTO Cav (Cav_Serie) VALUES ('T')");
  EXPECT_EQ(std::stoi(to_.Value("SELECT MAX(Cav_Id) FROM Cav")),
            std::stoi(from_.Value("SELECT MAX(Cav_Id) FROM Cav")) + 1);
  EXPECT_FALSE(from_.connection().InTransaction());
}

TEST_F(StoreCopy, AStoreWithRowsIsLeftAsItIs) {
  FillSource();
  to_.connection().Execute("INSERT INTO zrcomun.dbo.TVI (TVI_COD, TVI_NOM) VALUES ('CL', 'OTRA')");
  EXPECT_THROW(CopyStore(from_.connection(), to_.connection(), Numbers::Plain, kQuiet), DatabaseError);
  EXPECT_EQ(to_.Value("SELECT COUNT(*) FROM Cav"), "0");
  EXPECT_EQ(to_.Value("SELECT TVI_NOM FROM zrcomun.dbo.TVI"), "OTRA");
  EXPECT_FALSE(to_.connection().InTransaction());
}

// A connection that alters what is written, as a server with other types would.
class Altering : public Connection {
 public:
  explicit Altering(Connection& inner) : inner_(inner) {}
  std::unique_ptr<Recordset> Execute(std::string_view sql) override {
    auto rows = inner_.Execute(sql);
    if (sql.starts_with("INSERT INTO Tco")) {
      inner_.Execute("UPDATE Tco SET Tco_Importe = Tco_Importe + 0.01 WHERE Tco_IdCav = 20");
    }
    return rows;
  }
  void BeginTrans() override { inner_.BeginTrans(); }
  void CommitTrans() override { inner_.CommitTrans(); }
  void RollbackTrans() override { inner_.RollbackTrans(); }
  bool InTransaction() const override { return inner_.InTransaction(); }

 private:
  Connection& inner_;
};

TEST_F(StoreCopy, ACopyThatIsACentOffIsNoCopy) {
  FillSource();
  Altering to(to_.connection());
  try {
    CopyStore(from_.connection(), to, Numbers::Plain, kQuiet);
    ADD_FAILURE() << "the copy passed";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(std::string(error.what()), "La copia de Tco no coincide con el original");
  }
  for (const schema::Table& table : schema::Tables()) {
    EXPECT_EQ(AllRows(to_.connection(), table), "") << table.name;
  }
}

TEST_F(StoreCopy, FilesAppearWhenTheyAreComplete) {
  FillSource();
  const std::string target = to_.path() + ".copia.db";
  std::ofstream(target + ".parcial") << "what an interrupted copy left";
  std::ostringstream out;
  EXPECT_EQ(StoreCommand({"copy", from_.path(), target}, out), 0);
  EXPECT_NE(out.str().find("Copiado y comprobado: "), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(target));
  EXPECT_FALSE(std::filesystem::exists(target + ".parcial"));
  EXPECT_THROW(StoreCommand({"copy", from_.path(), target}, out), DatabaseError);
  const auto copy = OpenStore(target, Contents::Empty, from_.clock());
  EXPECT_EQ(AllRows(*copy, *schema::FindTable("Lav")),
            AllRows(from_.connection(), *schema::FindTable("Lav")));
}

}  // namespace
}  // namespace tpv
