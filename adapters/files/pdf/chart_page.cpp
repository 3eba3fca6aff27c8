#include "adapters/files/pdf/chart_page.h"

#include <algorithm>
#include <cmath>

namespace tpv {

namespace {

constexpr TextStyle kPictureCaption{11, true};
constexpr TextStyle kPictureText{7.5, false};
constexpr double kHeight = 165;
constexpr double kGap = 18;
constexpr Colour kSeries[] = {
    {0.16, 0.42, 0.62}, {0.88, 0.58, 0.20}, {0.35, 0.60, 0.38}, {0.60, 0.35, 0.55}};

class PageGround : public ChartGround {
 public:
  explicit PageGround(Sheet& sheet) : sheet_(sheet) {}

  double TextHeight() const override { return LineStep(kPictureText); }
  double WidthOf(const std::string& text) override { return sheet_.WidthOf(text, kPictureText); }
  void Caption(const std::string& text, double left, double top) override {
    sheet_.Text(text, left, top - 2, kPictureCaption);
  }
  void Text(const std::string& text, double x, double top, Side side) override {
    sheet_.Text(text, x, top, kPictureText, side == Side::Left ? Align::Left : side == Side::Right ? Align::Right : Align::Centre);
  }
  void Box(const ChartBox& box, int ink) override {
    sheet_.Box(box.left, box.top, box.width, box.height, ColourOf(ink));
  }
  void Line(double from_x, double from_y, double to_x, double to_y, int ink) override {
    sheet_.Line(from_x, from_y, to_x, to_y, ink == kFaint ? 0.4 : ink == kText ? 0.8 : 1.4, ColourOf(ink));
  }

 private:
  static Colour ColourOf(int ink) {
    if (ink < 0) return ink == kText ? kInk : kPale;
    return kSeries[static_cast<std::size_t>(ink) % std::size(kSeries)];
  }

  Sheet& sheet_;
};

}  // namespace

void DrawChart(Sheet& sheet, const ChartData& chart) {
  sheet.Need(kHeight);
  PageGround ground(sheet);
  DrawChart(ground, chart, {Sheet::kLeft, sheet.y, Sheet::kRight - Sheet::kLeft, kHeight});
  sheet.y += kHeight + kGap;
}

}  // namespace tpv
