#include "adapters/files/pdf/sheet.h"

#include "base/text.h"

namespace tpv {

namespace {

constexpr double kPageWidth = 595.28;
constexpr double kPageHeight = 841.89;

}  // namespace

Sheet::Sheet(int pages) : canvas_(kPageWidth, kPageHeight), pages_(pages) {}

void Sheet::UseStyle(const TextStyle& style) {
  if (style == used_) return;
  used_ = style;
  cairo_select_font_face(canvas_.get(), "Arial", CAIRO_FONT_SLANT_NORMAL,
                         style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(canvas_.get(), style.points);
}

double Sheet::WidthOf(const std::string& text, const TextStyle& style) {
  UseStyle(style);
  cairo_text_extents_t extents;
  cairo_text_extents(canvas_.get(), text.c_str(), &extents);
  return extents.x_advance;
}

void Sheet::Text(std::string_view text, double x, double top, const TextStyle& style, Align align) {
  if (IsDraft()) return;
  const std::string clean = OneLine(text);
  const double width = align == Align::Left ? 0 : WidthOf(clean, style);
  const double start = x - (align == Align::Right ? width : align == Align::Centre ? width / 2 : 0);
  UseStyle(style);
  cairo_set_source_rgb(canvas_.get(), kInk.red, kInk.green, kInk.blue);
  cairo_move_to(canvas_.get(), start, top + style.points);
  cairo_show_text(canvas_.get(), clean.c_str());
}

void Sheet::Box(double x, double top, double width, double height, const Colour& colour) {
  if (IsDraft()) return;
  cairo_set_source_rgb(canvas_.get(), colour.red, colour.green, colour.blue);
  cairo_rectangle(canvas_.get(), x, top, width, height);
  cairo_fill(canvas_.get());
}

void Sheet::Line(double from_x, double from_y, double to_x, double to_y, double width, const Colour& colour) {
  if (IsDraft()) return;
  cairo_set_source_rgb(canvas_.get(), colour.red, colour.green, colour.blue);
  cairo_set_line_width(canvas_.get(), width);
  cairo_move_to(canvas_.get(), from_x, from_y);
  cairo_line_to(canvas_.get(), to_x, to_y);
  cairo_stroke(canvas_.get());
}

std::vector<std::string> Sheet::Wrapped(std::string_view text, double width,
                                        const TextStyle& style) {
  const std::string whole = OneLine(text);
  if (WidthOf(whole, style) <= width) return {whole};
  std::vector<std::string> lines = {""};
  for (const std::string& word : Split(whole, " ")) {
    const std::string longer = lines.back().empty() ? word : lines.back() + " " + word;
    if (WidthOf(longer, style) <= width) {
      lines.back() = longer;
      continue;
    }
    if (!lines.back().empty()) lines.emplace_back();
    // A word wider than the column goes on below.
    for (std::size_t at = 0; at < word.size();) {
      std::string character;
      AppendCharacter(character, NextCharacter(word, at));
      if (!lines.back().empty() && WidthOf(lines.back() + character, style) > width)
        lines.emplace_back();
      lines.back() += character;
    }
  }
  return lines;
}

void Sheet::EndPage() {
  const std::string number = "Página " + std::to_string(page_) + " de " + std::to_string(pages_);
  Text(number, kRight, kBottom + 12, {8, false}, Align::Right);
  cairo_show_page(canvas_.get());
}

bool Sheet::Need(double height) {
  if (y + height <= kBottom || y == kTop) return false;
  EndPage();
  ++page_;
  y = kTop;
  return true;
}

std::string Sheet::Finish() {
  EndPage();
  return canvas_.Finish();
}

}  // namespace tpv
