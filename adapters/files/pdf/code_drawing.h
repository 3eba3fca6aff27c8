// Draws a square code; lengths are points.
#pragma once

#include <cairo.h>

#include "platform/square_code.h"

namespace tpv {

inline constexpr double kPointsPerCentimetre = 72 / 2.54;

// Black on white, kCodeMargin of white around it included. `left` and `top` are the
// white's.
void DrawCode(cairo_t* context, const SquareCode& code, double left, double top);

}  // namespace tpv
