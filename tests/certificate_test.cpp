// Which certificates a shop may register its invoices with.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "adapters/fiscal/client_certificate.h"
#include "tests/agency_fixture.h"

namespace tpv::fiscal {
namespace {

TEST_F(AgencyFixture, ACertificateIsUsedOnlyWhenItIsWholeAndTheUsersAlone) {
  if (!MakeCertificates()) GTEST_SKIP() << "no openssl program";
  const auto shop = folder / "shop.pem";
  const auto key = folder / "shop.key";
  const auto run = [](const std::vector<std::string>& words) { ASSERT_TRUE(RunProgram(words).done) << words[1]; };
  run({"openssl", "rsa", "-aes256", "-passout", "pass:señor 1", "-in", key, "-out", folder / "locked.key"});
  for (const std::string kind : {"", "-legacy"}) {
    std::vector<std::string> words = {"openssl", "pkcs12", "-export", "-in", shop, "-inkey", key,
                                      "-passout", "pass:señor 1", "-out", folder / "shop" + kind + ".p12"};
    if (!kind.empty()) words.insert(words.begin() + 3, kind);
    run(words);
  }
  std::ofstream(folder / "none.p12") << "nada";
  std::filesystem::copy(key, folder / "seen.key");
  for (const char* file : {"locked.key", "shop.p12", "shop-legacy.p12", "none.p12"}) {
    ::chmod((folder / file).c_str(), 0600);
  }
  ::chmod((folder / "seen.key").c_str(), 0640);
  const struct {
    std::string certificate, key, password, trouble;
  } cases[] = {
      {shop, key, "", ""},
      {shop, folder / "locked.key", "señor 1", ""},
      {folder / "shop.p12", "", "señor 1", ""},
      {folder / "shop-legacy.p12", "", "señor 1", ""},
      {"", "", "", "Falta el certificado"},
      {folder / "fehlt.p12", "", "", "No existe"},
      {folder.path(), "", "", "no es un fichero"},
      {folder / "none.p12", "", "equis", "No se puede abrir"},
      {folder / "shop.p12", "", "otra", "contraseña (Fiscal.Password) no es la suya"},
      {shop, folder / "locked.key", "", "No se puede abrir"},
      {shop, folder / "server.key", "", "no es la del certificado"},
      {shop, folder / "seen.key", "", "Otros usuarios pueden leer"},
  };
  for (const auto& [certificate, key_file, password, trouble] : cases) {
    Set("Certificate", certificate);
    Set("Key", key_file);
    Set("Password", password);
    const std::string found = CertificateTrouble(settings);
    EXPECT_NE(found.find(trouble), std::string::npos) << certificate << " " << key_file << ": " << found;
    EXPECT_EQ(found.empty(), trouble.empty()) << certificate << " " << key_file << ": " << found;
    EXPECT_TRUE(password.empty() || found.find(password) == std::string::npos);
  }
}

}  // namespace
}  // namespace tpv::fiscal
