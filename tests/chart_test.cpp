// A chart's drawing: nothing leaves its room, sizes are as the values, what has no values
// says so.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/chart.h"

namespace tpv {
namespace {

using Kind = ChartData::Kind;

// Six points a character, ten a line.
struct Recorded : ChartGround {
  double TextHeight() const override { return 10; }
  double WidthOf(const std::string& text) override { return 6.0 * static_cast<double>(text.size()); }
  void Caption(const std::string& text, double left, double top) override { Text(text, left, top, Side::Left); }
  void Text(const std::string& text, double x, double top, Side side) override {
    const double width = WidthOf(text);
    texts.push_back(text);
    boxes.push_back({x - (side == Side::Left ? 0 : side == Side::Right ? width : width / 2), top, width, 10});
  }
  void Box(const ChartBox& box, int ink) override {
    boxes.push_back(box);
    if (box.width != 7 || box.height != 7) bars.emplace_back(ink, box);  // 7: the legend's mark
  }
  void Line(double from_x, double from_y, double to_x, double to_y, int ink) override {
    boxes.push_back({std::min(from_x, to_x), std::min(from_y, to_y), std::abs(to_x - from_x), std::abs(to_y - from_y)});
    series_lines += ink >= 0;
  }
  bool Says(const std::string& text) const { return std::find(texts.begin(), texts.end(), text) != texts.end(); }

  std::vector<std::string> texts;
  std::vector<ChartBox> boxes;
  std::vector<std::pair<int, ChartBox>> bars;
  int series_lines = 0;
};

ChartData Sample(Kind kind) {
  return {"Ventas", {"Hoy", "Ayer"}, {"uno", "un nombre que no cabe en el sitio que hay para él", "tres"},
          {{120.5, -60.25, 0}, {241, 30}}, kind, "#,##0.00 €"};
}

TEST(Chart, StaysInItsRoomAndIsAsTallAsItsValues) {
  for (const Kind kind : {Kind::Columns, Kind::Bars, Kind::Line}) {
    for (const auto& [width, height] : {std::pair(300.0, 150.0), {900.0, 400.0}}) {
      Recorded drawn;
      DrawChart(drawn, Sample(kind), {20, 30, width, height});
      for (const ChartBox& box : drawn.boxes) {
        EXPECT_GE(box.left, 20 - 0.01);
        EXPECT_GE(box.top, 30 - 0.01);
        EXPECT_LE(box.Right(), 20 + width + 0.01);
        EXPECT_LE(box.Bottom(), 30 + height + 0.01);
      }
      ASSERT_EQ(drawn.bars.size(), 5U);  // the second series has no third value
      if (kind == Kind::Line) {
        EXPECT_EQ(drawn.series_lines, 3);
        continue;
      }
      const auto size = [&](int bar) {
        const ChartBox& box = drawn.bars[static_cast<std::size_t>(bar)].second;
        return kind == Kind::Columns ? box.height : box.width;
      };
      EXPECT_NEAR(size(3) / size(0), 2, 0.001);     // 241 and 120.5
      EXPECT_NEAR(size(0) / size(1), 2, 0.001);     // 120.5 and -60.25
      EXPECT_EQ(size(2), 0);
      const ChartBox& up = drawn.bars[0].second;
      const ChartBox& down = drawn.bars[1].second;
      EXPECT_NEAR(kind == Kind::Columns ? up.Bottom() : down.Right(), kind == Kind::Columns ? down.top : up.left, 0.001);
    }
  }
}

TEST(Chart, SaysItsValuesAndThatThereAreNone) {
  Recorded lying;
  DrawChart(lying, Sample(Kind::Bars), {0, 0, 300, 150});
  for (const char* text : {"Ventas", "Hoy", "Ayer", "uno", "-60,25 €"}) EXPECT_TRUE(lying.Says(text)) << text;
  EXPECT_EQ(ChartRow(Sample(Kind::Bars), 0), "uno | 120,50 € | 241,00 €");
  EXPECT_EQ(ChartRow(Sample(Kind::Bars), 2, ", "), "tres, 0,00 €, ");
  Recorded nothing;
  DrawChart(nothing, {"Vacío", {}, {}, {{}}}, {0, 0, 100, 60});
  EXPECT_TRUE(nothing.Says("Sin datos"));
  Recorded odd;  // what is no number is left out
  DrawChart(odd, {"", {}, {"a", "b"}, {{NAN, INFINITY}}}, {0, 0, 100, 60});
  EXPECT_TRUE(odd.bars.empty());
}

}  // namespace
}  // namespace tpv
