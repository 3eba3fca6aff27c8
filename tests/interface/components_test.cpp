// Components and a connection that the host brings along.
#include "test_host.h"

namespace {

// The host's article search: always finds the same one, by a statement of its own.
struct Search {
  int created = 0;
  int released = 0;
  std::vector<std::string> heard;
  zrtpv_object* database = nullptr;  // retained
  std::string failure;               // "" while it works
  zrtpv_till* till = nullptr;
  std::string path;
  std::vector<std::int32_t> refusals;  // of what must not be done during a call

  zrtpv_components Table() {
    zrtpv_components table{};
    table.size = sizeof table;
    table.host = this;
    table.create = [](void* host, const char* name, void** component) {
      Search& self = *static_cast<Search*>(host);
      if (std::string(name) != "ZRARTICULOS.ZRArtic") return 0;
      ++self.created;
      *component = host;
      return 0;
    };
    table.put = [](void* host, void*, const char* name, const zrtpv_value* value) {
      return static_cast<Search*>(host)->Put(name, *value);
    };
    table.get = [](void* host, void*, const char* name, zrtpv_value* result) {
      return static_cast<Search*>(host)->Get(name, result);
    };
    table.call = [](void* host, void*, const char* name, zrtpv_value*, std::size_t count,
                    zrtpv_value*) { return static_cast<Search*>(host)->Call(name, count); };
    table.release = [](void* host, void*) { ++static_cast<Search*>(host)->released; };
    return table;
  }

  std::int32_t Put(const char* name, const zrtpv_value& value) {
    heard.push_back(std::string("put ") + name);
    if (value.type != ZRTPV_OBJECT || database != nullptr) return ZRTPV_OK;
    database = value.as.object;
    return zrtpv_object_retain(database);
  }
  std::int32_t Call(const char* name, std::size_t count) {
    heard.push_back("call " + std::string(name) + " " + std::to_string(count));
    const zrtpv_value nothing = zrtpv_null();
    refusals = {zrtpv_release(till), zrtpv_put(till, "MyBd", &nothing),
                zrtpv_open_file(till, path.c_str(), ZRTPV_MUST_EXIST, 1),
                zrtpv_play(till, "call zTpv", nullptr)};
    if (failure.empty()) return ZRTPV_OK;
    zrtpv_fail(failure.c_str());
    return ZRTPV_E_OTHER;
  }
  std::int32_t Get(const char* name, zrtpv_value* result) {
    heard.push_back(std::string("get ") + name);
    zrtpv_value connection;
    zrtpv_value rows;
    zrtpv_value statement = zrtpv_text("SELECT art_id FROM ART WHERE ART_Cod = '0082'");
    zrtpv_value field = zrtpv_text("art_id");
    zrtpv_object_get(database, "Conexion", &connection);
    zrtpv_object_call(connection.as.object, "Execute", &statement, 1, &rows);
    const std::int32_t status = zrtpv_object_call(rows.as.object, "Fields", &field, 1, result);
    zrtpv_clear(&rows);
    zrtpv_clear(&connection);
    return status;
  }
};

class Components : public TestHost {
 protected:
  void CreateWith(Search& search) {
    const zrtpv_components table = search.Table();
    zrtpv_options options = Options();
    options.components = &table;
    ASSERT_EQ(zrtpv_create(&options, &till), ZRTPV_OK);
    ASSERT_EQ(zrtpv_open_file(till, (folder / "t.db").c_str(), ZRTPV_MAKE_DEMO, 1), ZRTPV_OK);
    search.till = till;
    search.path = folder / "t.db";
  }
};

constexpr const char* kNewSale =
    "call zTpv\nenter Text1(6) 1\nenter Text1(0) 1\nclick cmdApertura\nenter Text1(14) 100\n"
    "click cmdGrabar\nanswer Yes\nkey Add\nfocus Text1(19)\n";

TEST_F(Components, TheHostsSearchSellsAndTheStandInsDoTheRest) {
  Search search;
  CreateWith(search);
  const std::string script = std::string(kNewSale) +
                             "key F1\nexpect rows dbgVenta 1\n"
                             "expect sql \"0082\" SELECT TOP 1 Lav_CodArt FROM Lav ORDER BY Lav_Id DESC\n";
  EXPECT_EQ(Play(script.c_str()), "");
  EXPECT_EQ(search.created, 1);
  EXPECT_EQ(search.released, 1);
  EXPECT_EQ(search.heard, (std::vector<std::string>{"put MyBd", "call ZRBuscar 0",
                                                    "get ResultadoBusqueda"}));
  EXPECT_EQ(search.refusals, std::vector<std::int32_t>(4, ZRTPV_E_BUSY));  // its till is at work
  // What it kept of the scenario is still the shop's database.
  zrtpv_value user;
  EXPECT_EQ(zrtpv_object_get(search.database, "IdUsuario", &user), ZRTPV_OK);
  EXPECT_EQ(user.as.int32, 1);
  EXPECT_EQ(zrtpv_object_release(search.database), ZRTPV_OK);
}

TEST_F(Components, AFailureOfTheHostsReachesTheOperatorWithItsReason) {
  Search search;
  CreateWith(search);
  search.failure = "el lector no contesta";
  const std::string script = std::string(kNewSale) + "fails key F1\nexpect rows dbgVenta 0\n";
  std::string text;
  zrtpv_value transcript;
  EXPECT_EQ(zrtpv_play(till, script.c_str(), &transcript), ZRTPV_OK);
  text = Text(transcript);
  EXPECT_NE(text.find("ZRARTICULOS.ZRArtic.ZRBuscar: el lector no contesta"), std::string::npos)
      << text;
  EXPECT_EQ(search.released, search.created);
  zrtpv_object_release(search.database);
}

// A connection that knows a handful of answers.
struct Engine {
  std::vector<std::string> sent;
  std::vector<std::string> names = {"Pendiente", "Otro"};
  std::vector<double> amounts;
  std::size_t at = 0;
  int open = 0;
  int begun = 0;
  int rolled_back = 0;
  int released = 0;
  std::int32_t commit_status = ZRTPV_OK;
  std::int32_t field_type = ZRTPV_DOUBLE;
  std::string failing;  // a fragment

  std::int32_t Execute(const std::string& sql, void** rows) {
    sent.push_back(sql);
    if (!failing.empty() && sql.find(failing) != std::string::npos) {
      zrtpv_fail("tabla bloqueada");
      return ZRTPV_E_DATABASE;
    }
    if (sql.find("SELECT") != 0 && sql.find("Select") != 0) return ZRTPV_OK;
    EXPECT_EQ(open, 0) << "rows are closed before the next statement";
    ++open;
    at = 0;
    *rows = this;
    return ZRTPV_OK;
  }

  zrtpv_database Table() {
    static const auto self = [](void* host) -> Engine& { return *static_cast<Engine*>(host); };
    zrtpv_database table{};
    table.size = sizeof table;
    table.user = 7;
    table.host = this;
    table.execute = [](void* host, const char* sql, void** rows) {
      return self(host).Execute(sql, rows);
    };
    table.columns = [](void* host, void*, std::size_t* count) {
      *count = self(host).names.size();
      return 0;
    };
    table.column = [](void* host, void*, std::size_t index, const char** name) {
      *name = self(host).names[index].c_str();
      return 0;
    };
    table.next = [](void* host, void*, std::int32_t* found) {
      *found = self(host).at++ < self(host).amounts.size() ? 1 : 0;
      return 0;
    };
    table.field = [](void* host, void*, std::size_t index, zrtpv_value* value) {
      if (index == 1) return zrtpv_set_text(value, "ñ", 2);
      value->type = self(host).field_type;
      value->as.number = self(host).amounts[self(host).at - 1];
      return 0;
    };
    table.close = [](void* host, void*) { --self(host).open; };
    table.begin = [](void* host) { return ++self(host).begun, 0; };
    table.commit = [](void* host) { return self(host).commit_status; };
    table.rollback = [](void* host) { return ++self(host).rolled_back, 0; };
    table.parameter = [](void*, const char* name, zrtpv_value* value) {
      const std::string text = std::string("«") + name + "»";
      return zrtpv_set_text(value, text.data(), text.size());
    };
    table.release = [](void* host) { ++self(host).released; };
    return table;
  }
};

class HostConnection : public TestHost {
 protected:
  void Open() {
    Create();
    zrtpv_database table = engine.Table();
    ASSERT_EQ(zrtpv_open_host(till, &table), ZRTPV_OK) << zrtpv_error();
  }
  std::int32_t Debt(double& euros) {
    zrtpv_value customer = zrtpv_int32(24);
    zrtpv_value debt;
    const std::int32_t status = zrtpv_call(till, "fnPendienteCliente", &customer, 1, &debt);
    euros = debt.type == ZRTPV_DOUBLE ? debt.as.number : -1;
    return status;
  }
  std::int32_t Cancel() {
    zrtpv_value sale = zrtpv_int32(5);
    return zrtpv_call(till, "msCancelaVenta", &sale, 1, nullptr);
  }
  Engine engine;
};

TEST_F(HostConnection, AnswersTheComponentsStatements) {
  Open();
  engine.amounts = {1.5, 2.25};
  double euros = 0;
  EXPECT_EQ(Debt(euros), ZRTPV_OK) << zrtpv_error();
  EXPECT_EQ(euros, 3.75);
  EXPECT_EQ(engine.open, 0);
  ASSERT_EQ(engine.sent.size(), 1U);
  EXPECT_NE(engine.sent[0].find("24"), std::string::npos) << engine.sent[0];
  zrtpv_object* database = Object();
  zrtpv_value name = zrtpv_text("Par_Nombre");
  zrtpv_value value;
  EXPECT_EQ(zrtpv_object_call(database, "Parametros", &name, 1, &value), ZRTPV_OK);
  EXPECT_EQ(Text(value), "«Par_Nombre»");
  EXPECT_EQ(zrtpv_object_get(database, "IdUsuario", &value), ZRTPV_OK);
  EXPECT_EQ(value.as.int32, 7);
  EXPECT_EQ(zrtpv_release(till), ZRTPV_OK);
  till = nullptr;
  EXPECT_EQ(engine.released, 0);  // the host still holds MyBd
  EXPECT_EQ(zrtpv_object_release(database), ZRTPV_OK);
  EXPECT_EQ(engine.released, 1);
}

TEST_F(HostConnection, ItsFailuresRollBackAndSayWhy) {
  Open();
  engine.failing = "DELETE FROM Cav";
  EXPECT_EQ(Cancel(), ZRTPV_E_DATABASE);
  EXPECT_STREQ(zrtpv_error(), "tabla bloqueada");
  EXPECT_EQ(engine.begun, 1);
  EXPECT_EQ(engine.rolled_back, 1);
  engine.failing.clear();
  engine.commit_status = ZRTPV_E_COMMIT_UNKNOWN;
  EXPECT_EQ(Cancel(), ZRTPV_E_COMMIT_UNKNOWN);
  engine.commit_status = ZRTPV_OK;
  EXPECT_EQ(Cancel(), ZRTPV_OK) << zrtpv_error();
  EXPECT_EQ(engine.begun, 3);
  EXPECT_EQ(engine.rolled_back, 2);

  double euros = 0;
  engine.amounts = {1};
  engine.field_type = 99;
  EXPECT_EQ(Debt(euros), ZRTPV_E_DATABASE);
  EXPECT_EQ(engine.open, 0);
  EXPECT_EQ(euros, -1);
}

TEST_F(HostConnection, ATableWithGapsIsRefused) {
  Create();
  zrtpv_database table = engine.Table();
  table.rollback = nullptr;
  EXPECT_EQ(zrtpv_open_host(till, &table), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(zrtpv_open_host(till, nullptr), ZRTPV_E_ARGUMENT);
  EXPECT_EQ(engine.released, 0);
}

}  // namespace
