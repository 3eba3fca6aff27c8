// The files of an embedded store: what a killed till, a full disk, an older program
// or a planted file leaves, and what is made of it.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>

#include "host/store.h"
#include "host/store_commands.h"
#include "tests/as_nobody.h"
#include "tests/test_machine.h"
#include "tests/test_store.h"
#include "tests/torture/older_store.h"

namespace tpv {
namespace {

namespace fs = std::filesystem;

class StoreFile : public testing::Test {
 protected:
  // "" when it is done, else what the operator reads.
  static std::string ErrorOf(const std::function<void()>& work) {
    try {
      work();
      return "";
    } catch (const DatabaseError& error) {
      return error.what();
    }
  }
  std::string Value(const std::string& sql) {
    return SqliteConnection(path, clock).Execute(sql)->Field(0).ToPlainText();
  }
  // Where no file gets larger than 300 kB.
  static std::string OnSmallDisk(const std::function<void()>& work) {
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit small{300'000, usual.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    std::string error = ErrorOf(work);
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, before);
    return error;
  }
  // A till that is killed when it has done the work.
  void KilledAfter(const std::function<void(SqliteConnection&)>& work) {
    const pid_t till = ::fork();
    if (till == 0) {
      SqliteConnection connection(path, clock);
      work(connection);
      ::kill(::getpid(), SIGKILL);
    }
    ::waitpid(till, nullptr, 0);
  }
  std::string Check(const std::string& file) {
    std::ostringstream out;
    StoreCommand({"check", file}, out);
    return out.str();
  }
  // By another program than ours, on a store that may be open.
  void Directly(const std::string& sql) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    sqlite3_close(handle);
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.path())) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  TestFolder folder;
  FixedClock clock;
  const std::string path = folder / "tienda.db";
};

TEST_F(StoreFile, OfAKilledTillIsWholeAgainWhenItIsOpenedAndACopyWithoutItsLogIsNamed) {
  MakeStore(path, Contents::Demonstration, clock);
  KilledAfter([](Connection& till) { till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')"); });
  const std::string copy = folder / "copia.db";
  fs::copy_file(path, copy);
  for (int look = 0; look < 2; ++look) {
    EXPECT_NE(Check(copy).find("DAÑADO Falta «" + copy + "-wal»"), std::string::npos);
  }
  SqliteConnection(path, clock).Execute("SELECT 1");
  EXPECT_EQ(Names(), (std::vector<std::string>{"copia.db", "tienda.db"}));
  fs::copy_file(path, copy, fs::copy_options::overwrite_existing);
  EXPECT_EQ(SqliteConnection(copy, clock, OpenMode::AsItIs).Execute("SELECT MAX(Age_NOM) FROM Age WHERE "
            "Age_NOM = 'Ana'")->Field(0).ToText(), "Ana");
  // Opened, it has a log again; what was missing stays known.
  {
    SqliteConnection till(path, clock);
    till.Execute("UPDATE Age SET Age_NOM = 'Eva' WHERE Age_NOM = 'Ana'");
    fs::copy_file(path, copy, fs::copy_options::overwrite_existing);
  }
  SqliteConnection(copy, clock).Execute("SELECT 1");
  const std::string noted = "El 24/11/2026 10:30:00 se abrió sin «" + copy + "-wal»";
  EXPECT_NE(Check(copy).find("Aviso " + noted), std::string::npos);
  EXPECT_NE(Check(copy).find("está bien"), std::string::npos);
  for (const auto& order : {std::vector<std::string>{"sql", copy, "SELECT 1"}, {"copy", copy, folder / "otra.db"}}) {
    std::ostringstream out;
    testing::internal::CaptureStderr();
    order[0] == "sql" ? SqlCommand({order.begin() + 1, order.end()}, out) : StoreCommand(order, out);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Aviso " + noted), std::string::npos) << order[0];
  }
  // While one till works another one leaves; the log goes with the last.
  {
    SqliteConnection stays(path, clock);
    SqliteConnection(path, clock).Execute("INSERT INTO Age (Age_NOM) VALUES ('Luis')");
    EXPECT_TRUE(fs::exists(path + "-wal"));
    EXPECT_NE(Check(path).find("está bien"), std::string::npos);
  }
  EXPECT_FALSE(fs::exists(path + "-wal"));
}

TEST_F(StoreFile, ThatOneMayNotWriteIsReadAndCheckedAndNothingIsLaidBesideIt) {
  MakeStore(path, Contents::Demonstration, clock);
  const auto lock = [&](mode_t of_folder) {
    for (const auto& entry : fs::directory_iterator(folder.path())) ::chmod(entry.path().c_str(), 0444);
    ::chmod(folder.path().c_str(), of_folder);
  };
  const auto look = [&](const std::string& sql) {
    std::ostringstream out;
    const AsNobody nobody;
    const std::string error = ErrorOf([&] { SqlCommand({path, sql}, out); });
    return error.empty() ? out.str() : error;
  };
  const auto check = [&] {
    const AsNobody nobody;
    return Check(path);
  };
  const char* newest = "SELECT TOP 1 Age_NOM FROM Age ORDER BY Age_ID DESC";
  const char* write = "INSERT INTO Age (Age_NOM) VALUES ('Luz')";
  const char* refused = "El almacén es de solo lectura";
  const auto looks_like = [&](const char* agent, const char* finding) {
    for (const mode_t of_folder : {0555, 0777}) {
      lock(of_folder);
      const auto before = Names();
      EXPECT_EQ(look(newest), std::string(agent) + "\n");
      EXPECT_EQ(look(write), refused);
      EXPECT_NE(check().find(finding), std::string::npos) << finding;
      EXPECT_EQ(Names(), before);
    }
  };
  lock(0777);
  std::string last = look(newest);
  last.pop_back();
  looks_like(last.c_str(), "El almacén está bien");
  ::chmod(path.c_str(), 0644);
  KilledAfter([](Connection& till) { till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')"); });
  looks_like("Ana", "El almacén está bien");
  fs::remove(path + "-shm");
  looks_like("Ana", "El almacén está bien");
  fs::remove(path + "-wal");
  looks_like(last.c_str(), "DAÑADO Falta");
}

TEST_F(StoreFile, OpenedCheckpointsWhatAKilledTillLeftThoughOthersWork) {
  CreateStore(path);
  SqliteConnection other(path, clock);
  KilledAfter([](Connection& till) { till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')"); });
  const SqliteConnection next(path, clock);
  const std::string copy = folder / "copia.db";
  fs::copy_file(path, copy);
  EXPECT_EQ(SqliteConnection(copy, clock).Execute("SELECT COUNT(*) FROM Age")->Field(0).ToPlainText(), "1");
}

TEST_F(StoreFile, IsMadeWholeOrNotAtAll) {
  EXPECT_NE(OnSmallDisk([&] { MakeStore(path, Contents::Demonstration, clock); }), "");
  EXPECT_TRUE(Names().empty());

  std::ofstream(NewStore::PartialPath(path)) << "what a killed program left";
  std::ofstream(NewStore::PartialPath(path) + "-wal") << "and its log";
  MakeStore(path, Contents::Empty, clock);
  EXPECT_EQ(Names(), std::vector<std::string>{"tienda.db"});
  EXPECT_EQ(ErrorOf([&] { CreateStore(path); }), "Ya existe «" + path + "»");

  // Two tills at once on a new shop's store: one makes it.
  fs::remove(path);
  const pid_t other = ::fork();
  if (other == 0) {
    OpenStore(path, Contents::Demonstration, clock);
    ::_exit(0);
  }
  const auto store = OpenStore(path, Contents::Demonstration, clock);
  int status = 1;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(store->Execute("SELECT COUNT(*) FROM Parametros")->Field(0).ToPlainText(), "1");
}

TEST_F(StoreFile, DoesNotBeginWithWhatOthersPlanted) {
  for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
    fs::create_symlink(folder / "lejos", path + ending);
    EXPECT_EQ(ErrorOf([&] { OpenStore(path, Contents::Empty, clock); }), "Ya existe «" + path + ending + "»");
    fs::remove(path + ending);
  }
  EXPECT_TRUE(Names().empty());
}

TEST_F(StoreFile, OfAnOlderVersionTakesItsCatalogueInAndKeepsACopy) {
  MakeStore(path, Contents::Demonstration, clock);
  const std::string rates = Value("SELECT COUNT(*) FROM zrcomun.dbo.tivas");
  const std::string lines = Value("SELECT COUNT(*) FROM Lav INNER JOIN zrcomun.dbo.tivas ON Tiva_Id = Lav_Tiva");
  MakeOlder(path);
  EXPECT_EQ(ErrorOf([&] { Check(path); }), "«" + path + "» es un almacén de la versión 3 y hace falta la " +
            std::to_string(sqlite::kVersion) + ": ábralo con la caja, que lo pone al día");
  const std::vector<std::string> two_files = {"tienda.db", "tienda.zrcomun.db"};
  const std::vector<std::string> moved = {"tienda.db", "tienda.version3.db", "tienda.version3.zrcomun.db"};
  EXPECT_EQ(Names(), two_files);
  EXPECT_NE(OnSmallDisk([&] { SqliteConnection(path, clock); }), "");
  EXPECT_TRUE(folder.Files("version3.db").empty() && folder.Files(".parcial").empty());
  // An upgrade that was killed while it copied, and one that had its copy.
  std::ofstream(folder / "tienda.version3.db.parcial") << "half";
  std::ofstream(folder / "tienda.version3.db") << "the copy of an upgrade that was not completed";
  EXPECT_EQ(Value("SELECT COUNT(*) FROM zrcomun.dbo.tivas"), rates);
  EXPECT_EQ(Names(), moved);
  EXPECT_EQ(Value("SELECT COUNT(*) FROM Lav INNER JOIN ZRCOMUN.dbo.tivas ON Tiva_Id = Lav_Tiva"), lines);
  EXPECT_NE(Check(path).find("está bien"), std::string::npos);
  EXPECT_EQ(Value("SELECT Par_Fiscal FROM Parametros WHERE NOT EXISTS (SELECT * FROM Fiscal)"), "NULL");
  SqliteConnection(path, clock).Execute("INSERT INTO zrcomun.dbo.tivas (Tiva_iva) VALUES (4)");
  EXPECT_EQ(Value("SELECT MAX(Tiva_Id) FROM zrcomun.dbo.tivas"), std::to_string(std::stoi(rates) + 1));
  // Killed between the commit and the catalogue's new name.
  fs::rename(folder / "tienda.version3.zrcomun.db", folder / "tienda.zrcomun.db");
  Value("SELECT COUNT(*) FROM Cav");
  EXPECT_EQ(Names(), moved);
  // The copy is a store of that version, and taking it back works.
  fs::copy_file(folder / "tienda.version3.db", path, fs::copy_options::overwrite_existing);
  fs::copy_file(folder / "tienda.version3.zrcomun.db", folder / "tienda.zrcomun.db");
  EXPECT_EQ(Value("SELECT COUNT(*) FROM zrcomun.dbo.tivas"), rates);
  EXPECT_EQ(Names().size(), 5U);  // with a second copy
}

TEST_F(StoreFile, OfAnOlderVersionRefusesACatalogueThatIsNotItsOwn) {
  const std::string catalogue = folder / "tienda.zrcomun.db";
  MakeStore(path, Contents::Demonstration, clock);
  MakeOlder(path);
  fs::rename(catalogue, folder / "own");
  const auto error = [&] { return ErrorOf([&] { SqliteConnection(path, clock); }); };
  EXPECT_EQ(error(), "Falta el catálogo «" + catalogue + "»");
  std::ofstream(catalogue).close();
  EXPECT_EQ(error(), "Al catálogo «" + catalogue + "» le falta «tivas.Tiva_Id»");
  fs::remove(catalogue);
  CreateStore(catalogue);
  EXPECT_EQ(error(), "«" + catalogue + "» no es un catálogo");
  fs::remove(catalogue);
  {
    const std::string empty = folder / "vacia.db";
    CreateStore(empty);
    MakeOlder(empty);
    fs::rename(folder / "vacia.zrcomun.db", catalogue);
  }
  EXPECT_EQ(error(), "El catálogo «" + catalogue + "» no tiene ningún tipo de impuesto y el almacén tiene ventas: "
                     "no es el suyo");
  fs::rename(folder / "own", catalogue);
  EXPECT_EQ(error(), "");
}

TEST_F(StoreFile, LosesNoTableUnnoticed) {
  MakeStore(path, Contents::Empty, clock);
  Directly("DROP TABLE PAIS; DELETE FROM Parametros");
  EXPECT_NE(Check(path).find("DAÑADO Falta la tabla «PAIS»"), std::string::npos);
  EXPECT_EQ(Value("SELECT COUNT(*) FROM zrcomun.dbo.PAIS"), "0");
  EXPECT_NE(Check(path).find("ROTO "), std::string::npos);  // no parameters
}

TEST_F(StoreFile, OfAnotherVersionIsWrittenNoMore) {
  CreateStore(path);
  SqliteConnection till(path, clock);
  till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')");
  const std::string newer = std::to_string(sqlite::kVersion + 1);
  Directly("PRAGMA user_version = " + newer);
  const char* told = "Otro programa ha cambiado la versión del almacén: cierre este y ábralo de nuevo";
  EXPECT_EQ(ErrorOf([&] { till.BeginTrans(); }), told);
  EXPECT_FALSE(till.InTransaction());
  EXPECT_EQ(ErrorOf([&] { till.Execute("UPDATE Age SET Age_NOM = 'Eva'"); }), told);
  EXPECT_EQ(till.Execute("SELECT Age_NOM FROM Age")->Field(0).ToText(), "Ana");
  EXPECT_EQ(ErrorOf([&] { SqliteConnection(path, clock); }),
            "«" + path + "» es de una versión más nueva del programa (almacén " + newer + ", programa " +
                std::to_string(sqlite::kVersion) + ")");
}

TEST_F(StoreFile, RollsBackThoughARecordSetCannotBeRead) {
  MakeStore(path, Contents::Demonstration, clock);
  SqliteConnection till(path, clock);
  const std::string rows_until_zero = "SELECT 1 / (Age_ID - 3) FROM Age WHERE Age_ID < 5 ORDER BY Age_ID";
  auto rows = till.Execute(rows_until_zero);
  {
    Transaction transaction(till);
    till.Execute("UPDATE Age SET Age_NOM = 'Eva'");
    rows = till.Execute(rows_until_zero);
  }
  EXPECT_FALSE(till.InTransaction());
  EXPECT_EQ(rows->Field(0).ToInt32(), 0);
  rows->MoveNext();
  EXPECT_EQ(rows->Field(0).ToInt32(), -1);
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }), "División por cero");
  EXPECT_TRUE(rows->Eof());
  // Nobody holds the lock, and what comes later is stored.
  SqliteConnection(path, clock).Execute("UPDATE Age SET Age_NOM = 'Luz' WHERE Age_ID = 1");
  EXPECT_EQ(Value("SELECT COUNT(*) FROM Age WHERE Age_NOM IN ('Eva', 'Luz')"), "1");
}

// What the engine undid stays undone: nothing that follows is stored piece by piece.
sqlite3* last_opened = nullptr;

TEST_F(StoreFile, TakesNoMoreOfATransactionThatTheEngineUndid) {
  CreateStore(path);
  const auto remember = +[](sqlite3* handle, const char**, const sqlite3_api_routines*) {
    last_opened = handle;
    return SQLITE_OK;
  };
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(remember));
  SqliteConnection till(path, clock);
  sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(remember));
  const std::string insert = "INSERT INTO QCIERRES (QCIERRES_Texto) VALUES ('" + std::string(50'000, 'x') + "')";
  till.BeginTrans();
  till.Execute("INSERT INTO Age (Age_NOM) VALUES ('Ana')");
  sqlite3_exec(last_opened, "PRAGMA max_page_count = 1", nullptr, nullptr, nullptr);  // as large as it is
  EXPECT_EQ(ErrorOf([&] { till.Execute(insert); }), "No queda espacio en el disco del almacén");
  const char* told = "El almacén deshizo la operación: no se ha grabado nada";
  EXPECT_EQ(ErrorOf([&] { till.Execute("UPDATE Age SET Age_NOM = 'Eva'"); }), told);
  EXPECT_EQ(ErrorOf([&] { till.Execute("SELECT * FROM Age"); }), told);
  EXPECT_EQ(ErrorOf([&] { till.CommitTrans(); }), told);
  EXPECT_TRUE(till.InTransaction());
  till.RollbackTrans();
  sqlite3_exec(last_opened, "PRAGMA max_page_count = 100000", nullptr, nullptr, nullptr);
  till.Execute(insert);
  EXPECT_EQ(till.Execute("SELECT COUNT(*) FROM Age")->Field(0).ToPlainText(), "0");
}

}  // namespace
}  // namespace tpv
