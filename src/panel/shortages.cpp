#include "panel/shortages.h"

#include <algorithm>
#include <functional>

#include "data/sql_text.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

namespace {

constexpr std::size_t kIdsAtOnce = 500;

// Rows of the ids, some hundred at a time.
void ForRowsOf(Connection& connection, const std::vector<std::int32_t>& ids, const std::string& head,
               const std::string& tail, const std::function<void(Recordset&)>& use) {
  for (std::size_t at = 0; at < ids.size(); at += kIdsAtOnce) {
    std::string list;
    for (std::size_t i = at; i < std::min(at + kIdsAtOnce, ids.size()); ++i) {
      list += (list.empty() ? "" : ",") + sql::Number(std::int64_t{ids[i]});
    }
    for (const auto rows = connection.Execute(head + " IN (" + list + ")" + tail); !rows->Eof(); rows->MoveNext()) {
      Pulse();
      use(*rows);
    }
  }
}

}  // namespace

std::vector<Shortage> ReadShortages(Connection& connection, const Sums& sums, std::int64_t days_of_period,
                                    double within, std::size_t most) {
  std::vector<std::int32_t> sold;
  for (const SoldArticle& of_article : sums.by_article) {
    if (of_article.article != 0 && of_article.units > 0) sold.push_back(of_article.article);
  }
  std::sort(sold.begin(), sold.end());
  std::vector<Shortage> shortages;
  ForRowsOf(connection, sold, "SELECT exis_idart, SUM(exis_uni) FROM Exis WHERE exis_idart",
            " GROUP BY exis_idart", [&](Recordset& row) {
              const std::int32_t article = row.Field(0).ToInt32();
              const double pace = sums.by_article.Find(article)->units / static_cast<double>(days_of_period);
              const double days = std::max(row.Field(1).NumberOr(0), 0.0) / pace;
              if (days < within) shortages.push_back({article, days});
            });
  std::sort(shortages.begin(), shortages.end(), [](const Shortage& one, const Shortage& other) {
    return std::pair(one.days, one.article) < std::pair(other.days, other.article);
  });
  if (shortages.size() > most) shortages.resize(most);
  return shortages;
}

std::map<std::int32_t, std::string> ArticleNames(Connection& connection, const std::vector<std::int32_t>& ids) {
  std::map<std::int32_t, std::string> names;
  ForRowsOf(connection, ids, "SELECT art_id, art_des FROM ART WHERE art_id", "",
            [&](Recordset& row) { names[row.Field(0).ToInt32()] = row.Field(1).TextOr(""); });
  return names;
}

}  // namespace tpv::panel
