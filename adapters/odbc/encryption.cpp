#include "adapters/odbc/encryption.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "adapters/odbc/target.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

// No host has a blank in its name, so nothing else can answer to it.
constexpr const char* kVerifiedServer = "tpv verificado";

void RequireNothingAgainst(const Pairs& pairs) {
  for (const auto& [key, value] : pairs) {
    const bool encrypts = EqualNoCase(key, "Encrypt") || EqualNoCase(key, "Encryption");
    const bool trusts = EqualNoCase(key, "TrustServerCertificate");
    const bool demands = EqualNoCase(value, "yes") || EqualNoCase(value, "mandatory") ||
                         EqualNoCase(value, "strict") || EqualNoCase(value, "require");
    if ((!encrypts || demands) && (!trusts || EqualNoCase(value, "no"))) continue;
    throw TargetError("Se exige cifrado (TPV_ODBC_ENCRYPT) y la conexión lo quita: " + key + "=" +
                      value);
  }
}

struct Address {
  std::string host;
  std::string port;
  std::string instance;
};

// "tcp:servidor\instancia,1433", every part but the host left out or not.
Address AddressOf(std::string text) {
  if (StartsWithNoCase(text, "tcp:")) text.erase(0, 4);
  const auto split_off = [&text](char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string::npos) return std::string();
    std::string rest = Trim(text.substr(at + 1));
    text.resize(at);
    return rest;
  };
  Address address;
  address.port = split_off(',');
  address.instance = split_off('\\');
  address.host = Trim(text);
  return address;
}

std::string Line(const char* key, const std::string& value) {
  if (value.find_first_of("\r\n") != std::string::npos) {
    throw TargetError("La conexión con el servidor no puede tener saltos de línea");
  }
  return value.empty() ? std::string() : std::string("\t") + key + " = " + value + "\n";
}

// FreeTDS verifies only what its own file says, and reads that file only for a
// server that the file names.
Verified ForFreeTds(Pairs pairs, const std::string& ca_file) {
  const Address address = AddressOf(Find(pairs, {"Server"}));
  if (address.host.empty() || Has(pairs, {"Servername"})) {
    throw TargetError(
        "Se exige cifrado (TPV_ODBC_ENCRYPT): con FreeTDS el servidor va en «Server=» y su puerto "
        "en «Port=», no en «Servername=»");
  }
  Pairs all = {{"Driver", DriverLibrary(pairs)}, {"Servername", kVerifiedServer}};
  Remove(pairs, {"DSN", "Driver", "Server", "Address", "Encryption", "Encrypt"});
  all.insert(all.end(), pairs.begin(), pairs.end());
  all.emplace_back("Encryption", "require");
  return {all, std::string("[") + kVerifiedServer + "]\n" + Line("host", address.host) +
                   Line("port", address.port) + Line("instance", address.instance) +
                   Line("ca file", ca_file.empty() ? "system" : ca_file) +
                   Line("check certificate hostname", "yes") + Line("encryption", "require")};
}

Verified ForMicrosoft(Pairs pairs, const std::string& ca_file) {
  if (!ca_file.empty()) {
    throw TargetError(
        "Este controlador ODBC solo conoce las autoridades de la máquina: instale allí el "
        "certificado (update-ca-certificates) y quite TPV_ODBC_CA");
  }
  if (!Has(pairs, {"Encrypt"})) pairs.emplace_back("Encrypt", "yes");
  if (!Has(pairs, {"TrustServerCertificate"})) pairs.emplace_back("TrustServerCertificate", "no");
  return {pairs, {}};
}

void RequireReadable(const std::string& ca_file) {
  if (ca_file.empty() || ::access(ca_file.c_str(), R_OK) == 0) return;
  throw TargetError("No se puede leer el certificado de la autoridad «" + ca_file +
                    "» (TPV_ODBC_CA)");
}

}  // namespace

Verified DemandEncryption(const Pairs& pairs, const std::string& ca_file) {
  const Pairs all = WithDataSource(pairs);
  RequireNothingAgainst(all);
  RequireReadable(ca_file);
  const std::string driver = DriverLibrary(all);
  const std::string library = driver.substr(driver.rfind('/') + 1);
  if (library.starts_with("libtdsodbc")) return ForFreeTds(all, ca_file);
  if (library.starts_with("libmsodbcsql")) return ForMicrosoft(all, ca_file);
  throw TargetError("Se exige cifrado (TPV_ODBC_ENCRYPT) y con el controlador ODBC «" + driver +
                    "» no se puede comprobar el certificado del servidor: use FreeTDS (tdsodbc) o "
                    "msodbcsql");
}

// A file without a name: the process alone reads it, and it ends with it.
void UseFreeTdsSettings(const std::string& text) {
  static const int file = ::memfd_create("freetds.conf", MFD_CLOEXEC);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  static const int told = ::setenv("FREETDSCONF", path.c_str(), 1);
  const bool there = file >= 0 && told == 0 && ::ftruncate(file, 0) == 0 &&
                     ::pwrite(file, text.data(), text.size(), 0) ==
                         static_cast<ssize_t>(text.size()) &&
                     ::access(path.c_str(), R_OK) == 0;
  if (!there) throw TargetError("No se pueden preparar los ajustes de FreeTDS para el cifrado");
}

}  // namespace tpv::odbc
