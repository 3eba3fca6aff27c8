#include "adapters/odbc/connection_string.h"

#include <odbcinst.h>

#include <algorithm>
#include <array>

#include "adapters/odbc/target.h"
#include "base/text.h"

namespace tpv::odbc {

namespace {

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

bool IsOneOf(std::string_view key, std::initializer_list<std::string_view> keys) {
  return std::any_of(keys.begin(), keys.end(),
                     [&](std::string_view wanted) { return EqualNoCase(key, wanted); });
}

std::string Unbraced(const std::string& value) {
  if (!value.starts_with('{') || !value.ends_with('}')) return value;
  return ReplaceAll(value.substr(1, value.size() - 2), "}}", "}");
}

// What the machine's odbc.ini or odbcinst.ini says; without a key, the section's
// keys, a NUL behind each.
std::string Profile(const std::string& section, const char* key, const char* file) {
  std::array<char, 4096> text{};
  const int length = SQLGetPrivateProfileString(section.c_str(), key, "", text.data(),
                                                static_cast<int>(text.size()), file);
  return length > 0 ? std::string(text.data(), static_cast<std::size_t>(length)) : std::string();
}

}  // namespace

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

std::string Written(const Pairs& pairs) {
  std::string text;
  for (const auto& [key, value] : pairs) text += (text.empty() ? "" : ";") + key + "=" + value;
  return text;
}

std::string Find(const Pairs& pairs, std::initializer_list<std::string_view> keys) {
  const auto found = std::find_if(pairs.begin(), pairs.end(),
                                  [&](const auto& pair) { return IsOneOf(pair.first, keys); });
  return found == pairs.end() ? std::string() : Unbraced(found->second);
}

bool Has(const Pairs& pairs, std::initializer_list<std::string_view> keys) {
  return std::any_of(pairs.begin(), pairs.end(),
                     [&](const auto& pair) { return IsOneOf(pair.first, keys); });
}

void Remove(Pairs& pairs, std::initializer_list<std::string_view> keys) {
  std::erase_if(pairs, [&](const auto& pair) { return IsOneOf(pair.first, keys); });
}

// A "}" inside is doubled only where there is no way without, since older drivers
// take both for the value.
std::string Braced(const std::string& value) {
  const bool must = value.find(';') != std::string::npos || value.starts_with('{');
  const bool should = value.find_first_of("[](),?*=!@{ ") != std::string::npos;
  if (must) return "{" + ReplaceAll(value, "}", "}}") + "}";
  return should && value.find('}') == std::string::npos ? "{" + value + "}" : value;
}

Pairs WithDataSource(const Pairs& pairs) {
  Pairs all = pairs;
  const std::string source = Find(pairs, {"DSN"});
  if (source.empty()) return all;
  for (const std::string& key : Split(Profile(source, nullptr, "odbc.ini"), std::string(1, '\0'))) {
    if (key.empty() || Has(pairs, {key})) continue;
    all.emplace_back(key, Braced(Profile(source, key.c_str(), "odbc.ini")));
  }
  return all;
}

std::string DriverLibrary(const Pairs& pairs) {
  std::string driver = Find(pairs, {"Driver"});
  if (driver.empty() || driver.find('/') != std::string::npos) return driver;
  return Profile(driver, "Driver", "odbcinst.ini");
}

}  // namespace tpv::odbc
