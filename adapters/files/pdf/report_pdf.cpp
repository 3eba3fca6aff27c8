// Draws a report: title, who it is from and for, tables, charts.
#include <algorithm>

#include "adapters/files/pdf/chart_page.h"
#include "adapters/files/pdf/code_drawing.h"
#include "adapters/files/pdf/pdf.h"
#include "adapters/files/pdf/sheet.h"
#include "platform/pulse.h"

namespace tpv {

namespace {

constexpr TextStyle kTitle{16, true};
constexpr TextStyle kHeading{10, false};
constexpr TextStyle kCaption{11, true};
constexpr double kPad = 3;
constexpr std::size_t kMostLines = 40;  // of one row: a page must hold it

// The code's lines are centred on it; the white around it is room enough between them.
void DrawCodeBlock(Sheet& sheet, const ReportCode& about, const SquareCode& code) {
  constexpr TextStyle kSmall{8, false};
  constexpr double kSide = (kCodeSide + 2 * kCodeMargin) * kPointsPerCentimetre;
  const double width = std::max(kSide, sheet.WidthOf(about.below, kSmall));
  const double middle = Sheet::kLeft + width / 2;
  sheet.Text(about.above, middle, sheet.y, kSmall, Align::Centre);
  sheet.y += LineStep(kSmall);
  DrawCode(sheet.context(), code, middle - kSide / 2, sheet.y);
  sheet.y += kSide;
  sheet.Text(about.below, middle, sheet.y, kSmall, Align::Centre);
  sheet.y += LineStep(kSmall) + 12;
}

void DrawTitle(Sheet& sheet, const Report& report) {
  for (const std::string& line :
       sheet.Wrapped(report.title, Sheet::kRight - Sheet::kLeft, kTitle)) {
    sheet.Text(line, Sheet::kLeft, sheet.y, kTitle);
    sheet.y += LineStep(kTitle);
  }
  sheet.y += 6;
}

double DrawBlock(Sheet& sheet, const std::vector<std::string>& texts, double x, double width) {
  double y = sheet.y;
  for (const std::string& text : texts) {
    for (const std::string& line : sheet.Wrapped(text, width, kHeading)) {
      sheet.Text(line, x, y, kHeading);
      y += LineStep(kHeading);
    }
  }
  return y;
}

void DrawHeadings(Sheet& sheet, const Report& report) {
  const double middle = (Sheet::kLeft + Sheet::kRight) / 2 + 10;
  const double left = DrawBlock(sheet, report.left, Sheet::kLeft, middle - Sheet::kLeft - 20);
  const double right = DrawBlock(sheet, report.right, middle, Sheet::kRight - middle);
  sheet.y = std::max(left, right) + 12;
}

class TablePainter {
 public:
  TablePainter(Sheet& sheet, const ReportTable& table) : sheet_(sheet), table_(table) {
    double shares = 0;
    for (const ReportColumn& column : table.columns) shares += std::max(column.width, 0.0);
    double x = Sheet::kLeft;
    for (const ReportColumn& column : table.columns) {
      const double part = shares > 0 ? std::max(column.width, 0.0) / shares : 0;
      const double width = std::max(part * (Sheet::kRight - Sheet::kLeft), 12.0);
      cells_.push_back({x, width});
      x += width;
    }
    for (const ReportColumn& column : table.columns) captions_.cells.push_back(column.caption);
    captions_.strong = true;
  }

  void Draw() {
    const double head = table_.caption.empty() ? 0 : LineStep(kCaption) + 4;
    sheet_.Need(head + 60);
    if (head > 0) sheet_.Text(table_.caption, Sheet::kLeft, sheet_.y, kCaption);
    sheet_.y += head;
    DrawCaptions();
    double drawn = 0;
    for (const ReportRow& row : table_.rows) {
      Pulse((drawn++ / static_cast<double>(table_.rows.size()) + (sheet_.IsDraft() ? 0 : 1)) / 2);
      const Lines lines = LinesOf(row);
      if (sheet_.Need(HeightOf(lines))) DrawCaptions();
      if (row.strong) Shade(HeightOf(lines));
      DrawRow(row, lines);
    }
    sheet_.y += 14;
  }

 private:
  struct Cell {
    double x;
    double width;
  };
  using Lines = std::vector<std::vector<std::string>>;  // by column

  static TextStyle StyleOf(const ReportRow& row) { return {9, row.strong}; }

  Lines LinesOf(const ReportRow& row) {
    Lines lines;
    for (std::size_t i = 0; i < std::min(row.cells.size(), cells_.size()); ++i) {
      lines.push_back(sheet_.Wrapped(row.cells[i], cells_[i].width - 2 * kPad, StyleOf(row)));
      if (lines.back().size() > kMostLines) lines.back().resize(kMostLines);
    }
    return lines;
  }

  static double HeightOf(const Lines& lines) {
    std::size_t most = 1;
    for (const auto& cell : lines) most = std::max(most, cell.size());
    return static_cast<double>(most) * LineStep({}) + 2 * kPad;
  }

  void Shade(double height) {
    sheet_.Box(Sheet::kLeft, sheet_.y, Sheet::kRight - Sheet::kLeft, height, kPale);
  }

  void DrawRow(const ReportRow& row, const Lines& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const bool right = table_.columns[i].right;
      const double x = right ? cells_[i].x + cells_[i].width - kPad : cells_[i].x + kPad;
      double y = sheet_.y + kPad;
      for (const std::string& line : lines[i]) {
        sheet_.Text(line, x, y, StyleOf(row), right ? Align::Right : Align::Left);
        y += LineStep({});
      }
    }
    sheet_.y += HeightOf(lines);
  }

  void DrawCaptions() {
    DrawRow(captions_, LinesOf(captions_));
    sheet_.Box(Sheet::kLeft, sheet_.y, Sheet::kRight - Sheet::kLeft, 0.8, kInk);
    sheet_.y += 2;
  }

  Sheet& sheet_;
  const ReportTable& table_;
  std::vector<Cell> cells_;
  ReportRow captions_;
};

void Draw(Sheet& sheet, const Report& report, const SquareCode& code) {
  if (report.code) DrawCodeBlock(sheet, *report.code, code);
  DrawTitle(sheet, report);
  DrawHeadings(sheet, report);
  for (const ReportTable& table : report.tables) TablePainter(sheet, table).Draw();
  for (const ChartData& chart : report.charts) DrawChart(sheet, chart);
}

}  // namespace

// Drawn twice: the first time tells how many pages there are.
std::string ReportPdf(const Report& report, const CodeEncoder& codes) {
  const SquareCode code = report.code ? codes.Encode(report.code->text) : SquareCode{};
  Sheet draft(0);
  Draw(draft, report, code);
  Sheet sheet(draft.page());
  Draw(sheet, report, code);
  return sheet.Finish();
}

}  // namespace tpv
