// Pictures of figures as plain data, and how they are drawn on whatever shows them: a
// window, a page.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpv {

// One or more series of values over the same labels.
struct ChartData {
  // Upright from the labels, lying beside them, or points joined by lines.
  enum class Kind { Columns, Bars, Line };

  std::string caption;
  std::vector<std::string> series;  // their names
  std::vector<std::string> labels;
  std::vector<std::vector<double>> values;  // by series, then label; what is missing is not drawn
  Kind kind = Kind::Columns;
  std::string mask = "#,##0.00";  // of a value, its unit in it: "#,##0.00 €"

  bool operator==(const ChartData&) const = default;
};

// "lunes | 120,50 € | 98,00 €": a label and its values as they are shown.
std::string ChartRow(const ChartData& data, std::size_t label, std::string_view between = " | ");

struct ChartBox {
  double left, top, width, height;
  double Right() const { return left + width; }
  double Bottom() const { return top + height; }
};

// What a chart is drawn on, in lengths of its own; downwards is more.
class ChartGround {
 public:
  enum class Side { Left, Centre, Right };  // of the text that lies at x
  // Inks below zero; from zero on they are the series'.
  static constexpr int kText = -1;
  static constexpr int kFaint = -2;

  virtual ~ChartGround() = default;
  virtual double TextHeight() const = 0;
  virtual double WidthOf(const std::string& text) = 0;
  virtual void Caption(const std::string& text, double left, double top) = 0;
  virtual void Text(const std::string& text, double x, double top, Side side) = 0;
  virtual void Box(const ChartBox& box, int ink) = 0;
  virtual void Line(double from_x, double from_y, double to_x, double to_y, int ink) = 0;
};

// Into the room given: caption and legend on top.
void DrawChart(ChartGround& ground, const ChartData& data, const ChartBox& room);

}  // namespace tpv
