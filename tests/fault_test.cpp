// Faults of the store in the middle of the till's work: every statement failing
// in turn, a full disk, a store that cannot be written, one that another program
// holds, files that are no store, a clock set back.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <functional>

#include "adapters/files/file_settings.h"
#include "adapters/headless/scenario/headless_operator.h"
#include "base/text.h"
#include "host/recorded_till.h"
#include "host/store.h"
#include "host/store_check.h"
#include "tests/as_nobody.h"
#include "tests/fiscal_ground.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"
#include "tests/torture/older_store.h"

namespace tpv {
namespace {

// Fails one call, counted down from the moment that it is told to.
class FailingOnce : public Connection {
 public:
  explicit FailingOnce(std::unique_ptr<Connection> inner) : inner_(std::move(inner)) {}

  int calls_left = 0;  // 0: nothing fails

  std::unique_ptr<Recordset> Execute(std::string_view sql) override {
    Count();
    return inner_->Execute(sql);
  }
  void BeginTrans() override {
    Count();
    inner_->BeginTrans();
  }
  void CommitTrans() override {
    Count();
    inner_->CommitTrans();
  }
  void RollbackTrans() override { inner_->RollbackTrans(); }
  bool InTransaction() const override { return inner_->InTransaction(); }

 private:
  void Count() {
    if (calls_left > 0 && --calls_left == 0) throw DatabaseError("Fallo provocado");
  }

  std::unique_ptr<Connection> inner_;
};

// Does its steps come what may, agrees to every box, and closes what is open.
class Stubborn : public ui::Driver {
 public:
  explicit Stubborn(ui::Operator& hands) : hands_(hands) {}

  void Begin(const std::string& steps) {
    steps_ = Split(steps, "\n");
    next_ = 0;
  }
  bool Step() override {
    on_step();
    if (hands_.Box() != nullptr) {
      hands_.Answer(hands_.Box()->buttons.front());
    } else if (next_ == steps_.size()) {
      return false;
    } else {
      Do(Split(steps_[next_++], " "));
    }
    return true;
  }
  void OnBox(const ui::MessageBox& box) override { told += box.text + "\n"; }
  std::string told;  // by boxes, and by errors that reach the front end
  std::function<void()> on_fault;  // at the step "fault"
  std::function<void()> on_step;

 private:
  void Do(const std::vector<std::string>& words) {
    try {
      if (words[0] == "fault") return on_fault();
      if (words.size() < 2) return;  // the line break at the end
      if (words[0] == "key") return hands_.Press(words[1] == "Add" ? ui::Key::Add : ui::Key::Enter);
      if (words[0] == "type") return hands_.Type(words[1]);
      if (words[0] == "menu") return hands_.ChooseMenu(words[1]);
      ui::Control* control = hands_.Top()->Find(words[1]);
      if (control == nullptr) return;  // its screen did not open
      if (words[0] == "click") return hands_.Click(*control);
      if (words[0] == "select") return hands_.Select(*control, words[2]);
      if (words[0] == "cellbutton") return hands_.CellButton(*control, 0, 2);
      hands_.Focus(*control);
      hands_.Clear();
      hands_.Type(words[2]);
      hands_.Press(ui::Key::Tab);
    } catch (const ui::ActionRefused&) {
      // The next step may find another screen than it expects.
    } catch (const std::exception& error) {
      told += error.what() + std::string("\n");
    }
  }

  ui::Operator& hands_;
  std::vector<std::string> steps_;
  std::size_t next_ = 0;
};

const std::string kOpen = "enter Text1(6) 1\nenter Text1(0) 1\nclick cmdApertura\n";
const std::string kOpened = kOpen + "enter Text1(14) 100\nclick cmdGrabar\n";
const std::string kSale = kOpened + "enter Text1(2) 22\nkey Add\ntype 0121\nkey Enter\n";
const std::string kClose = "click cmdCierre\nenter Text1(11) 1\nclick cmdProceso\n"
                           "select ListView1 0\nenter Text1(4) 1\nclick Check1\n";
const std::string kPaid = kSale + "click cmdFinalizar\nclick cmdTicket\n";

class Faults : public testing::Test {
 protected:
  Faults() : faults(OpenStore(path, Contents::Demonstration, clock)), till(faults, front_end, clock, 1) {
    till.component->context().Caja = 1;
    Sql("UPDATE Parametros SET Par_Impre = 2, Par_SerTicFac = 'FT', par_tpvemail = NULL");
  }
  void Work(const std::string& steps, int calls = 0, void (Zrtpve::*open)() = &Zrtpve::zTpv) {
    Stubborn stubborn(hands);
    stubborn.on_fault = [&] {
      faults.calls_left = calls;
      stubborn.told.clear();
    };
    stubborn.on_step = [&] { clock.Step(); };
    front_end.SetDriver(stubborn);
    stubborn.Begin(steps);
    ((*till.component).*open)();
    told = stubborn.told;
  }
  // What an earlier script left would be offered before anything else.
  void ParkWhatIsLeft() {
    Sql("UPDATE Cav SET Cav_Caja = 0 WHERE Cav_Id IN (SELECT Vec_IdCav FROM VentasEnCurso)");
    Sql("UPDATE VentasEnCurso SET Vec_Caja = 0");
  }
  std::string Sql(const std::string& statement) {
    const auto rows = faults.Execute(statement);
    return rows->Eof() ? "NONE" : rows->Field(0).ToPlainText();
  }
  void ExpectSound(const std::string& about) {
    faults.calls_left = 0;
    EXPECT_FALSE(faults.InTransaction()) << about;
    const auto findings = CheckStore(faults);
    EXPECT_FALSE(AnyBroken(findings)) << about << "\n" << FindingsText(findings);
  }

  TestFolder folder;
  StepClock clock{DateTime{2026, 11, 25, 10, 30}};  // of the store too
  const std::string path = folder / "tienda.db";
  HeadlessFrontEnd front_end;
  scenario::HeadlessOperator hands{front_end};
  FailingOnce faults;
  RecordedTill till;
  std::string told;  // since the fault
};

TEST_F(Faults, EveryStatementFailingInTurnLeavesAllOrNothing) {
  struct Operation {
    const char* name;
    std::string before;
    std::string steps;
    void (Zrtpve::*screen)() = &Zrtpve::zTpv;
  };
  const std::string today = "enter Text1(5) 25/11/2026\nenter Text1(2) 25/11/2026\nclick cmdInforme\n";
  const Operation operations[] = {
      {"opening", kOpen, "enter Text1(14) 100\nclick cmdGrabar"},
      {"line", kSale, "type 0001\nkey Enter"}, {"cancellation", kSale, "click cmdNueva"},
      {"payment", kSale + "click cmdFinalizar\n", "click cmdTicket"},
      {"closing", kOpened + kClose, "click cmdGrabar"},
      {"invoice", kSale + "click cmdFinalizar\nclick cmdFactura\n", "click cmdFacturar"},
      {"discount", kSale + "click cmdFinalizar\nenter Text1(6) 0\n", "click cmdTicket"},
      {"collection", kSale + "click cmdFinalizar\nenter Text1(6) 0\nclick cmdTicket\nclick cmdPagos\n"
                     "enter Text1(0) 1\nenter Text1(2) 22\nclick Check2\nenter Text1(11) 3\n",
       "click cmdTicket"},
      {"return", kOpened + "click cmdDevoluciones\nenter Text1(2) 22\nclick cmdNueva\nenter Text1(21) -1\n"
                 "enter Text1(19) 0121\n", "click cmdSalir"},
      {"payment out", kOpened + "click cmdPagos\nenter Text1(0) 1\nclick Option1(1)\n"
                      "enter Text1(3) Bolsas\nenter Text1(6) 3\n", "click cmdTicket"},
      {"deletion", today, "cellbutton DbgDiario\nmenu mnu03", &Zrtpve::zDiario},
      {"invoice of a period", today + "click cmdFacturar\n", "click cmdFacturar", &Zrtpve::zFacturacion}};

  MakeRecords(faults);
  Sql("UPDATE Cli SET cli_doc = '22000000J' WHERE CLI_COD = 1");
  constexpr int kMostStatements = 150;
  for (const Operation& operation : operations) {
    int call = 1;
    for (bool reached = true; reached && call < kMostStatements; ++call) {
      const std::string lines = Sql("SELECT COUNT(*) FROM Lav");
      Sql("UPDATE Cav SET Cav_Cobrado = 0 WHERE Cav_IdCli = 22 AND Cav_Id NOT IN "
          "(SELECT Tco_IdCav FROM Tco)");  // what nobody paid is pending
      ParkWhatIsLeft();
      Work(operation.before + "fault\n" + operation.steps, call, operation.screen);
      reached = faults.calls_left == 0;
      ExpectSound(operation.name + (" " + std::to_string(call)));
      EXPECT_TRUE(!reached || !told.empty()) << operation.name << " " << call;
      EXPECT_LE(std::stol(lines), std::stol(Sql("SELECT COUNT(*) FROM Lav")));
    }
    EXPECT_GT(call, 3) << operation.name;
    EXPECT_LT(call, kMostStatements) << operation.name;
  }
}

TEST_F(Faults, ADiskThatIsFullLosesNothingThatWasStored) {
  Work(kPaid);
  const std::string paid = Sql("SELECT COUNT(*) FROM Tco");
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit full{1, usual.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &full);
  Work(kPaid);
  ::setrlimit(RLIMIT_FSIZE, &usual);
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Tco"), paid);
  // A limit of the process; a disk without room is SQLITE_FULL and has its own text.
  EXPECT_NE(told.find("Error de disco en el almacén"), std::string::npos) << told;
  ExpectSound("full disk");
  Work(kPaid);  // there is room again
  EXPECT_EQ(std::stol(Sql("SELECT COUNT(*) FROM Tco")), std::stol(paid) + 1);
}

TEST_F(Faults, AStoreThatAnotherProgramHoldsIsWaitedForAndThenRefused) {
  Work(kOpened);
  const auto other = OpenStore(path, Contents::Empty, clock);
  const Transaction held(*other);
  try {
    faults.Execute("UPDATE Cav SET Cav_Ref = 'x' WHERE Cav_Id = 1");
    FAIL() << "the store was held";
  } catch (const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "El almacén está ocupado por otra caja; inténtelo de nuevo");
  }
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Cav WHERE Cav_Ref = 'x'"), "0");  // reading goes on
}

// Within the day everything is dated behind what the till did before; on a day
// before it nothing is stored until clock or journal are right.
TEST_F(Faults, AClockThatIsSetBackLosesNoPayment) {
  Work(kPaid);
  clock.fixed = AddSeconds(*clock.fixed, -7200);
  const std::string before = Sql("SELECT MAX(DiaCaj_Id) FROM DiaCaj");
  Work(kPaid);
  Work(kOpened + kClose + "click cmdGrabar");
  Work(kPaid);
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM DiaCaj AS late INNER JOIN DiaCaj AS early ON early.DiaCaj_Caja = "
                "late.DiaCaj_Caja AND early.DiaCaj_Id < late.DiaCaj_Id AND early.DiaCaj_Fecha >= "
                "late.DiaCaj_Fecha WHERE late.DiaCaj_Id > " + before), "0");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM DiaCaj WHERE DiaCaj_Id > " + before), "4");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Cav INNER JOIN Tco ON Tco_IdCav = Cav_Id INNER JOIN DiaCaj ON "
                "DiaCaj_Id = Tco_IdDiaCaj WHERE DiaCaj_Id > " + before + " AND Cav_Fecha < "
                "(SELECT DiaCaj_Fecha FROM DiaCaj WHERE DiaCaj_Id = " + before + ")"), "0");
  clock.fixed = AddSeconds(*clock.fixed, -86400);
  const std::string newest = Sql("SELECT MAX(DiaCaj_Id) FROM DiaCaj");
  Work("fault\n" + kPaid);
  EXPECT_NE(told.find("posterior a hoy. Revise la fecha del equipo"), std::string::npos) << told;
  EXPECT_EQ(Sql("SELECT MAX(DiaCaj_Id) FROM DiaCaj"), newest);
  ExpectSound("clock");
}

TEST(SettingsFile, ThatCannotBeReadSaysSoAndIsNotWrittenOver) {
  const TestFolder folder;
  const std::string path = folder / "tpv.conf";
  FileSettings settings(path);
  settings.Write("TPV", "Mail", "Server", "smtp.tienda.es");
  ::chmod(path.c_str(), 0);
  ::chmod((path + ".lock").c_str(), 0666);
  ::chmod(folder.path().c_str(), 0777);
  {
    const AsNobody nobody;
    try {
      settings.Read("TPV", "Mail", "Server");
      ADD_FAILURE() << "was read";
    } catch (const FileError& error) {
      EXPECT_EQ(error.what(), "No se puede leer «" + path + "»: no hay permiso");
    }
    EXPECT_THROW(settings.Write("OKRA", "Printer", "Spool", "Barra"), FileError);
  }
  ::chmod(path.c_str(), 0600);
  EXPECT_EQ(settings.Read("TPV", "Mail", "Server"), "smtp.tienda.es");
}

TEST(StoreFiles, ThatAreNoStoreOrCannotBeWrittenSaySo) {
  const TestFolder folder;
  const FixedClock clock;
  const std::string path = folder / "tienda.db";
  const auto error = [&](const char* statement) -> std::string {
    try {
      SqliteConnection(path, clock).Execute(statement);
    } catch (const DatabaseError& failure) {
      return failure.what();
    }
    return "";
  };
  const std::string read = "SELECT COUNT(*) FROM Cav";
  EXPECT_EQ(error(read.c_str()), "No se puede abrir el almacén «" + path + "»");
  std::ofstream(path) << std::string(9000, 'x');
  EXPECT_EQ(error(read.c_str()), "El fichero no es un almacén válido o está dañado");
  std::ofstream(path, std::ios::trunc).close();
  EXPECT_EQ(error(read.c_str()), "«" + path + "» no es un almacén de la tienda");
  std::filesystem::remove(path);
  CreateStore(path);
  EXPECT_EQ(ModeOf(path), 0600U);
  ::chmod(path.c_str(), 0444);
  ::chmod(folder.path().c_str(), 0555);
  {
    const AsNobody nobody;
    EXPECT_EQ(error("UPDATE Cav SET Cav_Ref = ''"), "El almacén es de solo lectura");
  }
  ::chmod(folder.path().c_str(), 0755);
}

TEST(StoreFiles, OfAnOlderVersionGetWhatTheyLackAndKeepWhatTheyHold) {
  const TestFolder folder;
  const FixedClock clock;
  const std::string path = folder / "tienda.db";
  CreateStore(path);
  SqliteConnection(path, clock).Execute("INSERT INTO Fcol (Fcol_id, Fcol_Mod) VALUES (2, 1)");
  MakeOlder(path);
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(handle, "DROP TABLE Plazos; ALTER TABLE Fcol ADD COLUMN Fcol_Dias INTEGER; "
                                 "ALTER TABLE Fcol ADD COLUMN Fcol_Por REAL; "
                                 "UPDATE Fcol SET Fcol_Dias = 30; PRAGMA user_version = 1; "
                                 "CREATE INDEX ix_Lav_Lav_IdCav ON Lav (Lav_IdCav)", nullptr, nullptr, nullptr),
            SQLITE_OK);
  SqliteConnection store(path, clock);
  EXPECT_EQ(store.Execute("SELECT plazo_dias FROM Plazos WHERE plazo_idfco = 2 AND plazo_modo = 1")
                ->Field(0).ToPlainText(), "30");
  EXPECT_EQ(store.Execute("SELECT * FROM Fcol")->FieldCount(), 2U);
  EXPECT_EQ(store.Execute("SELECT Fcol_Mod FROM Fcol")->Field(0).ToPlainText(), "1");
  EXPECT_EQ(sqlite3_exec(handle, "DROP INDEX ix_Lav_Lav_IdCav", nullptr, nullptr, nullptr), SQLITE_ERROR);
  sqlite3_close(handle);
}

}  // namespace
}  // namespace tpv
