// Draws labels on A4 sheets: the name, the price, and the bars with their code below.
#include <algorithm>
#include <cmath>

#include "adapters/files/pdf/canvas.h"
#include "adapters/files/pdf/code_drawing.h"
#include "adapters/files/pdf/pdf.h"
#include "base/text.h"

namespace tpv {

namespace {

constexpr double kPoint = kPointsPerCentimetre / 10;  // a millimetre
constexpr double kSheetWidth = 210 * kPoint;
constexpr double kSheetHeight = 297 * kPoint;
constexpr double kLabelMargin = 3 * kPoint;
constexpr double kModule = 0.33 * kPoint;  // of a bar code in its usual size
constexpr double kWhiteModules = 11;       // at each side of the bars
constexpr double kName = 9;                // type sizes
constexpr double kPrice = 18;
constexpr double kCode = 8;

class LabelPainter {
 public:
  LabelPainter(cairo_t* context, const LabelSheet& sheet)
      : context_(context), width_(sheet.width * kPoint), height_(sheet.height * kPoint) {}

  void Draw(const Label& label, double left, double top) {
    cairo_save(context_);
    cairo_rectangle(context_, left, top, width_, height_);
    cairo_clip(context_);
    const double room = width_ - 2 * kLabelMargin;
    Text(Fitting(label.name, kName, room), kName, false, left + width_ / 2, top + kLabelMargin + kName);
    Text(label.price, kPrice, true, left + width_ / 2, top + kLabelMargin + kName + kPrice * 1.1);
    Text(label.code, kCode, false, left + width_ / 2, top + height_ - kLabelMargin);
    const double bars_top = top + kLabelMargin + kName + kPrice * 1.25;
    Bars(label.bars, left, bars_top, top + height_ - kLabelMargin - kCode - bars_top);
    cairo_restore(context_);
  }

 private:
  void Use(double size, bool bold) {
    cairo_select_font_face(context_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context_, size);
  }

  double WidthOf(const std::string& text) {
    cairo_text_extents_t extents;
    cairo_text_extents(context_, text.c_str(), &extents);
    return extents.x_advance;
  }

  // As much of the text as there is room for.
  std::string Fitting(const std::string& text, double size, double room) {
    Use(size, false);
    const std::string line = OneLine(text);
    std::string fitting = line;
    for (std::size_t length = Length(line); length > 0 && WidthOf(fitting) > room; --length) {
      fitting = Left(line, length - 1) + "…";
    }
    return fitting;
  }

  void Text(const std::string& text, double size, bool bold, double centre, double baseline) {
    Use(size, bold);
    cairo_move_to(context_, centre - WidthOf(text) / 2, baseline);
    cairo_show_text(context_, text.c_str());
  }

  // Narrower than usual where the label asks for it; the white around belongs to the code.
  void Bars(const std::string& bars, double left, double top, double height) {
    if (bars.empty() || height <= 0) return;
    const double modules = static_cast<double>(bars.size()) + 2 * kWhiteModules;
    const double module = std::min(kModule, width_ / modules);
    const double first = left + (width_ - static_cast<double>(bars.size()) * module) / 2;
    for (std::size_t begin = 0, end = 0; begin < bars.size(); begin = end + 1) {
      for (end = begin; end < bars.size() && bars[end] == '1';) ++end;
      if (end == begin) continue;
      cairo_rectangle(context_, first + static_cast<double>(begin) * module, top,
                      static_cast<double>(end - begin) * module, height);
    }
    cairo_fill(context_);
  }

  cairo_t* context_;
  double width_;
  double height_;
};

}  // namespace

std::string LabelPdf(const std::vector<Label>& labels, const LabelSheet& sheet) {
  Canvas canvas(kSheetWidth, kSheetHeight);
  LabelPainter painter(canvas.get(), sheet);
  const auto on_page = static_cast<std::size_t>(sheet.columns) * static_cast<std::size_t>(sheet.rows);
  auto place = static_cast<std::size_t>(sheet.used);
  for (const Label& label : labels) {
    if (place == on_page) {
      cairo_show_page(canvas.get());
      place = 0;
    }
    const std::size_t column = place % static_cast<std::size_t>(sheet.columns);
    const std::size_t row = place / static_cast<std::size_t>(sheet.columns);
    painter.Draw(label, (sheet.left + static_cast<double>(column) * (sheet.width + sheet.between)) * kPoint,
                 (sheet.top + static_cast<double>(row) * sheet.height) * kPoint);
    ++place;
  }
  return canvas.Finish();
}

}  // namespace tpv
