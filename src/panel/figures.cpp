#include "panel/figures.h"

#include <cmath>
#include <numeric>

#include "base/mask.h"
#include "panel/euros.h"

namespace tpv::panel {

namespace {

std::string WithChange(double now, double before, const std::string& shown) {
  if (before == 0) return shown;
  const double percent = (now - before) / std::fabs(before) * 100;
  return shown + " (" + (percent >= 0 ? "+" : "") + FormatNumber(percent, "#,##0") + " %)";
}

Figure AmountFigure(const char* caption, double now, double before) {
  return {caption, FormatNumber(now, kEuros), WithChange(now, before, FormatNumber(before, "#,##0.00"))};
}

double Mean(const Sums& sums) {
  return sums.tickets == 0 ? 0 : Euros(sums.sold) / static_cast<double>(sums.tickets);
}

}  // namespace

std::array<Figure, kFigures> Figures(const Board& board) {
  const Sums& now = board.now;
  const Sums& before = board.before;
  const auto tickets = [](const Sums& sums) { return FormatNumber(static_cast<double>(sums.tickets), "#,##0"); };
  const Cents owed = std::accumulate(board.pending.begin(), board.pending.end(), Cents{0});
  const Cents owed_long = std::accumulate(board.pending.begin() + 2, board.pending.end(), Cents{0});
  return {AmountFigure("Ventas", Euros(now.sold), Euros(before.sold)),
          {"Tickets", tickets(now),
           WithChange(static_cast<double>(now.tickets), static_cast<double>(before.tickets), tickets(before))},
          AmountFigure("Ticket medio", Mean(now), Mean(before)),
          AmountFigure("Devoluciones", FromMicros(now.returned), FromMicros(before.returned)),
          AmountFigure("Descuentos al cobrar", InCents(now.discounts), InCents(before.discounts)),
          {"Pendiente de cobro", FormatNumber(Euros(owed), kEuros), FormatNumber(Euros(owed_long), kEuros),
           "Más de 30 días"}};
}

}  // namespace tpv::panel
