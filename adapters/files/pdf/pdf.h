// Documents as PDF files: the only place that knows the drawing library. Without
// it (pdf_missing.cpp) tickets are text files and there are no reports.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/files/ticket_page.h"
#include "platform/label_press.h"
#include "platform/report.h"

namespace tpv {

// A piece of a roll.
struct RollPiece {
  double width = 8;   // centimetres, as the length
  double length = 0;  // 0 for as long as the ticket
};

// What the ticket takes on a roll, its margins included, in centimetres.
double LengthOnRoll(const TicketPage& page);

// The ticket on pieces of that size, begun at the top left. A line too long for the
// paper is set narrower. Nullopt without the library, as the next one.
std::optional<std::string> TicketPdf(const TicketPage& page, const RollPiece& piece = {});

// The ticket on A4 pages with its title and the page's number on each.
std::optional<std::string> TicketSheetsPdf(const TicketPage& page, std::string_view title);

// A report on A4 pages. Throws PrintError, also without the library.
std::string ReportPdf(const Report& report, const CodeEncoder& codes);

// Labels on A4 pages. Throws as ReportPdf.
std::string LabelPdf(const std::vector<Label>& labels, const LabelSheet& sheet);

}  // namespace tpv
