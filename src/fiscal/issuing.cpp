#include "fiscal/issuing.h"

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "data/codes.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "fiscal/amounts.h"
#include "fiscal/mending.h"
#include "fiscal/record_columns.h"

namespace tpv::fiscal {

namespace {

constexpr Cents kMostWithoutBuyer = 300'000;

constexpr const char* kTooMuch =
    "Un ticket de más de 3.000,00 € no puede registrarse sin comprador. Termine la venta con una factura a nombre "
    "del cliente";
constexpr const char* kNoBuyer =
    "Para facturar hacen falta el nombre y el NIF del cliente, de nueve letras y cifras. Complételos antes de emitir "
    "la factura";

std::string Id(std::int32_t id) { return sql::Number(std::int64_t{id}); }

// "b-1234567.8 " and "B12345678" are one number.
std::string TaxNumber(const std::string& typed) {
  std::string number;
  for (const char c : typed) {
    if (std::string_view(" -./").find(c) != std::string_view::npos) continue;
    number += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return number;
}

bool IsNamed(const Buyer& buyer) {
  return !Trim(buyer.name).empty() && IsTaxNumber(TaxNumber(buyer.document));
}

struct TicketHead {
  DocumentId document;
  bool invoiced = false;
  bool in_progress = false;  // on some till
};

std::optional<TicketHead> ReadTicket(Connection& connection, std::int32_t ticket) {
  const auto row = connection.Execute(
      "SELECT " + std::string(kTicketReference) + " AS Ticket, Cav_Fecha, Cav_Situa, Vec_IdCav FROM Cav "
      "LEFT JOIN VentasEnCurso ON Vec_IdCav = Cav_Id WHERE Cav_Id = " + Id(ticket));
  if (row->Eof()) return std::nullopt;
  return TicketHead{{row->Field(0).TextOr(""), StartOfDay(row->Field(1).ToDate())},
                    row->Field(2).IntOr(0) == static_cast<int>(InvoicingState::Invoiced), !row->Field(3).IsNull()};
}

// The registration in force of a document of this shop, for the agency of `mode`.
struct Registration {
  DocumentId document;
  std::int32_t ticket = 0;
  std::string issuer;
  std::string issuer_name;
};

std::optional<Registration> Registered(Connection& connection, Mode mode, const std::string& condition) {
  const auto last = connection.Execute("SELECT TOP 1 Fis_Numero, Fis_Fecha, Fis_Tipo, Fis_IdCav, Fis_Emisor, "
                                       "Fis_Nombre FROM Fiscal WHERE " + condition +
                                       " AND Fis_Modo = " + Id(static_cast<int>(mode)) + " ORDER BY Fis_Id DESC");
  if (last->Eof() || last->Field(2).TextOr("") == CodeOf(Kind::Cancellation)) return std::nullopt;
  return Registration{{last->Field(0).TextOr(""), last->Field(1).ToDate()}, last->Field(3).IntOr(0),
                      last->Field(4).TextOr(""), last->Field(5).TextOr("")};
}

// Whether the number is free; a series may have been given to tickets and invoices both.
// False for a ticket that has its record already.
bool IsNewNumber(const Desk& desk, const ChainEnd& end, Mode mode, const std::string& number, std::int32_t ticket) {
  if (end.of_number == 0) return true;
  const auto registered = Registered(desk.connection, mode, "Fis_Numero = " + sql::Quoted(number));
  if (!registered) return true;
  if (ticket != 0 && registered->ticket == ticket) return false;
  throw RecordRefused("El número «" + number +
                      "» ya está registrado: los tickets y las facturas necesitan series distintas");
}

// Those of the invoice's tickets that have records of their own.
std::vector<DocumentId> RegisteredOf(Connection& connection, Mode mode, std::int32_t invoice) {
  std::vector<DocumentId> tickets;
  const auto rows = connection.Execute(
      "SELECT Fis_Numero, Fis_Fecha FROM Cav INNER JOIN Fiscal AS r ON r.Fis_IdCav = Cav_Id AND r.Fis_IdFav IS NULL "
      "WHERE Cav_IdFactura = " +
      Id(invoice) + " AND r.Fis_Modo = " + Id(static_cast<int>(mode)) +
      " AND r.Fis_Tipo <> 'AN' AND NOT EXISTS (SELECT * FROM Fiscal AS l WHERE l.Fis_IdCav = r.Fis_IdCav AND "
      "l.Fis_IdFav IS NULL AND l.Fis_Id > r.Fis_Id) ORDER BY r.Fis_Id");
  for (; !rows->Eof(); rows->MoveNext()) tickets.push_back({rows->Field(0).TextOr(""), rows->Field(1).ToDate()});
  return tickets;
}

// What the customer has of the tickets that are taken back: the invoice where there is one.
std::vector<DocumentId> Originals(Connection& connection, const std::vector<std::int32_t>& tickets) {
  std::vector<DocumentId> originals;
  for (const std::int32_t ticket : tickets) {
    const auto row = connection.Execute(
        "SELECT " + std::string(kTicketReference) + " AS Ticket, Cav_Fecha, " + std::string(kInvoiceReference) +
        " AS Factura, Fav_Fecha FROM Cav LEFT JOIN Fav ON Fav_Id = Cav_IdFactura WHERE Cav_Id = " + Id(ticket));
    if (row->Eof()) continue;
    const std::size_t at = row->Field(3).IsNull() ? 0 : 2;
    const DocumentId original{row->Field(at).TextOr(""), StartOfDay(row->Field(at + 1).ToDate())};
    if (std::find(originals.begin(), originals.end(), original) == originals.end()) originals.push_back(original);
  }
  return originals;
}

}  // namespace

void SetBuyer(Record& record, const Buyer& buyer) {
  constexpr std::size_t kNameLength = 120;
  if (!IsNamed(buyer)) throw RecordRefused(kNoBuyer);
  record.buyer_name = Left(Trim(buyer.name), kNameLength);
  record.buyer_document = TaxNumber(buyer.document);
}

void RecordTicket(const Desk& desk, std::int32_t ticket, const std::vector<std::int32_t>& originals) {
  if (ModeOf(desk) == Mode::Off) return;
  const Setup setup = ReadSetup(desk);
  const auto head = ReadTicket(desk.connection, ticket);
  if (!head || head->invoiced || head->in_progress) return;
  Record record;
  SetAmounts(record, TicketAmounts(desk.connection, ticket));
  if (record.rates.empty()) return;
  const ChainEnd end = ReadEnd(desk.connection, head->document.number);
  if (!IsNewNumber(desk, end, setup.mode, head->document.number, ticket)) return;
  if (record.total > kMostWithoutBuyer) throw RecordRefused(kTooMuch);
  record.kind = record.total < 0 ? Kind::Return : Kind::Ticket;
  if (record.kind == Kind::Return) record.related = Originals(desk.connection, originals);
  record.document = head->document;
  record.ticket = ticket;
  Append(desk, setup, end, record);
}

void RecordInvoice(const Desk& desk, const IssuedInvoice& invoice) {
  if (ModeOf(desk) == Mode::Off) return;
  const Setup setup = ReadSetup(desk);
  const ChainEnd end = ReadEnd(desk.connection, invoice.number);
  IsNewNumber(desk, end, setup.mode, invoice.number, 0);
  Record record;
  SetBuyer(record, invoice.buyer);
  SetAmounts(record, InvoiceAmounts(desk.connection, invoice.id));
  record.related = RegisteredOf(desk.connection, setup.mode, invoice.id);
  record.kind = !record.related.empty() ? Kind::InvoiceOfTickets
                : record.total < 0      ? Kind::InvoiceOfReturn
                                        : Kind::Invoice;
  record.document = {invoice.number, StartOfDay(Variant(invoice.date).ToDate())};
  record.invoice = invoice.id;
  Append(desk, setup, end, record);
}

void RecordDeletion(const Desk& desk, std::int32_t ticket) {
  if (ModeOf(desk) == Mode::Off) return;
  const Setup setup = ReadSetup(desk);
  const auto registered = Registered(desk.connection, setup.mode, OfTicket(ticket));
  if (!registered) return;
  Record record;
  record.kind = Kind::Cancellation;
  record.issuer = registered->issuer;
  record.issuer_name = registered->issuer_name;
  record.document = registered->document;
  record.ticket = ticket;
  const PastReplies replies = RepliesTo(desk.connection, setup.mode, record.issuer, record.document.number);
  if (replies.rejected && !replies.accepted) record.refused = Refused::AndNeverHeld;
  Append(desk, setup, ReadEnd(desk.connection, record.document.number), record);
}

std::string InvoiceRefusal(const Desk& desk, const Buyer& buyer) {
  return ModeOf(desk) == Mode::Off || IsNamed(buyer) ? std::string() : kNoBuyer;
}

}  // namespace tpv::fiscal
