#include "adapters/qt/chart_view.h"

#include <QPainter>

#include "adapters/qt/control_view.h"
#include "adapters/qt/panel.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kChartMargin = 10;

// The first series is the one to look at, the second what it is measured by.
QColor ColourOf(int ink) {
  if (ink == ChartGround::kText) return colour::kLabel;
  if (ink == ChartGround::kFaint) return colour::kGround;
  const QColor series[] = {colour::kAccent, {0xE0, 0xA0, 0x4E}, {0x5A, 0x99, 0x61}, {0x99, 0x5A, 0x8C}};
  return series[static_cast<std::size_t>(ink) % std::size(series)];
}

class WindowGround : public ChartGround {
 public:
  explicit WindowGround(QPainter& painter) : painter_(painter) { painter_.setFont(Type(kLabelSize)); }

  double TextHeight() const override { return painter_.fontMetrics().height(); }
  double WidthOf(const std::string& text) override { return painter_.fontMetrics().horizontalAdvance(tpv::qt::Text(text)); }
  void Caption(const std::string& text, double left, double top) override {
    QFont bold = Type(kLabelSize);
    bold.setBold(true);
    painter_.setFont(bold);
    Text(text, left, top, Side::Left);
    painter_.setFont(Type(kLabelSize));
  }
  void Text(const std::string& text, double x, double top, Side side) override {
    const double left = x - (side == Side::Left ? 0 : side == Side::Right ? WidthOf(text) : WidthOf(text) / 2);
    painter_.setPen(colour::kText);
    painter_.drawText(QPointF(left, top + painter_.fontMetrics().ascent()), tpv::qt::Text(text));
  }
  void Box(const ChartBox& box, int ink) override {
    painter_.fillRect(QRectF(box.left, box.top, box.width, box.height), ColourOf(ink));
  }
  void Line(double from_x, double from_y, double to_x, double to_y, int ink) override {
    const bool series = ink >= 0;
    painter_.setRenderHint(QPainter::Antialiasing, series);
    painter_.setPen(QPen(ColourOf(ink), series ? 2 : 1));
    painter_.drawLine(QPointF(from_x, from_y), QPointF(to_x, to_y));
    painter_.setRenderHint(QPainter::Antialiasing, false);
  }

 private:
  QPainter& painter_;
};

class ChartView : public ControlView {
 public:
  ChartView(ui::Chart& chart, Surroundings around)
      : ControlView(chart), chart_(chart), widget_(new ChartWidget(&around.parent)) {}
  QWidget* Outer() override { return widget_; }
  void Sync() override {
    ControlView::Sync();
    if (widget_->data() != chart_.data) widget_->Show(chart_.data);
  }
  bool Tall() const override { return true; }

 private:
  ui::Chart& chart_;
  ChartWidget* widget_;
};

}  // namespace

ChartWidget::ChartWidget(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

// Who cannot see it hears its title, and each label with its values.
void ChartWidget::Show(const ChartData& data) {
  data_ = data;
  std::string heard;
  for (std::size_t label = 0; label < data_.labels.size(); ++label) heard += ChartRow(data_, label, ", ") + "; ";
  setAccessibleName(Text(data_.caption));
  setAccessibleDescription(Text(heard));
  update();
}

void ChartWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Draw(painter, rect(), {colour::kCard, colour::kLine, 1, 6});
  WindowGround ground(painter);
  DrawChart(ground, data_,
            {kChartMargin, kChartMargin - 3, width() - 2.0 * kChartMargin, height() - 2.0 * kChartMargin + 3});
}

std::unique_ptr<ControlView> MakeChartView(ui::Chart& chart, Surroundings around) {
  return std::make_unique<ChartView>(chart, around);
}

}  // namespace tpv::qt
