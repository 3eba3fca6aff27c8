// Documents as PDF files: the only place that knows the drawing library. Without
// it (pdf_missing.cpp) tickets are text files and there are no reports.
#pragma once

#include <optional>
#include <string>

#include "adapters/files/ticket_page.h"
#include "platform/report.h"

namespace tpv {

// One page, 80 mm wide and as long as the ticket. A line too long for the paper
// is set narrower. Nullopt without the library.
std::optional<std::string> TicketPdf(const TicketPage& page);

// A4 pages. Throws PrintError, also without the library.
std::string ReportPdf(const Report& report);

}  // namespace tpv
