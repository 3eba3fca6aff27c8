#include "adapters/files/ticket_page.h"

#include <algorithm>
#include <cmath>

#include "adapters/files/pdf/pdf.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr double kCentimetresPerPoint = 2.54 / 72;

void Feed(std::vector<TextRow>& rows, double centimetres, double line_height) {
  const long count = std::lround(centimetres / line_height);
  for (long i = 0; i < count; ++i) rows.emplace_back();
}

}  // namespace

// 1.133: what the font's letters reach above and below, as a share of its size.
double LineHeight(double points) { return points * 1.133 * kCentimetresPerPoint; }

double HeightOf(const PageLine& line) {
  return line.code ? kCodeSide + 2 * kCodeMargin : LineHeight(line.points);
}

std::vector<TextRow> RowsOf(const TicketPage& page) {
  std::vector<TextRow> rows;
  double below_last = 0;
  double height = LineHeight(9);
  for (const PageLine& line : page.lines) {
    height = LineHeight(line.points);
    Feed(rows, line.y - below_last, height);
    const SquareCode* code = line.code ? &*line.code : nullptr;
    rows.push_back({TrimRight(code != nullptr ? code->text : line.text), line.bold, code});
    below_last = line.y + HeightOf(line);
  }
  Feed(rows, page.length - below_last, height);
  return rows;
}

std::string PlainText(const TicketPage& page) {
  std::string text;
  for (const TextRow& row : RowsOf(page)) text += row.text + "\n";
  return text;
}

void PageRecorder::SetFont(std::string_view family, double points, bool bold) {
  page_.family = OneLine(family);
  points_ = std::clamp(points, 1.0, 200.0);
  bold_ = bold;
}

void PageRecorder::PrintLine(std::string_view text) {
  const std::string lines = ReplaceAll(ReplaceAll(text, kLineBreak, "\n"), "\r", "\n");
  for (const std::string& line : Split(lines, "\n")) {
    // A control character would reach a receipt printer as a command.
    if (!line.empty()) page_.lines.push_back({page_.length, points_, bold_, OneLine(line)});
    page_.length += LineHeight(points_);
  }
}

void PageRecorder::PrintCode(std::string_view text) {
  page_.lines.push_back({page_.length, points_, false, {}, codes_.Encode(text)});
  page_.length += HeightOf(page_.lines.back());
}

void PageRecorder::SetY(double centimetres) { page_.length = std::max(0.0, centimetres); }

std::vector<DocumentFolder::Part> TicketFiles(const TicketPage& page) {
  std::vector<DocumentFolder::Part> files = {{".txt", PlainText(page)}};
  if (auto pdf = TicketPdf(page)) files.push_back({".pdf", std::move(*pdf)});
  return files;
}

}  // namespace tpv
