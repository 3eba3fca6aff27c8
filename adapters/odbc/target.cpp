#include "adapters/odbc/target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "adapters/odbc/encryption.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

class File {
 public:
  explicit File(const std::string& path) : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (file_ < 0) throw TargetError("No se puede leer el fichero de credenciales «" + path + "»");
  }
  ~File() { ::close(file_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // Asked of the open file, so that nobody swaps it in between.
  bool OfUserAlone() const {
    struct stat status {};
    return ::fstat(file_, &status) == 0 && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
  }
  std::string Text() const {
    std::string text;
    std::array<char, 512> chunk{};
    for (ssize_t got; (got = ::read(file_, chunk.data(), chunk.size())) > 0;) {
      text.append(chunk.data(), static_cast<std::size_t>(got));
    }
    return text;
  }

 private:
  int file_;
};

void ReadCredentials(const std::string& path, Target& target) {
  const File file(path);
  if (!file.OfUserAlone()) {
    throw TargetError("Otros pueden leer el fichero de credenciales «" + path +
                      "»: debe ser del usuario y solo suyo (chmod 600)");
  }
  const std::string text = file.Text();
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.pop_back();
    if (line.starts_with("user=")) target.user = line.substr(5);
    if (line.starts_with("password=")) target.password = line.substr(9);
    at = end + 1;
  }
}

}  // namespace

std::optional<std::string> ProcessEnvironment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

Target ReadTarget(std::string_view argument, const Environment& environment) {
  Target target;
  target.connection = Trim(argument);
  if (target.connection.empty()) throw TargetError("Falta la conexión con el servidor");
  if (target.connection.find('=') == std::string::npos) target.connection.insert(0, "DSN=");
  if (Has(ReadPairs(target.connection), {"PWD", "Password"})) {
    throw TargetError(
        "La contraseña no puede ir en la orden, donde otros pueden verla: use la variable "
        "TPV_ODBC_PASSWORD o un fichero suyo en TPV_ODBC_CREDENTIALS");
  }
  if (const auto path = environment("TPV_ODBC_CREDENTIALS")) ReadCredentials(*path, target);
  if (const auto user = environment("TPV_ODBC_USER")) target.user = *user;
  if (const auto password = environment("TPV_ODBC_PASSWORD")) target.password = *password;
  const auto encrypt = environment("TPV_ODBC_ENCRYPT");
  target.encrypt = encrypt && !EqualNoCase(*encrypt, "no");
  target.ca_file = environment("TPV_ODBC_CA").value_or("");
  return target;
}

Login LoginTo(const Target& target) {
  Pairs pairs = ReadPairs(target.connection);
  if (!target.user.empty() && !Has(pairs, {"UID", "User"})) {
    pairs.emplace_back("UID", Braced(target.user));
  }
  if (!target.password.empty()) pairs.emplace_back("PWD", Braced(target.password));
  if (!Has(pairs, {"ClientCharset"})) pairs.emplace_back("ClientCharset", "UTF-8");  // FreeTDS's word
  const Pairs all = WithDataSource(pairs);
  const bool named = !Find(all, {"UID", "User"}).empty() && !Find(all, {"PWD", "Password"}).empty();
  if (!target.encrypt) return {Written(pairs), target.password, named, false, {}};
  const Verified verified = DemandEncryption(pairs, target.ca_file);
  return {Written(verified.pairs), target.password, named, true, verified.freetds_settings};
}

}  // namespace tpv::odbc
