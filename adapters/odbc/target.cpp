#include "adapters/odbc/target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <utility>
#include <vector>

#include "base/text.h"

namespace tpv::odbc {

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

// The end of a value that begins at `at`: its ";", unless braces hold it.
std::size_t EndOfValue(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] == ' ') ++at;
  if (at < text.size() && text[at] == '{') {
    for (at = text.find('}', at); at != std::string_view::npos; at = text.find('}', at)) {
      if (at + 1 >= text.size() || text[at + 1] != '}') break;
      at += 2;
    }
    if (at == std::string_view::npos) return text.size();
  }
  return std::min(text.find(';', at), text.size());
}

Pairs ReadPairs(std::string_view text) {
  Pairs pairs;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t equals = text.find('=', at);
    if (equals == std::string_view::npos) {
      if (Trim(text.substr(at)).empty()) break;
      throw TargetError("La cadena de conexión no es correcta: falta un «=»");
    }
    const std::size_t end = EndOfValue(text, equals + 1);
    pairs.emplace_back(Trim(text.substr(at, equals - at)),
                       Trim(text.substr(equals + 1, end - equals - 1)));
    at = end + 1;
  }
  return pairs;
}

bool Has(const Pairs& pairs, std::initializer_list<std::string_view> keys) {
  for (const auto& [key, value] : pairs) {
    for (const std::string_view wanted : keys) {
      if (EqualNoCase(key, wanted)) return true;
    }
  }
  return false;
}

void RequireNothingAgainstEncryption(const Pairs& pairs) {
  for (const auto& [key, value] : pairs) {
    if (!EqualNoCase(key, "Encrypt") && !EqualNoCase(key, "Encryption")) continue;
    const bool demands = EqualNoCase(value, "yes") || EqualNoCase(value, "mandatory") ||
                         EqualNoCase(value, "strict") || EqualNoCase(value, "require");
    if (demands) continue;
    throw TargetError("Se exige cifrado (TPV_ODBC_ENCRYPT) y la conexión lo quita: " + key + "=" +
                      value);
  }
}

// Braces around what drivers take for their own; a "}" inside is doubled only
// where there is no way without, since older drivers take both for the value.
std::string Braced(const std::string& value) {
  const bool must = value.find(';') != std::string::npos || value.starts_with('{');
  const bool should = value.find_first_of("[](),?*=!@{ ") != std::string::npos;
  if (must) return "{" + ReplaceAll(value, "}", "}}") + "}";
  return should && value.find('}') == std::string::npos ? "{" + value + "}" : value;
}

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
  return target;
}

std::string FullConnectionString(const Target& target) {
  const Pairs pairs = ReadPairs(target.connection);
  std::string text = target.connection;
  const auto add = [&text](std::string_view key, const std::string& value) {
    if (!text.ends_with(';')) text += ';';
    text.append(key).append("=").append(Braced(value));
  };
  if (!target.user.empty() && !Has(pairs, {"UID", "User"})) add("UID", target.user);
  if (!target.password.empty()) add("PWD", target.password);
  if (!Has(pairs, {"ClientCharset"})) add("ClientCharset", "UTF-8");  // FreeTDS's word
  if (target.encrypt) {
    RequireNothingAgainstEncryption(pairs);
    // FreeTDS knows the one, other drivers the other.
    if (!Has(pairs, {"Encryption"})) add("Encryption", "require");
    if (!Has(pairs, {"Encrypt"})) add("Encrypt", "yes");
  }
  return text;
}

}  // namespace tpv::odbc
