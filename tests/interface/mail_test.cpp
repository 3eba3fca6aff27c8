// Mail of a host's till: its own thread never waits for a server, whose connection
// the store may be.
#include <unistd.h>

#include <chrono>
#include <utility>

#include "test_host.h"
#include "tests/loopback_server.h"

namespace {

using Seconds = std::chrono::duration<double>;

// A host's connection that passes everything on to the database of another till.
class PassingOn {
 public:
  explicit PassingOn(zrtpv_object* connection) : connection_(connection) {}
  zrtpv_database Table() {
    zrtpv_database table{};
    table.size = sizeof table;
    table.user = 1;
    table.host = connection_;
    table.execute = [](void* host, const char* sql, void** rows) {
      zrtpv_value statement = zrtpv_text(sql);
      zrtpv_value result;
      const std::int32_t status = Call(host, "Execute", &statement, 1, &result);
      if (status != ZRTPV_OK) zrtpv_fail(zrtpv_error());
      *rows = new Rows{result.as.object};
      return status;
    };
    table.columns = [](void*, void* rows, std::size_t* count) {
      zrtpv_value value;
      const std::int32_t status = Get(rows, "Count", &value);
      *count = static_cast<std::size_t>(value.as.int64);
      return status;
    };
    table.column = [](void*, void* rows, std::size_t index, const char** name) {
      static std::string kept;
      zrtpv_value which = zrtpv_int32(static_cast<std::int32_t>(index));
      zrtpv_value value;
      const std::int32_t status = CallRows(rows, "Name", &which, 1, &value);
      kept = Text(value);
      *name = kept.c_str();
      return status;
    };
    table.next = [](void*, void* rows, std::int32_t* found) {
      // The first row is where they already stand.
      if (std::exchange(static_cast<Rows*>(rows)->begun, true)) CallRows(rows, "MoveNext");
      zrtpv_value end;
      const std::int32_t status = Get(rows, "EOF", &end);
      *found = end.as.boolean != 0 ? 0 : 1;
      return status;
    };
    table.field = [](void*, void* rows, std::size_t index, zrtpv_value* value) {
      zrtpv_value which = zrtpv_int32(static_cast<std::int32_t>(index));
      return CallRows(rows, "Fields", &which, 1, value);
    };
    table.close = [](void*, void* rows) {
      zrtpv_object_release(static_cast<Rows*>(rows)->object);
      delete static_cast<Rows*>(rows);
    };
    table.begin = [](void* host) { return Call(host, "BeginTrans"); };
    table.commit = [](void* host) { return Call(host, "CommitTrans"); };
    table.rollback = [](void* host) { return Call(host, "RollbackTrans"); };
    return table;
  }

 private:
  struct Rows {
    zrtpv_object* object;
    bool begun = false;
  };
  static std::int32_t Call(void* object, const char* method, zrtpv_value* arguments = nullptr,
                           std::size_t count = 0, zrtpv_value* result = nullptr) {
    return zrtpv_object_call(static_cast<zrtpv_object*>(object), method, arguments, count, result);
  }
  static std::int32_t CallRows(void* rows, const char* method, zrtpv_value* arguments = nullptr,
                               std::size_t count = 0, zrtpv_value* result = nullptr) {
    return Call(static_cast<Rows*>(rows)->object, method, arguments, count, result);
  }
  static std::int32_t Get(void* rows, const char* property, zrtpv_value* value) {
    return zrtpv_object_get(static_cast<Rows*>(rows)->object, property, value);
  }

  zrtpv_object* connection_;
};

class HostMail : public TestHost, public testing::WithParamInterface<bool> {
 protected:
  HostMail() : server("mail_server.py", post) {
    std::ofstream(folder / "tpv.conf", std::ios::app)
        << "[TPV/Mail]\nServer=127.0.0.1\nFrom=tienda@tienda.es\nPort=" << server.port << "\n";
    CreateShop();
    own = till;
    if (GetParam()) {
      Create();
      zrtpv_object* database = Object(own);
      zrtpv_value link;
      EXPECT_EQ(zrtpv_object_get(database, "Conexion", &link), ZRTPV_OK);
      zrtpv_object_release(database);
      connection = link.as.object;
      zrtpv_database table = PassingOn(connection).Table();
      EXPECT_EQ(zrtpv_open_host(till, &table), ZRTPV_OK) << zrtpv_error();
    }
  }
  ~HostMail() override {
    if (connection != nullptr) zrtpv_object_release(connection);
    if (own != till) zrtpv_release(own);
  }
  static zrtpv_object* Object(zrtpv_till* of) {
    zrtpv_value value;
    EXPECT_EQ(zrtpv_get(of, "MyBd", &value), ZRTPV_OK);
    return value.as.object;
  }
  void Queue(const std::string& subject, const std::string& recipient) {
    zrtpv_value transcript;
    const std::string script =
        "sql INSERT INTO QCIERRES (QCIERRES_Email, QCIERRES_Asunto, QCIERRES_Texto) VALUES ('" + recipient +
        "', '" + subject + "', 'Texto')";
    EXPECT_EQ(zrtpv_play(own, script.c_str(), &transcript), ZRTPV_OK);
    zrtpv_clear(&transcript);
  }
  std::string Mails(const std::string& where) {
    const std::string script = "sql SELECT COUNT(*) FROM QCIERRES WHERE " + where;
    zrtpv_value transcript;
    EXPECT_EQ(zrtpv_play(own, script.c_str(), &transcript), ZRTPV_OK);
    const std::string text = Text(transcript);
    return text.substr(text.rfind('\n', text.size() - 2) + 1);
  }
  void OpenTheSale() {
    EXPECT_EQ(Put("Caja", zrtpv_int32(1)), ZRTPV_OK);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(zrtpv_call(till, "zTpv", nullptr, 0, nullptr), ZRTPV_OK) << zrtpv_error();
    EXPECT_LT(Seconds(std::chrono::steady_clock::now() - start).count(), 2);
  }

  std::size_t Arrived() const { return post.Files(".eml").size(); }

  tpv::TestFolder post;
  tpv::LoopbackServer server;
  zrtpv_till* own = nullptr;
  zrtpv_object* connection = nullptr;
};

TEST_P(HostMail, GoesOutBehindTheHostAndFailuresReachIt) {
  Queue("Cierre 1", "nadie@tienda.es");
  Queue("slow", "jefa@tienda.es");
  Queue("Cierre 3", "jefa@tienda.es");
  OpenTheSale();
  for (int i = 0; i < 1500 && Arrived() < 1; ++i) ::usleep(10'000);  // the slow one is there
  EXPECT_EQ(Mails("QCIERRES_Enviado IS NULL"), "3\n");
  Number("Caja");  // any call: what is known is told
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0], "El correo «Cierre 1» para nadie@tienda.es no ha salido; se intentará otra vez.");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(zrtpv_put(till, "Caja", nullptr), ZRTPV_E_ARGUMENT);
  EXPECT_LT(Seconds(std::chrono::steady_clock::now() - start).count(), 0.5);
  for (int i = 0; i < 100 && Mails("QCIERRES_Enviado IS NOT NULL") != "1\n"; ++i) {
    ::usleep(100'000);
    Number("Caja");
  }
  EXPECT_EQ(Mails("QCIERRES_Enviado IS NOT NULL"), "1\n");  // the one behind those two
  EXPECT_EQ(Mails("QCIERRES_Error LIKE '%Puede que haya llegado%' AND QCIERRES_Enviado IS NULL"), "1\n");
  EXPECT_EQ(Mails("QCIERRES_Error LIKE '%550%' AND QCIERRES_Enviado IS NULL"), "1\n");
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_NE(messages[1].find("puede haber llegado"), std::string::npos) << messages[1];
  OpenTheSale();  // the refused one is tried and refused again: nobody hears the same twice
  for (int i = 0; i < 30; ++i) ::usleep(10'000);
  Number("Caja");
  EXPECT_EQ(messages.size(), 2U);
  EXPECT_EQ(Arrived(), 2U);
}

INSTANTIATE_TEST_SUITE_P(OwnAndHosts, HostMail, testing::Bool(),
                         [](const auto& of) { return of.param ? "HostsConnection" : "StoreFile"; });

}  // namespace
