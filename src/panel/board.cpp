#include "panel/board.h"

#include "context/context.h"
#include "data/statements.h"
#include "panel/monthly_sums.h"
#include "panel/ranking.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv::panel {

namespace {

constexpr std::size_t kMostShortages = 12;
constexpr double kSoon = 30;  // days that stock should last

Board ReadOneState(Connection& connection, const Periods& periods, const LineTax& tax_of, MonthlySums& months,
                   const DateTime& today) {
  const Snapshot snapshot(connection);
  Board board;
  board.periods = periods;
  board.now = months.Read(periods.now, tax_of);
  board.before = months.Read(periods.before, tax_of);
  board.pending = ReadPending(connection, today);
  board.shortages = ReadShortages(connection, board.now, periods.now.Count(), kSoon, kMostShortages);
  board.sellers = AgentNames(connection);
  std::vector<std::int32_t> named;
  for (const Amount& amount : Greatest(ArticleAmounts(board.now))) named.push_back(amount.id);
  for (const Shortage& shortage : board.shortages) named.push_back(shortage.article);
  board.articles = ArticleNames(connection, named);
  return board;
}

}  // namespace

Board ReadBoard(Context& context, const Periods& periods, const LineTax& tax_of) {
  Connection& connection = context.Database();
  const DateTime today = StartOfDay(context.ports.clock.Now());
  MonthlySums months(connection, today);
  months.Announce(periods.now);
  months.Announce(periods.before);
  try {
    Board board = ReadOneState(connection, periods, tax_of, months, today);
    months.Keep();
    return board;
  } catch (const GivenUp&) {
    months.Keep();  // the next one need not begin again
    throw;
  }
}

}  // namespace tpv::panel
