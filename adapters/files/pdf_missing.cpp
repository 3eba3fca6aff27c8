#include "adapters/files/pdf/fonts.h"
#include "adapters/files/pdf/pdf.h"

namespace tpv {

namespace {
constexpr const char* kMissing = "Este programa se construyó sin la biblioteca que hace documentos PDF";
}

double LengthOnRoll(const TicketPage& page) { return page.length; }

std::optional<std::string> TicketPdf(const TicketPage&, const RollPiece&) { return std::nullopt; }

std::optional<std::string> TicketSheetsPdf(const TicketPage&, std::string_view) {
  return std::nullopt;
}

void FindFontsByName(const char*) {}
void ReadFontRules() {}

std::string ReportPdf(const Report&, const CodeEncoder&) { throw PrintError(kMissing); }

std::string LabelPdf(const std::vector<Label>&, const LabelSheet&) { throw PrintError(kMissing); }

}  // namespace tpv
