#include "adapters/files/pdf/pdf.h"

namespace tpv {

std::optional<std::string> TicketPdf(const TicketPage&) { return std::nullopt; }

std::string ReportPdf(const Report&) {
  throw PrintError("Este programa se construyó sin la biblioteca que hace documentos PDF");
}

}  // namespace tpv
