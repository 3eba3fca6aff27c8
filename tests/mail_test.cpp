// Mail as a server on the loopback receives it, and what the shop hears when one
// does not take it.
#include <gtest/gtest.h>

#include <chrono>

#include "adapters/files/file_settings.h"
#include "adapters/mail/curl_mailer.h"
#include "cash/mail_queue.h"
#include "context/context.h"
#include "host/store_errands.h"
#include "tests/mail_system.h"
#include "tests/test_shop.h"

namespace tpv {
namespace {

struct MailServer : LoopbackServer {
  explicit MailServer(const TestFolder& folder, const std::string& words = "")
      : LoopbackServer("mail_server.py", folder, words) {}
};

class MailTest : public ::testing::Test {
 protected:
  TestFolder folder;
  FileSettings settings{folder / "tpv.conf"};
  FixedClock clock;
  CurlMailer mailer{settings, clock};

  void SetUp() override {
    Configure("Server", "127.0.0.1");
    Configure("From", "tienda@tienda.es");
  }
  void Configure(const char* key, const std::string& value) {
    settings.Write("TPV", "Mail", key, value);
  }
  static Mail To(const std::string& recipient, int port) {
    return {port, recipient, "Tienda", "Cierre", "Texto"};
  }
  // "" for a mail that was sent to all.
  std::string Error(const Mail& mail) {
    const MailResult result = mailer.Send(mail);
    EXPECT_TRUE(result.sent || !result.text.empty());
    return result.sent && !result.text.empty() ? "Sent, but " + result.text : result.text;
  }
  void ExpectError(const Mail& mail, const std::string& fragment) {
    const std::string error = Error(mail);
    EXPECT_NE(error.find(fragment), std::string::npos) << error;
  }
};

TEST_F(MailTest, ArrivesAsItWasWritten) {
  const MailServer server(folder);
  const std::string subject =
      "Cierre de caja ejecutado el 24/11/2026 10:30:00 — señoría, ¿€ y ñandú?";
  EXPECT_EQ(Error({server.port, " jefa@tienda.es; b@tienda.es", "Peña, \"e Hijas\" S.L.", subject,
                   "Saldo Final..........     12,50 €\r\n.\r\n..\nÑoño\r\nfin"}),
            "");
  const std::string shown = folder.Text("1.txt");
  for (const std::string& part :
       {std::string("envelope: tienda@tienda.es > jefa@tienda.es,b@tienda.es\n"),
        std::string("headers: Date From To Message-ID Subject MIME-Version Content-Type "
                    "Content-Transfer-Encoding\n"),
        std::string("From: \"Peña, \\\"e Hijas\\\" S.L.\" <tienda@tienda.es>\n"),
        std::string("To: jefa@tienda.es, b@tienda.es\n"), "Subject: " + subject + "\n",
        std::string("Message-ID: <20261124103000."), std::string("Date: 24/11/2026 10:30:00\n"),
        std::string("defects: []\n"),
        std::string("\n\nSaldo Final..........     12,50 €\n.\n..\nÑoño\nfin")}) {
    EXPECT_NE(shown.find(part), std::string::npos) << part << "not in:\n" << shown;
  }
  std::size_t length = 0;
  for (const char c : folder.Text("1.eml")) {
    EXPECT_LT(static_cast<unsigned char>(c), 0x7F);
    length = c == '\n' ? 0 : length + 1;
    EXPECT_LE(length, 78U);
  }
}

TEST_F(MailTest, NoTextBecomesAHeaderOrAnotherRecipient) {
  const MailServer server(folder);
  const std::string evil = "Hola\r\nBcc: otro@malo.es\r\n\r\n=?";
  EXPECT_EQ(Error({server.port, "jefa@tienda.es", evil, evil, "\r\n.\r\nMAIL FROM:<a@b>\r\n"}), "");
  const std::string shown = folder.Text("1.txt");
  EXPECT_NE(shown.find("Subject: Hola  Bcc: otro@malo.es    =?\n"), std::string::npos) << shown;
  EXPECT_EQ(shown.find(" Bcc "), std::string::npos) << shown;
  EXPECT_NE(shown.find("MAIL FROM:<a@b>\n"), std::string::npos) << shown;
  for (const char* to : {"jefa@tienda.es\r\nRCPT TO:<otro@malo.es>", "jefa", "<jefa@tienda.es>",
                         "a b@c.es", "", ";", "jefa@tienda.es;x"}) {
    ExpectError(To(to, server.port), "no es una dirección de correo");
  }
  EXPECT_EQ(folder.Files(".eml").size(), 1U);
}

TEST_F(MailTest, TheServersRefusalIsPassedOn) {
  const MailServer server(folder);
  ExpectError(To("nadie@tienda.es", server.port), "550 El buzón de «nadie» no existe, 'señor'");
  Configure("Port", std::to_string(server.port));  // goes before the mail's
  EXPECT_EQ(Error(To("jefa@tienda.es", 1)), "");
  Configure("From", "sin arroba");
  ExpectError(To("jefa@tienda.es", 1), "remitente");
  Configure("Server", "malo.es/?x");
  ExpectError(To("jefa@tienda.es", 1), "");
  EXPECT_TRUE(mailer.Configured());
  Configure("From", "");
  EXPECT_FALSE(mailer.Configured());
  ExpectError(To("jefa@tienda.es", 1), "Faltan los datos");
}

TEST_F(MailTest, ADeadServerHoldsTheTillOnceAndBriefly) {
  auto start = std::chrono::steady_clock::now();
  const auto seconds = [&] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  SilentServer silent;
  ExpectError(To("jefa@tienda.es", 1), "no se puede conectar");
  EXPECT_LT(seconds(), 5);
  ExpectError(To("jefa@tienda.es", silent.port), "no responde");
  EXPECT_LT(seconds(), 15);
  start = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) ExpectError(To("jefa@tienda.es", silent.port), "no responde");
  EXPECT_LT(seconds(), 5);
}

TEST_F(MailTest, OneRecipientThatIsRefusedDoesNotStopTheOthers) {
  const MailServer server(folder);
  EXPECT_EQ(Error(To("nadie@tienda.es; jefa@tienda.es", server.port)),
            "Sent, but No lo aceptan: nadie@tienda.es: 550 El buzón de «nadie» no existe, 'señor'");
  EXPECT_NE(folder.Text("1.txt").find("envelope: tienda@tienda.es > jefa@tienda.es\n"), std::string::npos);
}

TEST_F(MailTest, ASilentServerHoldsNobodyLongAndALostAnswerIsCalledThat) {
  const MailServer server(folder);
  const auto start = std::chrono::steady_clock::now();
  ExpectError({server.port, "jefa@tienda.es", "Tienda", "slow", "Texto"}, std::string(kMayHaveArrived));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(8500));
  EXPECT_EQ(folder.Files(".eml").size(), 1U);  // it had arrived
  ExpectError({server.port, "jefa@tienda.es", "Tienda", "cut", "Texto"}, std::string(kMayHaveArrived));
  const std::string refused = Error({server.port, "jefa@tienda.es", "Tienda", "refuse", "Texto"});
  EXPECT_NE(refused.find("554 No"), std::string::npos) << refused;
  EXPECT_EQ(refused.find(kMayHaveArrived), std::string::npos);
  EXPECT_EQ(Error(To("jefa@tienda.es", server.port)), "");  // none of it counts as a dead server
}

TEST_F(MailTest, TheQueueGoesOutBehindTheWindowAndBehindAMailThatFails) {
  const MailServer server(folder);
  Configure("Port", std::to_string(server.port));
  TestStore store;
  store.connection().Execute("INSERT INTO Parametros (Par_Nombre) VALUES ('Tienda')");
  const auto queue = [&](const std::string& subject, const std::string& recipient) {
    store.connection().Execute("INSERT INTO QCIERRES (QCIERRES_Email, QCIERRES_Asunto, QCIERRES_Texto) VALUES ('" +
                               recipient + "', '" + subject + "', 'Texto')");
  };
  queue("slow", "jefa@tienda.es");
  queue("Cierre 1", "nadie@tienda.es");
  queue("Cierre 2", "jefa@tienda.es");
  TestShop shop(store.connection(), clock);
  Ports ports{shop.front_end, shop.printers, shop.devices, settings,  clock,
              mailer,         shop.reports,  shop.objects, shop.sound};
  Context context{0, 0, 0, 0, shop.database, ports};
  const auto start = std::chrono::steady_clock::now();
  const auto arrived = [&](std::size_t mails) {
    for (int i = 0; i < 1500 && folder.Files(".eml").size() < mails; ++i) ::usleep(10'000);
    return folder.Files(".eml").size();
  };
  {
    StoreErrands errands(ports, 7, [&] { return store.Open(); });
    ports.errands = &errands;
    SendQueuedMailsOrTell(context, Doubtful::Leave);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(arrived(1), 1U);
  }  // an end waits for the mail under way and no other
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(9500));
  const std::string doubtful = "SELECT COUNT(*) FROM QCIERRES WHERE QCIERRES_Enviado IS NULL AND QCIERRES_Error "
                               "LIKE '%Puede que haya llegado%'";
  EXPECT_EQ(store.Value(doubtful), "1");
  EXPECT_EQ(folder.Files(".eml").size(), 1U);
  StoreErrands errands(ports, 7, [&] { return store.Open(); });
  ports.errands = &errands;
  SendQueuedMailsOrTell(context, Doubtful::Leave);
  EXPECT_EQ(arrived(2), 2U);
  EXPECT_NE(folder.Text("2.txt").find("Subject: Cierre 2\n"), std::string::npos);
  for (int i = 0; i < 500 && store.Value("SELECT COUNT(*) FROM QCIERRES WHERE QCIERRES_Enviado IS NULL") != "2"; ++i) {
    ::usleep(10'000);
  }
  EXPECT_EQ(store.Value(doubtful), "1");
  EXPECT_EQ(store.Value("SELECT COUNT(*) FROM QCIERRES WHERE QCIERRES_Enviado IS NULL AND QCIERRES_Error LIKE '%550%'"),
            "1");
}

TEST_F(MailTest, PasswordsTravelEncryptedOrNotAtAll) {
  const std::string key = folder / "key.pem";
  const std::string certificate = folder / "cert.pem";
  ASSERT_TRUE(MakeCertificate(certificate, key, "IP:127.0.0.1"));
  const MailServer server(folder, " " + certificate + " " + key);
  const Mail mail = To("jefa@tienda.es", server.port);
  ExpectError(mail, "530");  // nobody logged in
  Configure("User", "caja");
  Configure("Password", "se'cr et\"o");
  ExpectError(mail, "certificate");  // nobody vouches for it
  Configure("CaFile", certificate);
  EXPECT_EQ(Error(mail), "");
  EXPECT_NE(folder.Text("1.txt").find("tls: True"), std::string::npos);
  Configure("Password", "otra=Clave");
  ExpectError(mail, "no acepta el usuario y la contraseña");
  ExpectError(mail, "535 ¿***?");
  EXPECT_EQ(Error(mail).find("otra=Clave"), std::string::npos);
  const TestFolder other;
  const MailServer plain(other);
  ExpectError(To("jefa@tienda.es", plain.port), "STARTTLS");
  Configure("Security", "none");
  ExpectError(To("jefa@tienda.es", plain.port), "no viaja sin cifrar");
  EXPECT_EQ(other.Files(".eml").size(), 0U);
}

TEST_F(MailTest, AMailSystemOfTheRealWorldTakesThemEncrypted) {
  if (!MailSystem::Installed()) GTEST_SKIP() << "no postfix, or not root";
  const MailSystem system;
  Configure("Security", "starttls");
  ExpectError(To("jefa@tienda.es", system.starttls), "certificate");  // nobody vouches for it
  Configure("CaFile", system.Certificate());
  EXPECT_EQ(Error(To("jefa@tienda.es", system.starttls)), "");
  const std::string partly = Error({system.starttls, "nadie@tienda.es; jefa@tienda.es", "Peña", "Cierre nº 2", "Ñ"});
  EXPECT_TRUE(partly.starts_with("Sent, but No lo aceptan: nadie@tienda.es: 550 5.1.1")) << partly;
  ExpectError(To("nadie@tienda.es", system.starttls), "550 5.1.1 <nadie@tienda.es>");
  Configure("Security", "tls");
  EXPECT_EQ(Error(To("jefa@tienda.es", system.tls)), "");
  const std::string arrived = system.Arrived(3);
  EXPECT_NE(arrived.find("Delivered-To: jefa@tienda.es"), std::string::npos) << arrived;
  EXPECT_NE(arrived.find("(using TLS"), std::string::npos) << arrived;
  EXPECT_NE(arrived.find("Subject: =?"), std::string::npos) << arrived;
  Configure("Security", "starttls");
  const auto start = std::chrono::steady_clock::now();
  ExpectError(To("jefa@tienda.es", system.slow), std::string(kMayHaveArrived));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(8500));
  EXPECT_GT(system.Arrived(4).size(), arrived.size());  // it did arrive
}

}  // namespace
}  // namespace tpv
