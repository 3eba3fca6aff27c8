#include "adapters/qt/status_band.h"

#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kHeight = 56;
constexpr int kMargin = 20;
constexpr int kGap = 36;

QColor ColourOf(ui::StatusItem::Tone tone) {
  if (tone == ui::StatusItem::Tone::Good) return colour::kGood;
  return tone == ui::StatusItem::Tone::Missing ? colour::kMissing : QColor(Qt::white);
}

bool Same(const ui::StatusItem& left, const ui::StatusItem& right) {
  return left.label == right.label && left.text == right.text && left.tone == right.tone;
}

}  // namespace

StatusBand::StatusBand(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  hide();
}

QSize StatusBand::sizeHint() const { return {400, kHeight}; }

void StatusBand::Show(std::vector<ui::StatusItem> items) {
  if (std::equal(items.begin(), items.end(), items_.begin(), items_.end(), Same)) return;
  items_ = std::move(items);
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

void StatusBand::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), flashing_ ? colour::kWarning : colour::kBand);
  const QFont small = Type(kLabelSize);
  const QFont large = Type(kTextSize);
  int x = kMargin;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const QString label = Text(items_[i].label);
    const int wanted = std::max(QFontMetrics(small).horizontalAdvance(label),
                                QFontMetrics(large).horizontalAdvance(Text(items_[i].text)));
    const int others = static_cast<int>(items_.size() - i - 1);
    const int room = std::max(80, width() - x - kMargin - others * (100 + kGap));
    const int taken = std::min(wanted + 2, room);
    const QString text = QFontMetrics(large).elidedText(Text(items_[i].text), Qt::ElideRight, taken);
    painter.setFont(small);
    painter.setPen(colour::kBandLabel);
    painter.drawText(QRect(x, 6, taken, 18), Qt::AlignLeft | Qt::AlignVCenter, label);
    painter.setFont(large);
    painter.setPen(ColourOf(items_[i].tone));
    painter.drawText(QRect(x, 24, taken, 28), Qt::AlignLeft | Qt::AlignVCenter, text);
    x += taken + kGap;
  }
}

}  // namespace tpv::qt
