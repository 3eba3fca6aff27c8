#include "adapters/files/pdf/bar_chart.h"

#include <algorithm>
#include <cmath>

#include "base/mask.h"

namespace tpv {

namespace {

constexpr TextStyle kCaption{11, true};
constexpr TextStyle kSmall{7.5, false};
constexpr double kHeight = 130;  // of the bars
constexpr double kAxis = 52;     // room for the scale's numbers
constexpr Colour kSeries[] = {
    {0.16, 0.42, 0.62}, {0.88, 0.58, 0.20}, {0.35, 0.60, 0.38}, {0.60, 0.35, 0.55}};

// 1, 2 or 5 times a power of ten: four or so lines below the highest bar.
double Step(double range) {
  const double rough = range / 4;
  const double power = std::pow(10, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (rough <= factor * power) return factor * power;
  }
  return 10 * power;
}

class ChartPainter {
 public:
  ChartPainter(Sheet& sheet, const BarChart& chart) : sheet_(sheet), chart_(chart) {
    double highest = 0;
    double lowest = 0;
    for (const auto& series : chart.values) {
      for (const double value : series) {
        if (!std::isfinite(value)) continue;
        highest = std::max(highest, value);
        lowest = std::min(lowest, value);
      }
    }
    step_ = highest > lowest ? Step(highest - lowest) : 1;
    top_value_ = std::max(std::ceil(highest / step_), lowest < 0 ? 0.0 : 1.0) * step_;
    low_value_ = std::floor(lowest / step_) * step_;
  }

  void Draw() {
    sheet_.Need(kHeight + 60);
    sheet_.Text(chart_.caption, Sheet::kLeft, sheet_.y, kCaption);
    DrawLegend();
    top_ = sheet_.y + LineStep(kCaption) + 8;
    DrawScale();
    DrawGroups();
    sheet_.y = top_ + kHeight + 30;
  }

 private:
  static Colour ColourOf(std::size_t series) { return kSeries[series % std::size(kSeries)]; }
  double At(double value) const {
    return top_ + (top_value_ - value) / (top_value_ - low_value_) * kHeight;
  }
  double GroupWidth() const {
    return (Sheet::kRight - Sheet::kLeft - kAxis) /
           static_cast<double>(std::max<std::size_t>(chart_.labels.size(), 1));
  }

  void DrawLegend() {
    double x = Sheet::kRight;
    for (std::size_t i = chart_.series.size(); i-- > 0;) {
      sheet_.Text(chart_.series[i], x, sheet_.y + 2, kSmall, Align::Right);
      x -= sheet_.WidthOf(chart_.series[i], kSmall) + 11;
      sheet_.Box(x, sheet_.y + 3, 7, 7, ColourOf(i));
      x -= 12;
    }
  }

  void DrawScale() {
    const int lines = static_cast<int>(std::lround((top_value_ - low_value_) / step_));
    for (int i = 0; i <= lines; ++i) {
      const double value = low_value_ + i * step_;
      sheet_.Box(Sheet::kLeft + kAxis, At(value), Sheet::kRight - Sheet::kLeft - kAxis, 0.4, kPale);
      sheet_.Text(FormatNumber(value, step_ < 1 ? "#,##0.00" : "#,##0"), Sheet::kLeft + kAxis - 4,
                  At(value) - 5, kSmall, Align::Right);
    }
    sheet_.Box(Sheet::kLeft + kAxis, At(0), Sheet::kRight - Sheet::kLeft - kAxis, 0.8, kInk);
  }

  void DrawGroups() {
    double widest = 1;
    for (const std::string& label : chart_.labels)
      widest = std::max(widest, sheet_.WidthOf(label, kSmall) + 4);
    const auto every = static_cast<std::size_t>(std::ceil(widest / GroupWidth()));
    for (std::size_t label = 0; label < chart_.labels.size(); ++label) {
      const double start = Sheet::kLeft + kAxis + static_cast<double>(label) * GroupWidth();
      DrawBars(label, start);
      if (label % every != 0) continue;
      sheet_.Text(chart_.labels[label], start + GroupWidth() / 2, top_ + kHeight + 4, kSmall,
                  Align::Centre);
    }
  }

  void DrawBars(std::size_t label, double start) {
    const double count = static_cast<double>(std::max<std::size_t>(chart_.values.size(), 1));
    const double width = std::min(GroupWidth() * 0.8 / count, 40.0);
    double x = start + (GroupWidth() - width * count) / 2;
    for (std::size_t series = 0; series < chart_.values.size(); ++series, x += width) {
      const auto& values = chart_.values[series];
      if (label >= values.size() || !std::isfinite(values[label])) continue;
      const double end = At(values[label]);
      sheet_.Box(x, std::min(end, At(0)), width * 0.92, std::abs(end - At(0)), ColourOf(series));
    }
  }

  Sheet& sheet_;
  const BarChart& chart_;
  double step_ = 1;
  double top_value_ = 1;
  double low_value_ = 0;
  double top_ = 0;
};

}  // namespace

void DrawBarChart(Sheet& sheet, const BarChart& chart) { ChartPainter(sheet, chart).Draw(); }

}  // namespace tpv
