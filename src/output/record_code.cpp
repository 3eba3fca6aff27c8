#include "output/record_code.h"

#include <optional>

#include "context/context.h"
#include "data/sql_text.h"
#include "fiscal/records.h"
#include "fiscal/setup.h"
#include "fiscal/validation_code.h"
#include "output/ticket_text.h"
#include "platform/database.h"
#include "platform/printer.h"

namespace tpv {

namespace {

std::int32_t InvoiceOf(Connection& connection, std::int32_t sale) {
  const auto row =
      connection.Execute("SELECT Cav_IdFactura FROM Cav WHERE Cav_Id = " + sql::Number(std::int64_t{sale}));
  return row->Eof() ? 0 : row->Field(0).IntOr(0);
}

// A sale that was invoiced when it was paid has none but its invoice's.
std::optional<fiscal::Record> RecordOf(Connection& connection, std::int32_t sale) {
  if (auto own = fiscal::RecordOfTicket(connection, sale)) return own;
  const std::int32_t invoice = InvoiceOf(connection, sale);
  return invoice == 0 ? std::nullopt : fiscal::RecordOfInvoice(connection, invoice);
}

}  // namespace

std::string CodeOfSale(Context& context, std::int32_t sale) {
  if (fiscal::ModeOf(fiscal::DeskOf(context)) == fiscal::Mode::Off) return "";
  const auto record = RecordOf(context.Database(), sale);
  return record ? fiscal::ValidationUrl(*record) : std::string();
}

void PrintRecordCode(PrintDocument& document, const std::string& url) {
  PrintTextLine(document, Centre32(fiscal::kAboveCode));
  CloseGap(document);
  document.PrintCode(url);
  // The sentence in lines that fit.
  const std::string_view sentence = fiscal::kBelowCode;
  const std::size_t blank = sentence.rfind(' ', kTicketWidth);
  PrintTextLine(document, Centre32(sentence.substr(0, blank)));
  CloseGap(document);
  PrintTextLine(document, Centre32(sentence.substr(blank + 1)));
}

}  // namespace tpv
