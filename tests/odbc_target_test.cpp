// How a till finds its server: connection strings, credentials, what a driver's
// reports become, and the tables as SQL Server is told to make them.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <fstream>
#include <map>

#include "adapters/odbc/decimal.h"
#include "adapters/odbc/distinct_leap.h"
#include "adapters/odbc/errors.h"
#include "adapters/odbc/odbc_connection.h"
#include "adapters/odbc/open_server.h"
#include "adapters/odbc/server_ddl.h"
#include "tests/loopback_server.h"
#include "tests/odbc_store.h"

namespace tpv {
namespace {

using odbc::LoginTo;
using odbc::ReadTarget;
using odbc::TargetError;

odbc::Environment With(std::map<std::string, std::string> values) {
  return [values = std::move(values)](const char* name) -> std::optional<std::string> {
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
  };
}

TEST(OdbcTarget, PasswordsStayOutOfTheCommand) {
  for (const char* argument : {"DSN=tienda;PWD=1234", "dsn=tienda; pwd = 1234", "DSN=a;Password={x;y}"}) {
    try {
      ReadTarget(argument, With({}));
      ADD_FAILURE() << argument;
    } catch (const TargetError& error) {
      EXPECT_EQ(std::string(error.what()).find("1234"), std::string::npos);
      EXPECT_NE(std::string(error.what()).find("TPV_ODBC_PASSWORD"), std::string::npos);
    }
  }
  // Inside of a value it is no key.
  EXPECT_NO_THROW(ReadTarget("DSN=tienda;APP={a;PWD=1}", With({})));
}

TEST(OdbcTarget, CredentialsJoinTheConnectionString) {
  const auto secret = With({{"TPV_ODBC_USER", "caja"}, {"TPV_ODBC_PASSWORD", "a;b}c"}});
  EXPECT_EQ(LoginTo(ReadTarget("tienda", secret)).text,
            "DSN=tienda;UID=caja;PWD={a;b}}c};ClientCharset=UTF-8");
  EXPECT_EQ(LoginTo(ReadTarget("DSN=tienda;UID=otro;", secret)).text,
            "DSN=tienda;UID=otro;PWD={a;b}}c};ClientCharset=UTF-8");
}

std::string Refusal(const std::string& connection, std::map<std::string, std::string> values) {
  values["TPV_ODBC_ENCRYPT"] = "yes";
  try {
    LoginTo(ReadTarget(connection, With(values)));
  } catch (const TargetError& error) {
    return error.what();
  }
  return "";
}

TEST(OdbcTarget, DemandedEncryptionVerifiesOrIsRefused) {
  const auto demanded = With({{"TPV_ODBC_ENCRYPT", "yes"}});
  const odbc::Login free_tds =
      LoginTo(ReadTarget("Driver=/x/libtdsodbc.so;Server=tcp:caja.es\\uno,1434;Database=t", demanded));
  EXPECT_EQ(free_tds.text,
            "Driver=/x/libtdsodbc.so;Servername=tpv verificado;Database=t;ClientCharset=UTF-8;"
            "Encryption=require");
  EXPECT_EQ(free_tds.freetds_settings,
            "[tpv verificado]\n\thost = caja.es\n\tport = 1434\n\tinstance = uno\n\tca file = system\n"
            "\tcheck certificate hostname = yes\n\tencryption = require\n");
  const std::string microsoft = "Driver=/x/libmsodbcsql-18.so;Server=caja.es;";
  EXPECT_EQ(LoginTo(ReadTarget(microsoft + "Encrypt=strict", demanded)).text,
            microsoft + "Encrypt=strict;ClientCharset=UTF-8;TrustServerCertificate=no");
  const auto expect_refusal = [](const std::string& connection, const std::string& fragment,
                                 const std::map<std::string, std::string>& values = {}) {
    const std::string refusal = Refusal(connection, values);
    EXPECT_NE(refusal.find(fragment), std::string::npos) << connection << ": " << refusal;
  };
  expect_refusal(microsoft + "Encrypt=no", "la conexión lo quita: Encrypt=no");
  expect_refusal(microsoft + "TrustServerCertificate=yes", "TrustServerCertificate=yes");
  expect_refusal(microsoft, "update-ca-certificates", {{"TPV_ODBC_CA", "/etc/passwd"}});
  expect_refusal("Driver=/x/libtdsodbc.so;Server=a;Encryption=request", "Encryption=request");
  expect_refusal("Driver=/x/libtdsodbc.so;Servername=a", "no en «Servername=»");
  expect_refusal("Driver=/x/libtdsodbc.so;Server=a", "autoridad «/no/existe»",
                 {{"TPV_ODBC_CA", "/no/existe"}});
  expect_refusal("Driver=/x/libotro.so;Server=a", "no se puede comprobar el certificado");
}

TEST(OdbcTarget, CredentialFilesAreTheUsersAlone) {
  const std::string path = testing::TempDir() + "tpv-credenciales-" + std::to_string(::getpid());
  std::ofstream(path) << "user=caja1\r\npassword= con = y ;\n";
  const auto environment = With({{"TPV_ODBC_CREDENTIALS", path}});
  ::chmod(path.c_str(), 0600);
  const odbc::Target target = ReadTarget("tienda", environment);
  EXPECT_EQ(target.user, "caja1");
  EXPECT_EQ(target.password, " con = y ;");
  for (const mode_t open : {0640, 0604, 0620}) {
    ::chmod(path.c_str(), open);
    EXPECT_THROW(ReadTarget("tienda", environment), TargetError);
  }
  std::remove(path.c_str());
  EXPECT_THROW(ReadTarget("tienda", environment), TargetError);
}

TEST(OdbcErrors, TheReportThatTellsMostIsShown) {
  const auto text = [](const std::vector<odbc::Report>& reports) {
    return std::string(odbc::ErrorFrom(reports).what());
  };
  const odbc::Report failed{"08001", 20002, "[FreeTDS][SQL Server]Adaptive Server connection failed"};
  EXPECT_EQ(text({failed, {"28000", 18456, "[FreeTDS][SQL Server]Login failed for user 'caja'."}}),
            "El servidor no acepta el usuario o la contraseña");
  EXPECT_EQ(text({{"28000", 18456, "Login failed"}, {"42000", 4060, "Cannot open database"}, failed}),
            "La base de datos no existe en el servidor, o el usuario no puede abrirla");
  EXPECT_EQ(text({{"01000", 0, "aviso"}, failed}),
            "No se encuentra el servidor de la tienda; compruebe la red y que esté encendido");
  EXPECT_EQ(text({{"HYT00", 0, "Timeout expired"}}),
            "El servidor de la tienda no responde a tiempo; inténtelo de nuevo");
  EXPECT_EQ(text({{"42000", 8152, "[FreeTDS][SQL Server]Los datos se truncarían."}}),
            "Los datos se truncarían.");
  EXPECT_EQ(odbc::ErrorFrom({{"42S02", 208, "x"}}).native(), 208);
  EXPECT_FALSE(text({}).empty());
}

TEST(OpenServer, GetsABlankBehindANumberAndNowhereElse) {
  const std::pair<const char*, const char*> statements[] = {
      {"SELECT 1ORDER BY 2", "SELECT 1 ORDER BY 2"},
      {"x=1.5GROUP BY Dto1", "x=1.5 GROUP BY Dto1"},
      {"a = '2ORDER ''3x''' AND N'4Ñ' = [5col]", "a = '2ORDER ''3x''' AND N'4Ñ' = [5col]"},
      {"1e5ELSE 2E-3END 0x1FA 7ELSE", "1e5 ELSE 2E-3 END 0x1FA 7 ELSE"},
      {"-- 1ORDER\n8FROM /* 9AND */ @p1x, #t2y, T3z.c4", "-- 1ORDER\n8 FROM /* 9AND */ @p1x, #t2y, T3z.c4"},
      {"WHERE a < 10AND b='", "WHERE a < 10 AND b='"}};
  for (const auto& [sql, sent] : statements) EXPECT_EQ(odbc::WithBlanksBehindNumbers(sql), sent);
}

TEST(DistinctValues, OfAnIndexAreAskedForOneByOneAndNoOthers) {
  EXPECT_EQ(odbc::LeapThroughIndex("SELECT DISTINCT DIACAJ_CAJA FROM DIACAJ ORDER BY DIACAJ_CAJA", false),
            "WITH salto (valor) AS (SELECT MIN(DIACAJ_CAJA) FROM DIACAJ UNION ALL SELECT siguiente.valor FROM "
            "(SELECT DIACAJ.DIACAJ_CAJA AS valor, ROW_NUMBER() OVER (ORDER BY DIACAJ.DIACAJ_CAJA) AS puesto FROM "
            "DIACAJ INNER JOIN salto ON DIACAJ.DIACAJ_CAJA > salto.valor) AS siguiente WHERE siguiente.puesto = 1) "
            "SELECT NULL AS DIACAJ_CAJA WHERE EXISTS (SELECT 1 FROM DIACAJ WHERE DIACAJ_CAJA IS NULL) UNION ALL "
            "SELECT valor FROM salto WHERE valor IS NOT NULL ORDER BY 1 OPTION (MAXRECURSION 0)");
  for (const char* other :
       {"SELECT DISTINCT DiaCaj_IdAge FROM DiaCaj ORDER BY DiaCaj_IdAge", "SELECT DISTINCT ART_Cod FROM ART ORDER BY ART_Cod",
        "SELECT DISTINCT DiaCaj_Caja FROM DiaCaj ORDER BY DiaCaj_Tipo", "SELECT DISTINCT DiaCaj_Caja FROM DiaCaj",
        "SELECT DISTINCT x FROM y ORDER BY x", "SELECT DISTINCT DiaCaj_Caja FROM DiaCaj ORDER BY DiaCaj_Caja DESC"}) {
    EXPECT_EQ(odbc::LeapThroughIndex(other, false), std::nullopt) << other;
  }
}

TEST(OpenServer, SaysByItsNumbersWhatTheOtherSays) {
  const auto error = [](int native, const char* text = "x") { return odbc::ErrorFrom({{"HY000", native, text}}); };
  const DatabaseError waited = error(33557097, "canceling statement due to lock timeout");
  EXPECT_EQ(waited.what(), std::string("Otra caja está usando los mismos datos; inténtelo de nuevo"));
  EXPECT_TRUE(odbc::IsTimeout(waited.sqlstate()));
  // The same number stands for whatever else it has none for.
  const DatabaseError wrong = error(33557097, "[FreeTDS][SQL Server]numeric field overflow");
  EXPECT_EQ(wrong.what(), std::string("numeric field overflow"));
  EXPECT_FALSE(odbc::IsTimeout(wrong.sqlstate()));
  EXPECT_TRUE(odbc::IsConnectionLoss(error(33557097, "terminating connection due to administrator command").sqlstate()));
  EXPECT_EQ(error(16908292).native(), 1205);
  EXPECT_TRUE(odbc::IsConnectionLoss(error(16908741).sqlstate()));
  EXPECT_TRUE(odbc::IsNothingToRollBack(error(3903)));
  EXPECT_EQ(error(50000).native(), 50000);
}

TEST(OdbcDecimals, AreReadWithoutBinaryFractions) {
  const auto money = [](const char* text) { return odbc::ReadDecimal(text).ToMoney().ten_thousandths; };
  EXPECT_EQ(money("12.1000"), 121000);
  EXPECT_EQ(money("-.05"), -500);
  EXPECT_EQ(money("7"), 70000);
  EXPECT_EQ(money("99999999999999.9999"), 999999999999999999);
  EXPECT_EQ(odbc::ReadDecimal("0.12345"), Variant(0.12345));
  EXPECT_EQ(odbc::ReadDecimal("123456789012345678"), Variant(123456789012345678.0));
  for (const char* none : {"", "-", "1.2.3", "doce"}) EXPECT_THROW(odbc::ReadDecimal(none), DatabaseError);
}

TEST(ServerDdl, TablesFunctionsAndIndexesInTheDialect) {
  std::map<std::string, std::vector<std::string>> made;
  for (const schema::Home home : {schema::Home::Catalogue, schema::Home::Store}) {
    for (const ServerObject& object : ServerObjects(home)) made[object.name] = object.statements;
  }
  EXPECT_EQ(made["QCIERRES"].front(),
            "CREATE TABLE dbo.[QCIERRES] ([QCIERRES_id] int IDENTITY(1,1) NOT NULL PRIMARY KEY, "
            "[QCIERRES_Email] nvarchar(100) NULL, [QCIERRES_Asunto] nvarchar(50) NULL, "
            "[QCIERRES_Texto] nvarchar(max) NULL, [QCIERRES_Enviado] datetime NULL, "
            "[QCIERRES_Error] nvarchar(500) NULL)");
  EXPECT_EQ(made["TVI"].front(), "CREATE TABLE dbo.[TVI] ([TVI_COD] nvarchar(2) NOT NULL PRIMARY "
                                 "KEY, [TVI_NOM] nvarchar(50) NULL)");
  EXPECT_NE(made["Cav"].front().find("[Cav_Cobrado] bit NOT NULL DEFAULT (0)"), std::string::npos);
  EXPECT_NE(made["Cav"].front().find("[Cav_Fecha] datetime NULL DEFAULT (getdate())"), std::string::npos);
  EXPECT_NE(made["DiaCaj"].front().find("[DiaCaj_SaldoIni] money NULL"), std::string::npos);
  EXPECT_EQ(made["DiaCaj"][1], "CREATE INDEX [ix_DiaCaj_DiaCaj_Caja_DiaCaj_Fecha_DESC] ON "
                               "dbo.[DiaCaj] (DiaCaj_Caja, DiaCaj_Fecha DESC)");
  EXPECT_EQ(made["Contadores"][1].substr(0, 20), "CREATE UNIQUE INDEX ");
  EXPECT_NE(made["FncImporteConIva"].front().find(
                "ROUND(CAST(Lav_Importe + (Lav_Importe / 100 * Tiva_iva) AS money), 2)"),
            std::string::npos);
}

// A socket that accepts and says nothing, or nobody at all.
class Port {
 public:
  explicit Port(bool listening) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    ::bind(socket_, generic, sizeof address);
    socklen_t size = sizeof address;
    ::getsockname(socket_, generic, &size);
    number_ = ntohs(address.sin_port);
    if (listening) ::listen(socket_, 4);
  }
  ~Port() { ::close(socket_); }
  int number() const { return number_; }

 private:
  int socket_;
  int number_ = 0;
};

#ifdef TPV_FREETDS_ODBC_DRIVER
std::string Server(const std::string& host, int port) {
  return std::string("Driver=") + TPV_FREETDS_ODBC_DRIVER + ";Server=" + host +
         ";Port=" + std::to_string(port) + ";TDS_Version=7.4";
}

std::string LoginError(const odbc::Target& target) {
  OdbcOptions options;
  options.login_seconds = 3;
  try {
    OdbcConnection(target, options);
  } catch (const DatabaseError& error) {
    return error.what();
  }
  return "connected";
}

TEST(OdbcLogin, WithoutAServerTheOperatorIsTold) {
  const std::string expected =
      "No se encuentra el servidor de la tienda; compruebe la red y que esté encendido";
  for (const bool listening : {false, true}) {
    const Port port(listening);
    EXPECT_EQ(LoginError({Server("127.0.0.1", port.number()), "caja", "secreto", false, {}}), expected);
  }
}

TEST(OdbcLogin, AStrangersCertificateGetsNoCredentials) {
  const TestFolder folder;
  const std::string own = folder / "own.pem";
  const std::string other = folder / "other.pem";
  ASSERT_TRUE(MakeCertificate(own, folder / "own.key", "DNS:localhost"));
  ASSERT_TRUE(MakeCertificate(other, folder / "other.key", "DNS:localhost"));
  const LoopbackServer server("tds_server.py", folder, " " + own + " " + folder / "own.key");
  const auto error = [&](const std::string& host, const std::string& authority) {
    return LoginError({Server(host, server.port), "caja", "secreto", true, authority});
  };
  EXPECT_NE(error("localhost", other).find("TPV_ODBC_CA"), std::string::npos);
  EXPECT_NE(error("localhost", "").find("TPV_ODBC_CA"), std::string::npos);
  EXPECT_NE(error("127.0.0.1", own).find("TPV_ODBC_CA"), std::string::npos);  // another name
  EXPECT_EQ(error("localhost", own), "El servidor no acepta el usuario o la contraseña");
  EXPECT_EQ(folder.Text("notes"), "nothing\nnothing\nnothing\nlogin\n");
  const std::string nobody = LoginError({Server("localhost", server.port), "caja", "", true, own});
  EXPECT_NE(nobody.find("Faltan el usuario o la contraseña"), std::string::npos) << nobody;
}
#endif

TEST(OdbcLogin, AMissingDriverOrDataSourceIsAnErrorOfItsOwn) {
  EXPECT_THROW(OdbcConnection({"Driver=/no/existe.so", {}, {}, false, {}}), DatabaseError);
  try {
    OdbcConnection({"DSN=tpv-no-existe", {}, {}, false, {}});
    ADD_FAILURE();
  } catch (const DatabaseError& error) {
    EXPECT_EQ(std::string(error.what()), "No existe el origen de datos o falta su controlador ODBC");
  }
}

}  // namespace
}  // namespace tpv
