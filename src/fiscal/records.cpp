#include "fiscal/records.h"

#include "base/text.h"
#include "data/insert_row.h"
#include "fiscal/record_columns.h"
#include "platform/database.h"

namespace tpv::fiscal {

namespace {

const std::string kSelect =
    "r.Fis_Id, r.Fis_Modo, r.Fis_Tipo, r.Fis_Subsana, r.Fis_Rechazo, r.Fis_Emisor, r.Fis_Nombre, r.Fis_Numero, "
    "r.Fis_Fecha, r.Fis_CliNombre, r.Fis_CliDoc, r.Fis_Desglose, r.Fis_Relacion, r.Fis_Cuota, r.Fis_Total, "
    "r.Fis_Momento, r.Fis_Texto, r.Fis_Huella, r.Fis_IdCav, r.Fis_IdFav, r.Fis_Productor, r.Fis_ProdDoc, "
    "r.Fis_Version, r.Fis_Instalacion, r.Fis_Anterior, p.Fis_Emisor AS AntEmisor, p.Fis_Numero AS AntNumero, "
    "p.Fis_Fecha AS AntFecha, p.Fis_Huella AS AntHuella, Fir_Estado, Fir_Codigo, Fir_Texto, Fir_Csv, Fir_Duplicado "
    "FROM Fiscal AS r LEFT JOIN Fiscal AS p ON p.Fis_Id = r.Fis_Anterior "
    "LEFT JOIN FiscalRespuestas ON Fir_IdFis = r.Fis_Id ";

// The fields one after the other, as kSelect names them.
class Row {
 public:
  explicit Row(const Recordset& rows) : rows_(rows) {}

  Variant Next() { return rows_.Field(at_++); }
  std::int32_t Whole() { return Next().IntOr(0); }
  std::string Text() { return Next().TextOr(""); }
  Cents Amount() { return ToCents(Next().NumberOr(0)); }
  DateTime Day() {
    const Variant day = Next();
    return day.IsNull() ? DateTime{} : day.ToDate();
  }

 private:
  const Recordset& rows_;
  std::size_t at_ = 0;
};

Refused ReadRefused(const std::string& letter) {
  return letter.empty() ? Refused::No : static_cast<Refused>(letter[0]);
}

void ReadHead(Row& row, Record& record) {
  record.position = row.Whole();
  record.mode = static_cast<Mode>(row.Whole());
  record.kind = KindOf(row.Text());
  record.mends = row.Next().IntOr(0) != 0;
  record.refused = ReadRefused(row.Text());
  record.issuer = row.Text();
  record.issuer_name = row.Text();
  record.document.number = row.Text();
  record.document.date = row.Day();
  record.buyer_name = row.Text();
  record.buyer_document = row.Text();
}

void ReadAmounts(Row& row, Record& record) {
  record.rates = ReadRates(row.Text());
  record.related = ReadRelated(row.Text());
  record.tax = row.Amount();
  record.total = row.Amount();
}

void ReadPrevious(Row& row, Record& record) {
  PreviousRecord previous;
  previous.position = row.Whole();
  previous.issuer = row.Text();
  previous.document.number = row.Text();
  previous.document.date = row.Day();
  previous.fingerprint = row.Text();
  if (previous.position != 0) record.previous = previous;
}

Record Read(const Recordset& rows) {
  Row row(rows);
  Record record;
  ReadHead(row, record);
  ReadAmounts(row, record);
  record.moment = row.Text();
  record.text = row.Text();
  record.fingerprint = row.Text();
  record.ticket = row.Whole();
  record.invoice = row.Whole();
  record.producer = {row.Text(), row.Text(), row.Text(), row.Text()};
  ReadPrevious(row, record);
  record.reply.state = static_cast<State>(row.Whole());
  record.reply.code = row.Whole();
  record.reply.text = row.Text();
  record.reply.receipt = row.Text();
  record.reply.duplicate = row.Next().IntOr(0) != 0;
  return record;
}

std::vector<Record> ReadAll(Connection& connection, const std::string& top, const std::string& condition) {
  std::vector<Record> records;
  const auto rows = connection.Execute("SELECT " + top + kSelect + condition);
  for (; !rows->Eof(); rows->MoveNext()) records.push_back(Read(*rows));
  return records;
}

std::string Top(std::size_t most) { return "TOP " + std::to_string(most) + " "; }

// Asked while a customer waits for the ticket.
std::optional<Record> InForce(Connection& connection, const std::string& of_document) {
  const auto last = connection.Execute(
      "SELECT TOP 1 Fis_Tipo, Fis_Modo, Fis_Emisor, Fis_Numero, Fis_Fecha, Fis_Total, Fis_Momento FROM Fiscal WHERE " +
      of_document + " ORDER BY Fis_Id DESC");
  if (last->Eof()) return std::nullopt;
  Row row(*last);
  Record record;
  record.kind = KindOf(row.Text());
  if (record.kind == Kind::Cancellation) return std::nullopt;
  record.mode = static_cast<Mode>(row.Whole());
  record.issuer = row.Text();
  record.document.number = row.Text();
  record.document.date = row.Day();
  record.total = row.Amount();
  record.moment = row.Text();
  return record;
}

std::int32_t LastAnswered(Connection& connection) {
  return connection.Execute("SELECT MAX(Fir_IdFis) FROM FiscalRespuestas")->Field(0).IntOr(0);
}

std::string After(std::int32_t position) { return "Fis_Id > " + sql::Number(std::int64_t{position}); }

}  // namespace

std::vector<Record> RecordsFrom(Connection& connection, std::int32_t position, std::size_t most) {
  return ReadAll(connection, Top(most), "WHERE r." + After(position - 1) + " ORDER BY r.Fis_Id");
}

void ForEachRecord(Connection& connection, const std::optional<DateTime>& from, const std::optional<DateTime>& to,
                   const std::function<void(const Record&)>& visit) {
  std::string condition;
  if (from) condition += "WHERE r.Fis_Fecha >= '" + ToDayFirst(*from) + "' ";
  if (to) condition += (from ? "AND" : "WHERE") + (" r.Fis_Fecha < '" + ToDayFirst(AddDays(*to, 1)) + "' ");
  const auto rows = connection.Execute("SELECT " + kSelect + condition + "ORDER BY r.Fis_Id");
  for (; !rows->Eof(); rows->MoveNext()) visit(Read(*rows));
}

std::optional<Record> RecordOfTicket(Connection& connection, std::int32_t ticket) {
  return InForce(connection, OfTicket(ticket));
}

std::optional<Record> RecordOfInvoice(Connection& connection, std::int32_t invoice) {
  return InForce(connection, OfInvoice(invoice));
}

Waiting CountWaiting(Connection& connection) {
  const std::string waiting = " FROM Fiscal WHERE " + After(LastAnswered(connection));
  const auto oldest = connection.Execute("SELECT TOP 1 Fis_Momento" + waiting + " ORDER BY Fis_Id");
  if (oldest->Eof()) return {};
  return {connection.Execute("SELECT COUNT(*)" + waiting)->Field(0).ToInt64(), oldest->Field(0).TextOr("")};
}

std::vector<Record> NextToSend(Connection& connection, std::size_t most) {
  std::vector<Record> records = RecordsFrom(connection, LastAnswered(connection) + 1, most);
  for (std::size_t i = 1; i < records.size(); ++i) {
    if (records[i].mode == records[0].mode && records[i].issuer == records[0].issuer) continue;
    records.resize(i);
  }
  return records;
}

std::vector<Record> RecordsToMend(Connection& connection) {
  const auto state = [](State of) { return sql::Number(static_cast<std::int64_t>(of)); };
  return ReadAll(connection, "",
                 "WHERE Fir_Estado IN (" + state(State::AcceptedWithErrors) + "," + state(State::Rejected) +
                     ") AND NOT EXISTS (SELECT * FROM Fiscal AS m WHERE m.Fis_Numero = r.Fis_Numero AND "
                     "m.Fis_Id > r.Fis_Id) ORDER BY r.Fis_Id");
}

void StoreReply(Connection& connection, std::int32_t position, const Reply& reply) {
  const std::int32_t last = LastAnswered(connection);
  const auto next = connection.Execute("SELECT TOP 1 Fis_Id FROM Fiscal WHERE " + After(last) + " ORDER BY Fis_Id");
  if (next->Eof() || next->Field(0).ToInt32() != position) {
    throw DatabaseError("El registro " + std::to_string(position) + " no es el primero que espera respuesta");
  }
  constexpr std::size_t kTextLength = 1500;
  sql::InsertRow(connection, "FiscalRespuestas",
                 "Fir_IdFis, Fir_Estado, Fir_Codigo, Fir_Texto, Fir_Csv, Fir_Duplicado",
                 {position, static_cast<int>(reply.state), reply.code, Left(reply.text, kTextLength), reply.receipt,
                  reply.duplicate});
}

}  // namespace tpv::fiscal
