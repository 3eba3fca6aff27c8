#include "fiscal/chain.h"

#include <optional>

#include "base/mask.h"
#include "base/text.h"
#include "data/insert_row.h"
#include "fiscal/fingerprint.h"
#include "fiscal/record_columns.h"
#include "platform/digest.h"

namespace tpv::fiscal {

namespace {

constexpr std::int64_t kClockTolerance = 60;  // seconds

const std::string kColumns = "Fis_Id, Fis_Emisor, Fis_Numero, Fis_Fecha, Fis_Huella";

PreviousRecord PreviousIn(const Recordset& row) {
  return {row.Field(0).ToInt32(), row.Field(1).TextOr(""), {row.Field(2).TextOr(""), row.Field(3).ToDate()},
          row.Field(4).TextOr("")};
}

// A chain is of one agency, one issuer and one installation; a store has had others
// where one of them changed.
std::optional<PreviousRecord> LastOfChain(Connection& connection, const ChainEnd& end, const Record& record) {
  const std::string& installation = record.producer.installation;
  if (end.last.position == 0) return std::nullopt;
  if (end.mode == record.mode && end.last.issuer == record.issuer && end.installation == installation) return end.last;
  const auto row = connection.Execute("SELECT TOP 1 " + kColumns + " FROM Fiscal WHERE Fis_Modo = " +
                                      sql::Value(static_cast<int>(record.mode)).text + " AND Fis_Emisor = " +
                                      sql::Quoted(record.issuer) + " AND Fis_Instalacion = " +
                                      sql::Quoted(installation) + " ORDER BY Fis_Id DESC");
  if (row->Eof()) return std::nullopt;
  return PreviousIn(*row);
}

// "24/11/2026 10:30" as clocks on the shop's walls show it.
std::string OnTheWall(std::string_view moment) {
  constexpr std::size_t kWall = 19;
  const auto wall = ParseIso(ReplaceAll(moment.substr(0, kWall), "T", " "));
  return wall ? FormatDate(*wall, "DD/MM/YYYY HH:MM") : std::string(moment);
}

// A clock a little behind takes the last record's moment; one further back is wrong.
std::string MomentOf(const ChainEnd& end, Zone zone) {
  std::string moment = MomentText(zone, end.now);
  const auto last = MomentUtc(end.moment);
  if (!last || end.now >= *last) return moment;
  if (AddSeconds(end.now, kClockTolerance) >= *last) return MomentText(zone, *last);
  throw RecordRefused("El reloj va atrasado: son las " + OnTheWall(moment) +
                      " y el último registro de facturación es de las " + OnTheWall(end.moment) +
                      ". Ponga en hora el equipo que guarda el almacén y repita la operación");
}

// What was there when the records were turned on may have been emptied since.
void RequireIssuer(const Record& record) {
  const Producer& producer = record.producer;
  if (IsTaxNumber(record.issuer) && !record.issuer_name.empty() && !producer.name.empty() &&
      IsTaxNumber(producer.document) && !producer.installation.empty()) {
    return;
  }
  throw RecordRefused("A la tienda le falta su nombre o su NIF, o los datos de los registros de facturación: "
                      "complételos en la oficina y repita la operación");
}

void RequireSendable(const Record& record) {
  constexpr std::size_t kMostRates = 12;
  constexpr std::size_t kMostRelated = 1000;
  if (!IsDocumentNumber(record.document.number)) {
    throw RecordRefused("El número «" + record.document.number +
                        "» no vale para un registro de facturación: la serie no puede llevar letras con acento "
                        "ni los signos \" ' < > =");
  }
  if (record.rates.size() > kMostRates) throw RecordRefused("Hay más de doce tipos de IVA en un solo documento");
  if (record.related.size() > kMostRelated) {
    throw RecordRefused("Una factura no puede sustituir más de 1.000 tickets: facture un periodo más corto");
  }
}

// The day of a document that is not yet would be refused by the agency. Tickets may be
// dated by a clock of Madrid's, which begins the day first.
void RequireNoFuture(const Record& record) {
  constexpr std::size_t kDay = 10;
  const auto utc = MomentUtc(record.moment);
  const auto day = utc ? ParseIso(MomentText(Zone::Madrid, *utc).substr(0, kDay)) : std::nullopt;
  if (!day || record.document.date <= *day) return;
  throw RecordRefused("La fecha del documento (" + ToDayFirst(record.document.date) +
                      ") es posterior a hoy: no se puede registrar");
}

void Store(Connection& connection, const Record& r) {
  const auto document = [](std::int32_t id) { return id == 0 ? sql::Null() : sql::Value(id); };
  sql::InsertRow(
      connection, "Fiscal",
      "Fis_Id, Fis_Modo, Fis_Tipo, Fis_Subsana, Fis_Rechazo, Fis_Emisor, Fis_Nombre, Fis_Numero, Fis_Fecha, "
      "Fis_CliNombre, Fis_CliDoc, Fis_Desglose, Fis_Relacion, Fis_Cuota, Fis_Total, Fis_Momento, Fis_Anterior, "
      "Fis_Texto, Fis_Huella, Fis_IdCav, Fis_IdFav, Fis_Productor, Fis_ProdDoc, Fis_Version, Fis_Instalacion",
      {r.position, static_cast<int>(r.mode), std::string(CodeOf(r.kind)), r.mends,
       std::string(1, static_cast<char>(r.refused)), r.issuer, r.issuer_name, r.document.number, r.document.date,
       r.buyer_name, r.buyer_document, RatesColumn(r.rates), RelatedColumn(r.related), ToEuros(r.tax),
       ToEuros(r.total), r.moment, r.previous ? r.previous->position : 0, r.text, r.fingerprint,
       document(r.ticket), document(r.invoice), r.producer.name, r.producer.document, r.producer.version,
       r.producer.installation});
}

}  // namespace

ChainEnd ReadEnd(Connection& connection, const std::string& number) {
  ChainEnd end;
  const auto row = connection.Execute("SELECT TOP 1 " + kColumns + ", Fis_Momento, Fis_Modo, Fis_Instalacion, "
                                      "Getutcdate() AS Ahora, (SELECT MAX(s.Fis_Id) FROM Fiscal AS s WHERE "
                                      "s.Fis_Numero = " + sql::Quoted(number) + ") AS Igual FROM Fiscal ORDER BY Fis_Id DESC");
  if (row->Eof()) {
    end.now = connection.Execute("SELECT Getutcdate() AS Ahora")->Field(0).ToDate();
  } else {
    end.last = PreviousIn(*row);
    end.moment = row->Field(5).TextOr("");
    end.mode = static_cast<Mode>(row->Field(6).IntOr(0));
    end.installation = row->Field(7).TextOr("");
    end.now = row->Field(8).ToDate();
    end.of_number = row->Field(9).IntOr(0);
  }
  end.now.millisecond = 0;
  return end;
}

void Append(const Desk& desk, const Setup& setup, const ChainEnd& end, Record& record) {
  if (desk.digest == nullptr) {
    throw RecordRefused("Este programa se construyó sin las bibliotecas de los registros de facturación y no puede "
                        "vender en esta tienda");
  }
  constexpr std::size_t kNameLength = 120;
  record.mode = setup.mode;
  if (record.issuer.empty()) record.issuer = setup.issuer;
  if (record.issuer == setup.issuer) record.issuer_name = Left(setup.issuer_name, kNameLength);
  record.producer = setup.producer;
  RequireIssuer(record);
  RequireSendable(record);
  record.position = end.last.position + 1;
  record.moment = MomentOf(end, setup.zone);
  RequireNoFuture(record);
  record.previous = LastOfChain(desk.connection, end, record);
  Fingerprint(record, *desk.digest);
  Store(desk.connection, record);
}

}  // namespace tpv::fiscal
