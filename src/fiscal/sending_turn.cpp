#include "fiscal/sending_turn.h"

#include <algorithm>

#include "base/text.h"
#include "data/insert_row.h"
#include "platform/database.h"

namespace tpv::fiscal {

namespace {

constexpr int kTurnSeconds = 150;  // a message takes a minute at most
constexpr int kShortestPause = 60;
constexpr int kLongestPause = 900;
constexpr std::size_t kTroubleLength = 500;

int PauseAfter(int failures) {
  int pause = kShortestPause;
  for (int i = 1; i < failures && pause < kLongestPause; ++i) pause *= 2;
  return std::min(pause, kLongestPause);
}

void Change(Connection& connection, const std::string& holder, const std::string& what) {
  connection.Execute("UPDATE FiscalTurno SET " + what + " WHERE Fit_Id = 1 AND Fit_Caja = " + sql::Quoted(holder));
}

}  // namespace

DateTime StoreTime(Connection& connection) {
  return connection.Execute("SELECT getdate() AS Ahora")->Field(0).ToDate();
}

std::optional<SendingTurn> ReadTurn(Connection& connection) {
  const auto row = connection.Execute(
      "SELECT Fit_Caja, Fit_Hasta, Fit_Proximo, Fit_Fallos, Fit_Entregado, Fit_Error FROM FiscalTurno "
      "WHERE Fit_Id = 1");
  if (row->Eof()) return std::nullopt;
  return SendingTurn{row->Field(0).TextOr(""), row->Field(1).ToDate(), row->Field(2).ToDate(),
                     row->Field(3).IntOr(0), row->Field(4).IntOr(0), row->Field(5).TextOr("")};
}

// A turn that goes on longer than one is given for is a clock's that was put back.
bool HasOther(const SendingTurn& turn, const std::string& holder, const DateTime& now) {
  return !turn.holder.empty() && turn.holder != holder && turn.until > now &&
         turn.until <= AddSeconds(now, kTurnSeconds);
}

bool TakeTurn(Connection& connection, const std::string& holder) {
  const DateTime now = StoreTime(connection);
  const DateTime until = AddSeconds(now, kTurnSeconds);
  const auto turn = ReadTurn(connection);
  if (!turn) {
    sql::InsertRow(connection, "FiscalTurno", "Fit_Id, Fit_Caja, Fit_Hasta, Fit_Proximo, Fit_Fallos, Fit_Entregado",
                   {1, holder, until, now, 0, 0});
    return true;
  }
  if (HasOther(*turn, holder, now)) return false;
  connection.Execute("UPDATE FiscalTurno SET Fit_Caja = " + sql::Quoted(holder) + ", Fit_Hasta = " +
                     sql::Value(until).text + " WHERE Fit_Id = 1");
  return true;
}

void NoteHanded(Connection& connection, const std::string& holder, std::int32_t position) {
  Change(connection, holder, "Fit_Entregado = " + sql::Value(position).text);
}

void NoteAnswered(Connection& connection, const std::string& holder, int wait_seconds) {
  const DateTime next = AddSeconds(StoreTime(connection), wait_seconds);
  Change(connection, holder, "Fit_Proximo = " + sql::Value(next).text + ", Fit_Fallos = 0, Fit_Error = NULL");
}

void NoteFailed(Connection& connection, const std::string& holder, const std::string& trouble) {
  const auto turn = ReadTurn(connection);
  const int failures = (turn ? turn->failures : 0) + 1;
  const DateTime next = AddSeconds(StoreTime(connection), PauseAfter(failures));
  Change(connection, holder,
         "Fit_Proximo = " + sql::Value(next).text + ", Fit_Fallos = " + sql::Value(failures).text +
             ", Fit_Error = " + sql::Quoted(Left(trouble, kTroubleLength)) + ", Fit_Caja = NULL");
}

void GiveUpTurn(Connection& connection, const std::string& holder) {
  Change(connection, holder, "Fit_Caja = NULL");
}

}  // namespace tpv::fiscal
