#include "adapters/odbc/distinct_leap.h"

#include <vector>

#include "base/text.h"
#include "data/schema.h"

namespace tpv::odbc {

namespace {

bool Are(const std::vector<std::string>& words, std::size_t at, std::initializer_list<std::string_view> these) {
  for (const std::string_view word : these) {
    if (!EqualNoCase(words[at++], word)) return false;
  }
  return true;
}

}  // namespace

// Its recursive part may hold neither MIN nor TOP there, so the next value is the first by
// number. It ends with the value that has none behind it.
std::optional<std::string> LeapThroughIndex(std::string_view sql, bool open_server) {
  if (!StartsWithNoCase(sql, "SELECT DISTINCT ")) return std::nullopt;  // nearly all
  std::vector<std::string> words = Split(Trim(sql), " ");
  std::erase(words, "");
  if (words.size() != 8 || !Are(words, 0, {"SELECT", "DISTINCT"}) || !Are(words, 3, {"FROM"}) ||
      !Are(words, 5, {"ORDER", "BY", words[2]})) {
    return std::nullopt;
  }
  const schema::Table* table = schema::FindTable(words[4]);
  if (table == nullptr || schema::LeadingColumn(*table, words[2]) == nullptr) return std::nullopt;
  const std::string& name = words[2];
  const std::string from = " FROM " + words[4];
  const std::string value = words[4] + "." + name;
  return "WITH salto (valor) AS (SELECT MIN(" + name + ")" + from + " UNION ALL SELECT siguiente.valor FROM (SELECT " +
         value + " AS valor, ROW_NUMBER() OVER (ORDER BY " + value + ") AS puesto" + from + " INNER JOIN salto ON " +
         value + " > salto.valor) AS siguiente WHERE siguiente.puesto = 1) SELECT NULL AS " + name +
         " WHERE EXISTS (SELECT 1" + from + " WHERE " + name + " IS NULL) UNION ALL SELECT valor FROM salto WHERE "
         "valor IS NOT NULL ORDER BY 1" + (open_server ? "" : " OPTION (MAXRECURSION 0)");
}

}  // namespace tpv::odbc
