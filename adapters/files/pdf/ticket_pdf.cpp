#include <algorithm>

#include "adapters/files/pdf/canvas.h"
#include "adapters/files/pdf/pdf.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr double kPointsPerCentimetre = 72 / 2.54;
constexpr double kWidth = 8 * kPointsPerCentimetre;
constexpr double kMargin = 0.4 * kPointsPerCentimetre;
constexpr double kShortest = 3;  // centimetres
// Of the fixed-pitch font, as shares of its size.
constexpr double kAdvance = 0.6;
constexpr double kAscent = 0.833;

// Every character in a cell of its own, so that columns stand one below the
// other whichever font the machine has.
void DrawLine(cairo_t* context, const PageLine& line) {
  const double room = kWidth - 2 * kMargin;
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
  const double baseline = kMargin + line.y * kPointsPerCentimetre + kAscent * line.points;
  const cairo_status_t status = cairo_scaled_font_text_to_glyphs(
      cairo_get_scaled_font(context), 0, baseline, line.text.data(), length, &glyphs, &glyph_count,
      &clusters, &cluster_count, &flags);
  if (status != CAIRO_STATUS_SUCCESS) throw PrintError(cairo_status_to_string(status));
  for (int i = 0; i < glyph_count; ++i) {
    glyphs[i].x = kMargin + i * kAdvance * line.points * narrowed;
  }
  cairo_show_text_glyphs(context, line.text.data(), length, glyphs, glyph_count, clusters,
                         cluster_count, flags);
  cairo_glyph_free(glyphs);
  cairo_text_cluster_free(clusters);
}

}  // namespace

std::optional<std::string> TicketPdf(const TicketPage& page) {
  double length = std::max(page.length, kShortest);
  for (const PageLine& line : page.lines)
    length = std::max(length, line.y + LineHeight(line.points));
  Canvas canvas(kWidth, length * kPointsPerCentimetre + 2 * kMargin);
  for (const PageLine& line : page.lines) {
    cairo_select_font_face(canvas.get(), page.family.c_str(), CAIRO_FONT_SLANT_NORMAL,
                           line.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    DrawLine(canvas.get(), line);
  }
  return canvas.Finish();
}

}  // namespace tpv
