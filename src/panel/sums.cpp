#include "panel/sums.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/rounding.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

namespace {

constexpr std::size_t kIdsAtOnce = 500;

Cents ToCents(double euros) { return std::llround(RoundHalfAway(euros, 2) * 100); }
Micros ToMicros(double euros) { return std::llround(euros * 1e6); }

// The lines of tickets together, each ticket's in the order they were keyed.
std::string Lines(const Days& days) {
  return "SELECT Cav_Id,Cav_Fecha,Cav_Caja,Cav_Agente,Lav_Idart,Lav_Uni,Lav_Importe,Tiva_Iva "
         "FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
         "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Fecha " +
         days.Between() + "AND Cav_Ticket = 1 ORDER BY Cav_Fecha,Cav_Id,Lav_Id";
}

// Adds up as the rows come. A ticket is rounded once, as money of four decimals and then to
// cents: what the journal's own expression does in the store.
class Adder {
 public:
  Adder(Sums& sums, const LineTax& tax_of) : sums_(sums), tax_of_(tax_of) {}
  ~Adder() = default;

  void Add(Recordset& row) {
    enum Column : std::size_t { kTicket, kDate, kTill, kSeller, kArticle, kUnits, kAmount, kRate };
    const std::int32_t ticket = row.Field(kTicket).ToInt32();
    if (ticket != ticket_) {
      EndTicket();
      ticket_ = ticket;
      when_ = row.Field(kDate).ToDate();
      till_ = row.Field(kTill).IntOr(0);
      seller_ = row.Field(kSeller).IntOr(0);
    }
    const Variant amount = row.Field(kAmount);
    const Variant rate = row.Field(kRate);
    if (!amount.IsNull() && !rate.IsNull()) exact_ += amount.ToDouble() + amount.ToDouble() / 100 * rate.ToDouble();
    AddLine(row.Field(kArticle).IntOr(0), row.Field(kUnits).NumberOr(0), amount.NumberOr(0), rate.NumberOr(0));
  }

  void EndTicket() {
    if (ticket_ == 0) return;
    const Cents cents = ToCents(RoundAsEngine(RoundAsEngine(exact_, 4), 2));
    ++sums_.tickets;
    sums_.sold += cents;
    sums_.by_day[StartOfDay(when_)] += cents;
    sums_.by_hour[static_cast<std::size_t>(when_.hour)] += cents;
    sums_.by_seller[seller_] += cents;
    sums_.by_till[till_] += cents;
    exact_ = 0;
  }

 private:
  void AddLine(std::int32_t article, double units, double amount, double rate) {
    const Micros sold = ToMicros(amount) + ToMicros(tax_of_(amount, rate));
    SoldArticle& of_article = sums_.by_article[article];
    of_article.sold += sold;
    of_article.units += units;
    sums_.by_rate[rate] += sold;
    if (amount < 0) sums_.returned += sold;
  }

  Sums& sums_;
  const LineTax& tax_of_;
  std::int32_t ticket_ = 0;
  DateTime when_;
  std::int32_t till_ = 0;
  std::int32_t seller_ = 0;
  double exact_ = 0;  // euros of the ticket so far
};

// The journal's totals of collections before they are rounded, so that months add up to a year.
void AddCollections(Connection& connection, const Days& days, Sums& sums) {
  const auto totals = connection.Execute(
      "SELECT SUM(DiaCaj_Entrega-DiaCaj_Devolucion), SUM(DiaCaj_Tarjeta), SUM(DiaCaj_Descuento) FROM DiaCaj "
      "WHERE DiaCaj_fecha " + days.Between() + " AND DiaCaj_Tipo IN ('1','2') ");
  if (totals->Eof()) return;
  sums.cash = ToMicros(totals->Field(0).NumberOr(0));
  sums.card = ToMicros(totals->Field(1).NumberOr(0));
  sums.discounts = ToMicros(totals->Field(2).NumberOr(0));
}

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

Sums& Sums::operator+=(const Sums& more) {
  const auto add = [](auto& to, const auto& from) {
    for (const auto& [key, value] : from) to[key] += value;
  };
  add(by_day, more.by_day);
  add(by_seller, more.by_seller);
  add(by_till, more.by_till);
  add(by_rate, more.by_rate);
  for (std::size_t hour = 0; hour < by_hour.size(); ++hour) by_hour[hour] += more.by_hour[hour];
  for (const auto& [article, of_article] : more.by_article) {
    SoldArticle& sum = by_article[article];
    sum.sold += of_article.sold;
    sum.units += of_article.units;
  }
  tickets += more.tickets;
  sold += more.sold;
  returned += more.returned;
  cash += more.cash;
  card += more.card;
  discounts += more.discounts;
  return *this;
}

Sums ReadSums(Connection& connection, const Days& days, const LineTax& tax_of) {
  Sums sums;
  Adder adder(sums, tax_of);
  for (const auto lines = connection.Execute(Lines(days)); !lines->Eof(); lines->MoveNext()) {
    Pulse();
    adder.Add(*lines);
  }
  adder.EndTicket();
  AddCollections(connection, days, sums);
  return sums;
}

PendingByAge ReadPending(Connection& connection, const DateTime& today) {
  PendingByAge pending{};
  const auto tickets = connection.Execute(
      "SELECT Cav_Fecha, " + std::string(kAmountWithTax) + " - " + std::string(kAmountCollected) +
      " AS Pendiente FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id "
      "INNER JOIN zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva "
      "WHERE Cav_Ticket = 1 AND Cav_Cobrado = 0 GROUP BY Cav_Id,Cav_Fecha ORDER BY Cav_Fecha");
  for (; !tickets->Eof(); tickets->MoveNext()) {
    Pulse();
    const Variant date = tickets->Field(0);
    std::size_t age = kAges.size();  // a ticket without a date counts as the oldest
    if (!date.IsNull()) {
      const std::int64_t days = Days{StartOfDay(date.ToDate()), today}.Count() - 1;
      age = static_cast<std::size_t>(
          std::find_if(kAges.begin(), kAges.end(), [&](int most) { return days <= most; }) - kAges.begin());
    }
    pending[age] += ToCents(tickets->Field(1).NumberOr(0));
  }
  return pending;
}

std::vector<Shortage> ReadShortages(Connection& connection, const Sums& sums, std::int64_t days_of_period,
                                    double within, std::size_t most) {
  std::vector<std::int32_t> sold;
  for (const auto& [article, of_article] : sums.by_article) {
    if (article != 0 && of_article.units > 0) sold.push_back(article);
  }
  std::sort(sold.begin(), sold.end());
  std::vector<Shortage> shortages;
  ForRowsOf(connection, sold, "SELECT exis_idart, SUM(exis_uni) FROM Exis WHERE exis_idart",
            " GROUP BY exis_idart", [&](Recordset& row) {
              const std::int32_t article = row.Field(0).ToInt32();
              const double pace = sums.by_article.at(article).units / static_cast<double>(days_of_period);
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
