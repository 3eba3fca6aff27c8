#include "panel/pictures.h"

#include <cmath>
#include <functional>

#include "base/mask.h"
#include "panel/euros.h"
#include "panel/ranking.h"

namespace tpv::panel {

namespace {

using Kind = ChartData::Kind;

constexpr std::int64_t kDaysAsDays = 62;  // longer periods are shown by months

ChartData Empty(std::string caption, Kind kind) {
  return {std::move(caption), {"Este periodo", "El anterior"}, {}, {{}, {}}, kind, kEuros};
}

void AddValues(ChartData& chart, std::string label, double now, double before) {
  chart.labels.push_back(std::move(label));
  chart.values[0].push_back(now);
  chart.values[1].push_back(before);
}

// The greatest of this period by name, and all the others together.
ChartData Ranking(std::string caption, const Amounts& now, const Amounts& before,
                  const std::function<std::string(std::int32_t)>& name) {
  ChartData chart = Empty(std::move(caption), Kind::Bars);
  double rest_now = Sum(now);
  double rest_before = Sum(before);
  std::size_t named_before = 0;
  for (const Amount& amount : Greatest(now)) {
    const Amount* same = Find(before, amount.id);
    const double amount_before = same != nullptr ? same->euros : 0;
    named_before += same != nullptr;
    AddValues(chart, name(amount.id), amount.euros, amount_before);
    rest_now -= amount.euros;
    rest_before -= amount_before;
  }
  const bool others = now.size() > chart.labels.size() || before.size() > named_before;
  if (others) AddValues(chart, "Los demás", rest_now, rest_before);
  return chart;
}

std::string NameOf(const std::map<std::int32_t, std::string>& names, std::int32_t id, const std::string& otherwise) {
  const auto found = names.find(id);
  return found != names.end() && !found->second.empty() ? found->second : otherwise + std::to_string(id);
}

// What was sold on each day of the period, or in each month of it, in order.
struct Course {
  std::vector<std::string> labels;
  std::vector<double> euros;
};

Course CourseOf(const Days& days, const Sums& sums, bool by_month) {
  Course course;
  DateTime last{};
  for (DateTime day = days.first; day <= days.last; day = AddDays(day, 1)) {
    if (course.labels.empty() || !by_month || day.month != last.month) {
      course.labels.push_back(FormatDate(day, by_month ? "MM/YYYY" : "DD/MM"));
      course.euros.push_back(0);
    }
    last = day;
    const auto found = sums.by_day.find(day);
    if (found != sums.by_day.end()) course.euros.back() += Euros(found->second);
  }
  return course;
}

// Day beside day, the first beside the first.
ChartData DaysOf(const Board& board) {
  const bool by_month = board.periods.now.Count() > kDaysAsDays;
  ChartData chart = Empty(by_month ? "Ventas por mes" : "Ventas por día", by_month ? Kind::Columns : Kind::Line);
  Course now = CourseOf(board.periods.now, board.now, by_month);
  Course before = CourseOf(board.periods.before, board.before, by_month);
  if (now.labels.size() <= 7) chart.kind = Kind::Columns;
  chart.labels = now.labels.size() >= before.labels.size() ? std::move(now.labels) : std::move(before.labels);
  chart.values = {std::move(now.euros), std::move(before.euros)};
  return chart;
}

// From the first hour with a sale to the last.
ChartData HoursOf(const Board& board) {
  ChartData chart = Empty("Ventas por hora del día", Kind::Columns);
  const auto sold = [&](std::size_t hour) { return board.now.by_hour[hour] != 0 || board.before.by_hour[hour] != 0; };
  std::size_t first = 0;
  std::size_t end = 24;
  while (first < end && !sold(first)) ++first;
  while (end > first && !sold(end - 1)) --end;
  for (std::size_t hour = first; hour < end; ++hour) {
    AddValues(chart, std::to_string(hour) + " h", Euros(board.now.by_hour[hour]), Euros(board.before.by_hour[hour]));
  }
  return chart;
}

ChartData MeansOf(const Board& board) {
  ChartData chart = Empty("Cobros", Kind::Columns);
  AddValues(chart, "Metálico", InCents(board.now.cash), InCents(board.before.cash));
  AddValues(chart, "Tarjeta", InCents(board.now.card), InCents(board.before.card));
  return chart;
}

ChartData RatesOf(const Board& board) {
  ChartData chart = Empty("Ventas por tipo de IVA", Kind::Bars);
  std::map<double, std::pair<Micros, Micros>, std::greater<>> rates;
  for (const auto& [rate, sold] : board.now.by_rate) rates[rate].first = sold;
  for (const auto& [rate, sold] : board.before.by_rate) rates[rate].second = sold;
  for (const auto& [rate, sold] : rates) {
    AddValues(chart, FormatNumber(rate, rate == std::floor(rate) ? "0" : "0.00") + " %", FromMicros(sold.first),
              FromMicros(sold.second));
  }
  return chart;
}

ChartData PendingOf(const Board& board) {
  ChartData chart{"Pendiente de cobro hoy, por antigüedad", {}, {}, {{}}, Kind::Bars, kEuros};
  chart.labels = {"Hasta 7 días", "De 8 a 30 días", "De 31 a 90 días", "De 91 a 365 días", "Más de un año"};
  for (const Cents cents : board.pending) chart.values[0].push_back(Euros(cents));
  return chart;
}

ChartData ShortagesOf(const Board& board) {
  ChartData chart{"Existencias que no llegan a 30 días a este ritmo", {}, {}, {{}}, Kind::Bars, "#,##0 días"};
  for (const Shortage& shortage : board.shortages) {
    chart.labels.push_back(NameOf(board.articles, shortage.article, "Artículo "));
    chart.values[0].push_back(std::floor(shortage.days));
  }
  return chart;
}

}  // namespace

std::array<ChartData, kPictures> Pictures(const Board& board) {
  return {DaysOf(board),
          HoursOf(board),
          MeansOf(board),
          Ranking("Ventas por vendedor", InEuros(board.now.by_seller), InEuros(board.before.by_seller),
                  [&](std::int32_t id) { return NameOf(board.sellers, id, "Vendedor "); }),
          Ranking("Ventas por caja", InEuros(board.now.by_till), InEuros(board.before.by_till),
                  [](std::int32_t till) { return "Caja " + std::to_string(till); }),
          Ranking("Ventas por artículo", ArticleAmounts(board.now), ArticleAmounts(board.before),
                  [&](std::int32_t id) { return NameOf(board.articles, id, "Artículo "); }),
          RatesOf(board),
          PendingOf(board),
          ShortagesOf(board)};
}

}  // namespace tpv::panel
