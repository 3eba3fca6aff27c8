#include "fiscal/chain_check.h"

#include <cmath>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "data/sql_text.h"
#include "data/statements.h"
#include "fiscal/amounts.h"
#include "fiscal/archived_records.h"
#include "fiscal/fingerprint.h"
#include "fiscal/record_columns.h"
#include "platform/database.h"
#include "platform/digest.h"

namespace tpv::fiscal {

namespace {

constexpr std::string_view kMissing = "Registros de facturación que faltan";
constexpr std::string_view kChanged = "Registros de facturación cambiados";
constexpr std::string_view kUnlinked = "Registros de facturación que no siguen al anterior de su cadena";
constexpr std::string_view kOtherAmounts = "Registros de facturación cuyos tipos de IVA no suman su total";
constexpr std::string_view kOtherTicket = "Registros de facturación cuyo ticket falta o dice otra cosa";
constexpr std::string_view kOtherArchived = "Registros de facturación sin su ticket que no son los de los archivos";
constexpr std::string_view kOtherInvoice = "Registros de facturación cuya factura falta o dice otra cosa";
constexpr std::string_view kNoTicketRecord = "Tickets sin registro de facturación (se nombra su número interno)";
constexpr std::string_view kNoInvoiceRecord = "Facturas sin registro de facturación (se nombra su número interno)";

// The fingerprint of the record before that a text names.
std::string_view PreviousIn(std::string_view text) {
  constexpr std::string_view kName = "&Huella=";
  const std::size_t at = text.find(kName);
  if (at == std::string_view::npos) return {};
  const std::size_t from = at + kName.size();
  return text.substr(from, text.find('&', from) - from);
}

class ChainReader {
 public:
  ChainReader(const Digest& digest, const Fault& fault) : digest_(digest), fault_(fault) {}

  void Read(Recordset& rows) {
    for (; !rows.Eof(); rows.MoveNext()) {
      ++count_;
      const std::int32_t position = rows.Field(0).ToInt32();
      for (std::int32_t missing = last_ + 1; missing < position; ++missing) fault_(kMissing, missing);
      last_ = position;
      try {
        Check(ReadRow(rows, position), rows.Field(10).IntOr(0));
      } catch (const std::exception&) {
        fault_(kChanged, position);  // a column holds what no record has
      }
    }
  }
  std::int64_t count() const { return count_; }
  std::int32_t last() const { return last_; }

 private:
  // The last record of a chain.
  struct End {
    std::int32_t position = 0;
    std::string fingerprint;  // "" for a record that is wrong: the next one's text tells it
  };

  static Record ReadRow(const Recordset& rows, std::int32_t position) {
    Record record;
    record.position = position;
    record.mode = static_cast<Mode>(rows.Field(1).IntOr(0));
    record.kind = KindOf(rows.Field(2).TextOr(""));
    record.issuer = rows.Field(3).TextOr("");
    record.document = {rows.Field(4).TextOr(""), rows.Field(5).ToDate()};
    record.rates = ReadRates(rows.Field(6).TextOr(""));
    record.tax = ToCents(rows.Field(7).NumberOr(0));
    record.total = ToCents(rows.Field(8).NumberOr(0));
    record.moment = rows.Field(9).TextOr("");
    record.text = rows.Field(11).TextOr("");
    record.fingerprint = rows.Field(12).TextOr("");
    record.producer.installation = rows.Field(13).TextOr("");
    return record;
  }

  void Check(Record record, std::int32_t previous) {
    End& end = ends_[std::to_string(static_cast<int>(record.mode)) + record.issuer + "\n" +
                     record.producer.installation];
    const bool after_wrong = end.position != 0 && end.fingerprint.empty();
    record.previous.emplace();
    record.previous->fingerprint = after_wrong ? PreviousIn(record.text) : end.fingerprint;
    const bool linked = previous == end.position && PreviousIn(record.text) == record.previous->fingerprint;
    record.previous->fingerprint = PreviousIn(record.text);
    const bool unchanged =
        FingerprintText(record) == record.text && digest_.Sha256(record.text) == record.fingerprint;
    if (!linked) fault_(kUnlinked, record.position);
    if (!unchanged) fault_(kChanged, record.position);
    CheckAmounts(record);
    end = {record.position, unchanged ? record.fingerprint : std::string()};
  }

  void CheckAmounts(const Record& record) {
    Record sums;
    SetAmounts(sums, record.rates);
    if (sums.tax != record.tax || sums.total != record.total) fault_(kOtherAmounts, record.position);
  }

  const Digest& digest_;
  const Fault& fault_;
  std::int64_t count_ = 0;
  std::int32_t last_ = 0;
  std::map<std::string, End> ends_;  // by agency, issuer and installation
};

void Ask(Connection& connection, const Fault& fault, std::string_view what, const std::string& ids) {
  const auto rows = connection.Execute(ids);
  for (; !rows->Eof(); rows->MoveNext()) fault(what, rows->Field(0).ToInt64());
}

// What is registered for the agency of today and not cancelled, by the columns of its document.
std::string InForce(const std::string& of, const std::string& column, const std::string& join, Mode mode,
                    const char* what = "r.Fis_Id") {
  return std::string("SELECT ") + what + " FROM Fiscal AS r LEFT JOIN " + join + " WHERE r.Fis_Modo = " +
         std::to_string(static_cast<int>(mode)) + " AND r." + column +
         " IS NOT NULL AND r.Fis_Tipo <> 'AN' AND NOT EXISTS (SELECT * FROM Fiscal AS l WHERE " + of + " AND l.Fis_Id > "
         "r.Fis_Id) AND ";
}

std::string TicketsInForce(Mode mode, const char* what = "r.Fis_Id") {
  return InForce("l.Fis_IdCav = r.Fis_IdCav AND l.Fis_IdFav IS NULL", "Fis_IdCav", "Cav ON Cav_Id = r.Fis_IdCav", mode,
                 what);
}

// A parameter of TurnOn's: what is older has no record, or one of a trial that ended.
std::string SinceOn(const Desk& desk, const std::string& column, std::string_view parameter) {
  return column + " > " + sql::Number(std::int64_t{desk.parameter(parameter).IntOr(0)});
}

// Those of archived tickets are known by their number and their sum.
void CompareWithArchives(const Desk& desk, Mode mode, const ArchivedRecords& archived, const Fault& fault) {
  const auto found = desk.connection.Execute(
      TicketsInForce(mode, "COUNT(*), SUM(r.Fis_Total), MAX(r.Fis_Id)") +
      SinceOn(desk, "r.Fis_Id", "Par_FisRegistro") + " AND Cav_Id IS NULL");
  const bool as_archived = found->Field(0).ToInt64() == archived.count &&
                           std::abs(found->Field(1).NumberOr(0) - archived.total.ToDouble()) < 0.005;
  if (!as_archived) fault(kOtherArchived, found->Field(2).IntOr(0));
}

void CompareTickets(const Desk& desk, Mode mode, const Fault& fault) {
  const ArchivedRecords archived = ReadArchivedRecords(desk);
  if (archived.count > 0) CompareWithArchives(desk, mode, archived, fault);
  Ask(desk.connection, fault, kOtherTicket,
      TicketsInForce(mode) + SinceOn(desk, "r.Fis_Id", "Par_FisRegistro") +
          (archived.count > 0 ? " AND Cav_Id IS NOT NULL" : "") +
          " AND (Cav_Id IS NULL OR DATEDIFF(day, Cav_Fecha, r.Fis_Fecha) <> 0 OR r.Fis_Numero <> " +
          std::string(kTicketReference) +
          " OR ABS(r.Fis_Total - ISNULL((SELECT SUM(dbo.FncImporteConIva(Lav_Id)) FROM Lav WHERE Lav_IdCav = "
          "Cav_Id),0)) > 0.005)");
  Ask(desk.connection, fault, kNoTicketRecord,
      "SELECT Cav_Id FROM Cav WHERE Cav_Ticket = 1 AND Cav_Situa <> 2 AND " + SinceOn(desk, "Cav_Id", "Par_FisTicket") +
          " AND NOT EXISTS (SELECT * FROM Fiscal WHERE Fis_IdCav = Cav_Id AND Fis_IdFav IS NULL) "
          "AND NOT EXISTS (SELECT * FROM VentasEnCurso WHERE Vec_IdCav = Cav_Id) AND EXISTS (SELECT * FROM Lav WHERE Lav_IdCav = Cav_Id)");
}

void CompareInvoices(const Desk& desk, Mode mode, const Fault& fault) {
  Ask(desk.connection, fault, kOtherInvoice,
      InForce("l.Fis_IdCav IS NULL AND l.Fis_IdFav = r.Fis_IdFav", "Fis_IdFav", "Fav ON Fav_Id = r.Fis_IdFav", mode) +
          SinceOn(desk, "r.Fis_Id", "Par_FisRegistro") +
          " AND (Fav_Id IS NULL OR DATEDIFF(day, Fav_Fecha, r.Fis_Fecha) <> 0 OR ABS(r.Fis_Total - "
          "ISNULL(Fav_Total,0)) > 0.005)");
  Ask(desk.connection, fault, kNoInvoiceRecord,
      "SELECT Fav_Id FROM Fav WHERE " + SinceOn(desk, "Fav_Id", "Par_FisFactura") +
          " AND NOT EXISTS (SELECT * FROM Fiscal WHERE Fis_IdCav IS NULL AND Fis_IdFav = Fav_Id)");
}

std::unique_ptr<Recordset> ReadChain(Connection& connection) {
  constexpr const char* kNoSuchTable = "42S02";
  try {
    return connection.Execute(
        "SELECT Fis_Id, Fis_Modo, Fis_Tipo, Fis_Emisor, Fis_Numero, Fis_Fecha, Fis_Desglose, Fis_Cuota, Fis_Total, "
        "Fis_Momento, Fis_Anterior, Fis_Texto, Fis_Huella, Fis_Instalacion FROM Fiscal ORDER BY Fis_Id");
  } catch (const DatabaseError& error) {
    if (error.sqlstate() == kNoSuchTable) return nullptr;
    throw;
  }
}

}  // namespace

std::int64_t CheckChain(const Desk& desk, const Fault& fault) {
  const auto chain = ReadChain(desk.connection);
  if (chain == nullptr) return 0;
  std::int64_t records = 0;
  if (!chain->Eof()) {
    if (desk.digest == nullptr) {
      throw DatabaseError("Este programa se construyó sin libcrypto: no puede comprobar los registros");
    }
    ChainReader reader(*desk.digest, fault);
    reader.Read(*chain);
    records = reader.count();
    // The chain says nothing of records that are gone from its end; the agency's answers do.
    Ask(desk.connection, fault, kMissing,
        "SELECT Fir_IdFis FROM FiscalRespuestas WHERE Fir_IdFis > " + sql::Number(std::int64_t{reader.last()}));
  }
  if (const Mode mode = ModeOf(desk); mode != Mode::Off) {
    CompareTickets(desk, mode, fault);
    CompareInvoices(desk, mode, fault);
  }
  return records;
}

}  // namespace tpv::fiscal
