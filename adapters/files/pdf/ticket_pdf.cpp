// Draws a ticket: on a roll of paper, or on sheets where a shop has no roll.
#include <algorithm>

#include "adapters/files/pdf/canvas.h"
#include "adapters/files/pdf/code_drawing.h"
#include "adapters/files/pdf/pdf.h"
#include "adapters/files/pdf/sheet.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr double kPaperMargin = 0.4;  // centimetres, as those below
constexpr double kShortest = 3;       // without margins
constexpr double kSheetRoom = 9;      // what a line may take of a sheet's width
// Of the fixed-pitch font, as shares of its size.
constexpr double kAdvance = 0.6;
constexpr double kAscent = 0.833;

double Points(double centimetres) { return centimetres * kPointsPerCentimetre; }
double PointsOf(const PageLine& line) { return Points(HeightOf(line)); }

// Every character in a cell of its own, so that columns stand one below the
// other whichever font the machine has. All lengths are points.
void DrawLine(cairo_t* context, const std::string& family, const PageLine& line, double left,
              double top, double room) {
  cairo_select_font_face(context, family.c_str(), CAIRO_FONT_SLANT_NORMAL,
                         line.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  const double cells = static_cast<double>(std::max<std::size_t>(Length(line.text), 1));
  const double narrowed = std::min(1.0, room / (cells * kAdvance * line.points));
  cairo_matrix_t size;
  cairo_matrix_init_scale(&size, line.points * narrowed, line.points);
  cairo_set_font_matrix(context, &size);

  const int length = static_cast<int>(line.text.size());
  cairo_glyph_t* glyphs = nullptr;
  cairo_text_cluster_t* clusters = nullptr;
  int glyph_count = 0;
  int cluster_count = 0;
  cairo_text_cluster_flags_t flags{};
  const double baseline = top + kAscent * line.points;
  const cairo_status_t status = cairo_scaled_font_text_to_glyphs(
      cairo_get_scaled_font(context), 0, baseline, line.text.data(), length, &glyphs, &glyph_count,
      &clusters, &cluster_count, &flags);
  if (status != CAIRO_STATUS_SUCCESS) throw PrintError(cairo_status_to_string(status));
  for (int i = 0; i < glyph_count; ++i) {
    glyphs[i].x = left + i * kAdvance * line.points * narrowed;
  }
  cairo_show_text_glyphs(context, line.text.data(), length, glyphs, glyph_count, clusters,
                         cluster_count, flags);
  cairo_glyph_free(glyphs);
  cairo_text_cluster_free(clusters);
}

void DrawLineOrCode(cairo_t* context, const std::string& family, const PageLine& line, double left,
                    double top, double room) {
  if (!line.code) return DrawLine(context, family, line, left, top, room);
  constexpr double kRowColumns = 32;
  const double columns = std::min(room, kRowColumns * kAdvance * line.points);
  DrawCode(context, *line.code, left + (columns - PointsOf(line)) / 2, top);
}

double ContentLength(const TicketPage& page) {
  double length = std::max(page.length, kShortest);
  for (const PageLine& line : page.lines)
    length = std::max(length, line.y + HeightOf(line));
  return length;
}

void DrawOnSheets(Sheet& sheet, const TicketPage& page, std::string_view title) {
  constexpr TextStyle kShopTitle{11, true};
  const auto draw_head = [&] {
    sheet.Text(title, Sheet::kLeft, Sheet::kTop, kShopTitle);
    return Sheet::kTop + 2 * LineStep(kShopTitle);
  };
  double first = 0;  // what is on the sheet's first line, as a place on the ticket
  double below_head = draw_head();
  for (const PageLine& line : page.lines) {
    sheet.y = below_head + Points(line.y - first);
    if (sheet.Need(PointsOf(line))) {
      sheet.y = below_head = draw_head();
      first = line.y;
    }
    DrawLineOrCode(sheet.context(), page.family, line, Sheet::kLeft, sheet.y, Points(kSheetRoom));
  }
}

}  // namespace

double LengthOnRoll(const TicketPage& page) { return ContentLength(page) + 2 * kPaperMargin; }

std::optional<std::string> TicketPdf(const TicketPage& page, const RollPiece& piece) {
  const double length = piece.length > 0 ? piece.length : LengthOnRoll(page);
  const double bottom = Points(length - kPaperMargin);
  Canvas canvas(Points(piece.width), Points(length));
  double first = 0;
  for (const PageLine& line : page.lines) {
    double top = Points(kPaperMargin + line.y - first);
    // Half a point: lengths are rounded on their way.
    if (top + PointsOf(line) > bottom + 0.5 && line.y > first) {
      cairo_show_page(canvas.get());
      first = line.y;
      top = Points(kPaperMargin);
    }
    DrawLineOrCode(canvas.get(), page.family, line, Points(kPaperMargin), top,
                   Points(piece.width - 2 * kPaperMargin));
  }
  return canvas.Finish();
}

// Drawn twice: the first time tells how many pages there are.
std::optional<std::string> TicketSheetsPdf(const TicketPage& page, std::string_view title) {
  Sheet draft(0);
  DrawOnSheets(draft, page, title);
  Sheet sheet(draft.page());
  DrawOnSheets(sheet, page, title);
  return sheet.Finish();
}

}  // namespace tpv
