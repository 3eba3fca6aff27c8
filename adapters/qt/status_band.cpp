#include "adapters/qt/status_band.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kHeight = 56;
constexpr int kBandMargin = 20;
constexpr int kItemGap = 28;
constexpr int kNarrowestItem = 60;
constexpr int kStep = 8;

QColor ColourOf(ui::StatusItem::Tone tone) {
  if (tone == ui::StatusItem::Tone::Good) return colour::kGood;
  return tone == ui::StatusItem::Tone::Missing ? colour::kMissing : QColor(Qt::white);
}

bool Same(const ui::StatusItem& left, const ui::StatusItem& right) {
  return left.label == right.label && left.text == right.text && left.tone == right.tone &&
         left.large == right.large && left.opens == right.opens;
}

QFont FontOf(const ui::StatusItem& item) { return Type(item.large ? kLargeSize : kTextSize); }

int WidthOf(const ui::StatusItem& item) {
  return 2 + std::max(QFontMetrics(Type(kLabelSize)).horizontalAdvance(Text(item.label)),
                      QFontMetrics(FontOf(item)).horizontalAdvance(Text(item.text)));
}

}  // namespace

StatusBand::StatusBand(QWidget* parent, std::function<void(ui::Key)> press)
    : QWidget(parent), press_(std::move(press)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  hide();
}

QSize StatusBand::sizeHint() const {
  int width = 2 * kBandMargin - kItemGap;
  for (const ui::StatusItem& item : items_) width += WidthOf(item) + kItemGap;
  return {std::max(width, kNarrowestItem), kHeight};
}

void StatusBand::Show(std::vector<ui::StatusItem> items, bool warning) {
  const bool same = std::equal(items.begin(), items.end(), items_.begin(), items_.end(), Same);
  if (same && warning == warning_) return;
  warning_ = warning;
  items_ = std::move(items);
  QStringList told;
  for (const ui::StatusItem& item : items_) told += Text(item.label + ": " + item.text);
  setAccessibleName(told.join(". "));
  setVisible(!items_.empty());
  update();
}

void StatusBand::Flash() {
  constexpr int kFlash = 600;  // milliseconds
  flashing_ = true;
  update();
  QTimer::singleShot(kFlash, this, [this] {
    flashing_ = false;
    update();
  });
}

// What each item needs; where there is not enough room the widest give way.
std::vector<int> StatusBand::Widths() const {
  std::vector<int> widths;
  int spare = width() - 2 * kBandMargin + kItemGap;
  for (const ui::StatusItem& item : items_) {
    widths.push_back(WidthOf(item));
    spare -= widths.back() + kItemGap;
  }
  while (spare < 0 && !widths.empty()) {
    int& widest = *std::max_element(widths.begin(), widths.end());
    if (widest <= kNarrowestItem) break;
    const int given = std::min(-spare, widest - kNarrowestItem);
    widest -= std::min(given, kStep);
    spare += std::min(given, kStep);
  }
  return widths;
}

bool StatusBand::Fits() const {
  const std::vector<int> widths = Widths();
  return std::equal(items_.begin(), items_.end(), widths.begin(), widths.end(),
                    [](const ui::StatusItem& item, int width) { return WidthOf(item) <= width; });
}

void StatusBand::mousePressEvent(QMouseEvent* event) {
  const std::vector<int> widths = Widths();
  int right = kBandMargin - kItemGap / 2;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const int left = right;
    right += widths[i] + kItemGap;
    const int x = event->pos().x();
    if (x < left || x >= right || items_[i].opens == ui::Key::Other) continue;
    return press_(items_[i].opens);
  }
}

void StatusBand::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), warning_ != flashing_ ? colour::kWarning : colour::kBand);
  const QFont small = Type(kLabelSize);
  const std::vector<int> widths = Widths();
  int x = kBandMargin;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const QFont type = FontOf(items_[i]);
    painter.setFont(small);
    painter.setPen(warning_ ? QColor(Qt::white) : colour::kBandLabel);
    painter.drawText(QRect(x, 4, widths[i], 18), Qt::AlignLeft | Qt::AlignVCenter,
                     Text(items_[i].label));
    painter.setFont(type);
    painter.setPen(ColourOf(items_[i].tone));
    painter.drawText(QRect(x, 20, widths[i], height() - 22), Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(type).elidedText(Text(items_[i].text), Qt::ElideRight, widths[i]));
    x += widths[i] + kItemGap;
  }
}

}  // namespace tpv::qt
