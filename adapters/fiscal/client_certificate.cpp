#include "adapters/fiscal/client_certificate.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/pkcs12.h>
#include <openssl/provider.h>
#include <openssl/x509.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include "fiscal/agency.h"

namespace tpv::fiscal {

namespace {

struct Free {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
  void operator()(PKCS12* store) const { PKCS12_free(store); }
  void operator()(STACK_OF(X509) * chain) const { sk_X509_pop_free(chain, X509_free); }
};
template <typename Kind>
using Owned = std::unique_ptr<Kind, Free>;

struct Pair {
  Owned<X509> certificate;
  Owned<EVP_PKEY> key;
  std::vector<Owned<X509>> chain;
};

[[noreturn]] void Fail(const std::string& what) { throw CannotSend(what); }

std::string Quoted(const std::string& path) { return "«" + path + "»"; }

std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) Fail("No se puede leer el certificado " + Quoted(path));
  return {std::istreambuf_iterator<char>(file), {}};
}

// Whoever reads the key is the shop to the agency.
void RequirePrivate(const std::string& path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) {
    Fail("No existe el certificado " + Quoted(path) + " o no se puede leer");
  }
  if (!S_ISREG(about.st_mode)) Fail(Quoted(path) + " no es un fichero");
  if (about.st_uid != ::geteuid()) Fail(Quoted(path) + " es de otro usuario");
  if ((about.st_mode & 077) != 0) {
    Fail("Otros usuarios pueden leer " + Quoted(path) + ", que tiene la clave del certificado: chmod 600");
  }
}

Owned<BIO> Over(const std::string& bytes) {
  return Owned<BIO>(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
}

// The library's own callback would ask on the terminal where there is no password.
int GivePassword(char* buffer, int size, int, void* password) {
  const auto& text = *static_cast<const std::string*>(password);
  if (text.size() > static_cast<std::size_t>(size)) return -1;
  std::copy(text.begin(), text.end(), buffer);
  return static_cast<int>(text.size());
}

Pair FromPem(const std::string& certificates, const std::string& key, std::string password) {
  Pair pair;
  const Owned<BIO> file = Over(certificates);
  pair.certificate.reset(PEM_read_bio_X509(file.get(), nullptr, &GivePassword, &password));
  while (X509* const next = PEM_read_bio_X509(file.get(), nullptr, &GivePassword, &password)) {
    pair.chain.emplace_back(next);
  }
  pair.key.reset(PEM_read_bio_PrivateKey(Over(key).get(), nullptr, &GivePassword, &password));
  return pair;
}

// Files exported by older systems are encrypted in ways that the library knows on demand.
class OlderCiphers {
 public:
  OlderCiphers() : legacy_(OSSL_PROVIDER_try_load(nullptr, "legacy", 1)) {}
  ~OlderCiphers() {
    if (legacy_ != nullptr) OSSL_PROVIDER_unload(legacy_);
  }
  OlderCiphers(const OlderCiphers&) = delete;
  OlderCiphers& operator=(const OlderCiphers&) = delete;

 private:
  OSSL_PROVIDER* legacy_;
};

Pair FromPkcs12(const std::string& bytes, const std::string& password) {
  const OlderCiphers known;
  const Owned<PKCS12> store(d2i_PKCS12_bio(Over(bytes).get(), nullptr));
  X509* certificate = nullptr;
  EVP_PKEY* key = nullptr;
  STACK_OF(X509)* others = nullptr;
  Pair pair;
  if (!store || PKCS12_parse(store.get(), password.c_str(), &key, &certificate, &others) != 1) return pair;
  pair.certificate.reset(certificate);
  pair.key.reset(key);
  const Owned<STACK_OF(X509)> owned(others);
  while (others != nullptr && sk_X509_num(others) > 0) pair.chain.emplace_back(sk_X509_shift(others));
  return pair;
}

std::string Written(BIO* bio) {
  const char* data = nullptr;
  const long size = BIO_get_mem_data(bio, &data);
  return {data, static_cast<std::size_t>(size)};
}

ClientCertificate InPem(const Pair& pair) {
  const Owned<BIO> certificates(BIO_new(BIO_s_mem()));
  const Owned<BIO> key(BIO_new(BIO_s_mem()));
  bool written = PEM_write_bio_X509(certificates.get(), pair.certificate.get()) == 1 &&
                 PEM_write_bio_PKCS8PrivateKey(key.get(), pair.key.get(), nullptr, nullptr, 0, nullptr,
                                               nullptr) == 1;
  for (const auto& other : pair.chain) {
    written = written && PEM_write_bio_X509(certificates.get(), other.get()) == 1;
  }
  if (!written) Fail("No se puede preparar el certificado");
  return {Written(certificates.get()), Written(key.get())};
}

}  // namespace

ClientCertificate LoadCertificate(const AgencySettings& settings) {
  if (settings.certificate.empty()) Fail("Falta el certificado (ajuste Fiscal.Certificate)");
  const std::string& key_file = settings.key.empty() ? settings.certificate : settings.key;
  RequirePrivate(key_file);
  const std::string bytes = Read(settings.certificate);
  const bool pem = bytes.find("-----BEGIN") != std::string::npos;
  const Pair pair = pem ? FromPem(bytes, Read(key_file), settings.password)
                        : FromPkcs12(bytes, settings.password);
  ERR_clear_error();  // what was tried in vain is nobody else's error
  const std::string named = " certificado " + Quoted(settings.certificate);
  if (!pair.certificate || !pair.key) {
    Fail("No se puede abrir el" + named + ": la contraseña (Fiscal.Password) no es la suya, o le falta la clave");
  }
  if (X509_check_private_key(pair.certificate.get(), pair.key.get()) != 1) {
    Fail("La clave " + Quoted(key_file) + " no es la del" + named);
  }
  if (X509_cmp_current_time(X509_get0_notAfter(pair.certificate.get())) < 0) {
    Fail("Ha caducado el" + named + ": hay que renovarlo");
  }
  return InPem(pair);
}

std::string CertificateTrouble(const Settings& settings) {
  try {
    LoadCertificate(ReadAgencySettings(settings));
    return "";
  } catch (const CannotSend& error) {
    return error.what();
  }
}

}  // namespace tpv::fiscal
