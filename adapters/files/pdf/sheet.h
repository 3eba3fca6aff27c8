// A4 pages under a report or a long ticket: where the next block goes, texts that fit their
// columns, and the number at the foot of every page.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/files/pdf/canvas.h"

namespace tpv {

struct Colour {
  double red, green, blue;
};
inline constexpr Colour kInk{0.12, 0.12, 0.14};
inline constexpr Colour kPale{0.92, 0.93, 0.95};

struct TextStyle {
  double points = 9;
  bool bold = false;

  bool operator==(const TextStyle&) const = default;
};

enum class Align { Left, Right, Centre };

class Sheet {
 public:
  static constexpr double kLeft = 42;
  static constexpr double kRight = 553;
  static constexpr double kTop = 42;
  static constexpr double kBottom = 790;

  // `pages` is what the feet say there are; 0 while nobody knows yet.
  explicit Sheet(int pages);

  double y = kTop;  // where the next block starts, points from the page's top

  // Goes to a new page when so much does not fit any more; true when it did.
  bool Need(double height);
  void Text(std::string_view text, double x, double top, const TextStyle& style,
            Align align = Align::Left);
  // The text in lines that are no wider than that; at least one.
  std::vector<std::string> Wrapped(std::string_view text, double width, const TextStyle& style);
  double WidthOf(const std::string& text, const TextStyle& style);
  void Box(double x, double top, double width, double height, const Colour& colour);
  void Line(double from_x, double from_y, double to_x, double to_y, double width, const Colour& colour);

  // Only measured: what is drawn on it nobody sees.
  bool IsDraft() const { return pages_ == 0; }
  // For drawings of one's own, in whatever type.
  cairo_t* context() {
    used_ = kNone;
    return canvas_.get();
  }
  int page() const { return page_; }
  // Ends the last page and gives the file's bytes.
  std::string Finish();

 private:
  void UseStyle(const TextStyle& style);
  void EndPage();

  Canvas canvas_;
  static constexpr TextStyle kNone{0, false};
  TextStyle used_ = kNone;
  int pages_;
  int page_ = 1;
};

inline double LineStep(const TextStyle& style) { return style.points * 1.25; }

}  // namespace tpv
