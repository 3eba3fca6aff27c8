#include "adapters/files/pdf/code_drawing.h"

namespace tpv {

void DrawCode(cairo_t* context, const SquareCode& code, double left, double top) {
  constexpr double kWhite = (kCodeSide + 2 * kCodeMargin) * kPointsPerCentimetre;
  constexpr double kMargin = kCodeMargin * kPointsPerCentimetre;
  const double module = kCodeSide * kPointsPerCentimetre / code.side;
  cairo_save(context);
  cairo_set_source_rgb(context, 1, 1, 1);
  cairo_rectangle(context, left, top, kWhite, kWhite);
  cairo_fill(context);
  cairo_set_source_rgb(context, 0, 0, 0);
  // One path for all, in whole runs: no pale seams between neighbours.
  for (int row = 0; row < code.side; ++row) {
    for (int column = 0, end = 0; column < code.side; column = end + 1) {
      for (end = column; end < code.side && code.Dark(end, row);) ++end;
      if (end == column) continue;
      cairo_rectangle(context, left + kMargin + column * module, top + kMargin + row * module,
                      (end - column) * module, module);
    }
  }
  cairo_fill(context);
  cairo_restore(context);
}

}  // namespace tpv
