#include "fiscal/mending.h"

#include "base/text.h"
#include "data/sql_text.h"
#include "fiscal/records.h"

namespace tpv::fiscal {

namespace {

bool IsNewest(Connection& connection, const Record& record) {
  return connection
      .Execute("SELECT TOP 1 Fis_Id FROM Fiscal WHERE Fis_Numero = " + sql::Quoted(record.document.number) +
               " AND Fis_Id > " + sql::Number(std::int64_t{record.position}))
      ->Eof();
}

Record ReadToMend(Connection& connection, std::int32_t position) {
  const auto found = RecordsFrom(connection, position, 1);
  if (found.empty() || found[0].position != position) {
    throw RecordRefused("No existe el registro de facturación " + std::to_string(position));
  }
  const State state = found[0].reply.state;
  if (state != State::Rejected && state != State::AcceptedWithErrors) {
    throw RecordRefused("El registro " + std::to_string(position) + " no está rechazado ni aceptado con errores");
  }
  if (!IsNewest(connection, found[0])) {
    throw RecordRefused("El registro " + std::to_string(position) + " ya tiene otro posterior del mismo documento");
  }
  return found[0];
}

}  // namespace

PastReplies RepliesTo(Connection& connection, Mode mode, const std::string& issuer, const std::string& number) {
  PastReplies replies;
  const auto rows = connection.Execute(
      "SELECT Fir_Estado, Fir_Duplicado FROM Fiscal INNER JOIN FiscalRespuestas ON Fir_IdFis = Fis_Id WHERE Fis_Modo = " +
      sql::Number(static_cast<std::int64_t>(mode)) + " AND Fis_Emisor = " + sql::Quoted(issuer) +
      " AND Fis_Numero = " + sql::Quoted(number));
  for (; !rows->Eof(); rows->MoveNext()) {
    const bool rejected = rows->Field(0).IntOr(0) == static_cast<int>(State::Rejected);
    const bool held = rows->Field(1).IntOr(0) != 0;  // another record of the number
    (rejected && !held ? replies.rejected : replies.accepted) = true;
  }
  return replies;
}

void Mend(const Desk& desk, std::int32_t position, const Buyer& buyer) {
  Transaction transaction(desk.connection);
  const Setup setup = ReadSetup(desk);
  Record record = ReadToMend(desk.connection, position);
  if (record.mode != setup.mode) throw RecordRefused("El registro es de otro modo: las pruebas y lo real no se mezclan");
  const auto holds = [&](const std::string& issuer) {
    return RepliesTo(desk.connection, setup.mode, issuer, record.document.number).accepted;
  };
  if (record.kind != Kind::Cancellation && !holds(record.issuer)) record.issuer = setup.issuer;
  const bool held = holds(record.issuer);
  const bool rejected = record.reply.state == State::Rejected;
  record.mends = record.kind != Kind::Cancellation;
  record.refused = !held ? Refused::AndNeverHeld : rejected ? Refused::Before : Refused::No;
  if (NamesBuyer(record.kind)) SetBuyer(record, buyer);
  Append(desk, setup, ReadEnd(desk.connection, record.document.number), record);
  transaction.Commit();
}

}  // namespace tpv::fiscal
