#include "platform/chart.h"

#include <algorithm>
#include <cmath>

#include "base/mask.h"
#include "base/text.h"

namespace tpv {

namespace {

using Side = ChartGround::Side;

// 1, 2 or 5 times a power of ten: four or so lines below the highest value.
double Step(double range) {
  const double rough = range / 4;
  const double power = std::pow(10, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (rough <= factor * power) return factor * power;
  }
  return 10 * power;
}

struct Scale {
  double low = 0;
  double high = 1;
  double step = 1;
};

// The axis is in it, whatever the values.
Scale ScaleOf(const ChartData& data) {
  double highest = 0;
  double lowest = 0;
  for (const auto& series : data.values) {
    for (const double value : series) {
      if (!std::isfinite(value)) continue;
      highest = std::max(highest, value);
      lowest = std::min(lowest, value);
    }
  }
  Scale scale;
  if (highest > lowest) scale.step = Step(highest - lowest);
  scale.high = std::max(std::ceil(highest / scale.step), lowest < 0 ? 0.0 : 1.0) * scale.step;
  scale.low = std::floor(lowest / scale.step) * scale.step;
  return scale;
}

class ChartPainter {
 public:
  ChartPainter(ChartGround& ground, const ChartData& data, const ChartBox& room)
      : ground_(ground), data_(data), room_(room), scale_(ScaleOf(data)), line_(ground.TextHeight()) {}

  void Draw() {
    DrawHead();
    if (data_.labels.empty()) {
      ground_.Text("Sin datos", plot_.left + plot_.width / 2, plot_.top + (plot_.height - line_) / 2, Side::Centre);
    } else if (data_.kind == ChartData::Kind::Bars) {
      DrawLying();
    } else {
      DrawUpright();
    }
  }

 private:
  void DrawHead() {
    ground_.Caption(data_.caption, room_.left, room_.top);
    double x = room_.Right();
    for (std::size_t i = data_.series.size(); i-- > 0;) {
      ground_.Text(data_.series[i], x, room_.top, Side::Right);
      x -= ground_.WidthOf(data_.series[i]) + line_;
      ground_.Box({x, room_.top + line_ * 0.2, line_ * 0.7, line_ * 0.7}, static_cast<int>(i));
      x -= line_;
    }
    const double head = line_ * 1.9;
    plot_ = {room_.left, room_.top + head, room_.width, std::max(room_.height - head, line_)};
  }

  double Part(double value) const { return (value - scale_.low) / (scale_.high - scale_.low); }
  double Height(double value) const { return plot_.Bottom() - Part(value) * plot_.height; }
  double Length(double value) const { return plot_.left + Part(value) * plot_.width; }
  double ShareOfLabel(double whole) const { return whole / static_cast<double>(data_.labels.size()); }

  std::string Shown(double value) const { return FormatNumber(value, data_.mask); }
  double Widest(const std::vector<std::string>& texts) {
    double widest = 0;
    for (const std::string& text : texts) widest = std::max(widest, ground_.WidthOf(text));
    return widest;
  }
  std::vector<std::string> FirstSeries() const {
    std::vector<std::string> texts;
    if (data_.values.empty()) return texts;
    for (const double value : data_.values[0]) texts.push_back(Shown(value));
    return texts;
  }

  // Calls with each value there is: its series, its label, itself.
  template <typename Use>
  void ForEach(Use use) {
    for (std::size_t series = 0; series < data_.values.size(); ++series) {
      const auto& values = data_.values[series];
      for (std::size_t label = 0; label < std::min(values.size(), data_.labels.size()); ++label) {
        if (std::isfinite(values[label])) use(series, label, values[label]);
      }
    }
  }

  // --- upright: columns and lines -------------------------------------------
  void DrawUpright() {
    plot_.height -= line_ * 1.3;  // the labels' line
    std::vector<std::string> steps;
    const int lines = static_cast<int>(std::lround((scale_.high - scale_.low) / scale_.step));
    for (int i = 0; i <= lines; ++i) {
      steps.push_back(FormatNumber(scale_.low + i * scale_.step, scale_.step < 1 ? "#,##0.00" : "#,##0"));
    }
    const double aside = Widest(steps) + line_ * 0.5;
    plot_.left += aside;
    plot_.width = std::max(plot_.width - aside, 1.0);
    for (int i = 0; i <= lines; ++i) {
      const double y = Height(scale_.low + i * scale_.step);
      ground_.Line(plot_.left, y, plot_.Right(), y, ChartGround::kFaint);
      ground_.Text(steps[static_cast<std::size_t>(i)], plot_.left - line_ * 0.3, y - line_ * 0.6, Side::Right);
    }
    data_.kind == ChartData::Kind::Line ? DrawLines() : DrawColumns();
    ground_.Line(plot_.left, Height(0), plot_.Right(), Height(0), ChartGround::kText);
    DrawLabels();
  }

  double Middle(std::size_t label) const {
    return plot_.left + ShareOfLabel(plot_.width) * (static_cast<double>(label) + 0.5);
  }

  void DrawColumns() {
    const double count = static_cast<double>(std::max<std::size_t>(data_.values.size(), 1));
    const double width = std::min(ShareOfLabel(plot_.width) * 0.8 / count, line_ * 3);
    ForEach([&](std::size_t series, std::size_t label, double value) {
      const double end = Height(value);
      const double left = Middle(label) + width * (static_cast<double>(series) - count / 2);
      ground_.Box({left, std::min(end, Height(0)), width * 0.92, std::abs(end - Height(0))}, static_cast<int>(series));
    });
  }

  void DrawLines() {
    const double dot = line_ * 0.3;
    ForEach([&](std::size_t series, std::size_t label, double value) {
      const int ink = static_cast<int>(series);
      ground_.Box({Middle(label) - dot / 2, Height(value) - dot / 2, dot, dot}, ink);
      const double before = label > 0 ? data_.values[series][label - 1] : NAN;
      if (std::isfinite(before)) ground_.Line(Middle(label - 1), Height(before), Middle(label), Height(value), ink);
    });
  }

  void DrawLabels() {
    const double widest = Widest(data_.labels) + line_ * 0.5;
    const auto every = static_cast<std::size_t>(std::ceil(widest / ShareOfLabel(plot_.width)));
    for (std::size_t label = 0; label < data_.labels.size(); label += std::max<std::size_t>(every, 1)) {
      ground_.Text(data_.labels[label], Middle(label), plot_.Bottom() + line_ * 0.3, Side::Centre);
    }
  }

  // --- lying: names, bars, what they come to ------------------------------------
  std::string Cut(const std::string& text, double width) {
    std::string cut = text;
    for (std::size_t length = tpv::Length(text); length > 1 && ground_.WidthOf(cut) > width;) {
      cut = tpv::Left(text, --length) + "…";
    }
    return cut;
  }

  void DrawLying() {
    const double gap = line_ * 0.5;
    const double names = std::min(Widest(data_.labels), room_.width * 0.42);
    const double amounts = Widest(FirstSeries());
    plot_.left += names + gap;
    plot_.width = std::max(room_.width - names - amounts - 2 * gap, 1.0);
    const double row = std::min(ShareOfLabel(plot_.height), line_ * 2.2);
    const double bar = row * 0.8 / static_cast<double>(std::max<std::size_t>(data_.values.size(), 1));
    const auto top = [&](std::size_t label) { return plot_.top + row * static_cast<double>(label); };
    ForEach([&](std::size_t series, std::size_t label, double value) {
      const double end = Length(value);
      ground_.Box({std::min(end, Length(0)), top(label) + bar * static_cast<double>(series), std::abs(end - Length(0)),
                   bar * 0.92},
                  static_cast<int>(series));
    });
    const double down = (row * 0.8 - line_ * 1.2) / 2;
    for (std::size_t label = 0; label < data_.labels.size(); ++label) {
      ground_.Text(Cut(data_.labels[label], names), room_.left, top(label) + down, Side::Left);
      if (data_.values.empty() || label >= data_.values[0].size()) continue;
      ground_.Text(Shown(data_.values[0][label]), room_.Right(), top(label) + down, Side::Right);
    }
    const double bottom = top(data_.labels.size());
    ground_.Line(Length(0), plot_.top, Length(0), bottom, ChartGround::kText);
  }

  ChartGround& ground_;
  const ChartData& data_;
  const ChartBox room_;
  const Scale scale_;
  const double line_;  // the height of a text: what all distances are measured in
  ChartBox plot_{};
};

}  // namespace

std::string ChartRow(const ChartData& data, std::size_t label, std::string_view between) {
  std::string row = data.labels.at(label);
  for (const auto& series : data.values) {
    row += between;
    if (label < series.size()) row += FormatNumber(series[label], data.mask);
  }
  return row;
}

void DrawChart(ChartGround& ground, const ChartData& data, const ChartBox& room) {
  ChartPainter(ground, data, room).Draw();
}

}  // namespace tpv
