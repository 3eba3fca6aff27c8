#include "adapters/qt/captioned.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kCaptionGap = 2;  // between caption and field

}  // namespace

Captioned::Captioned(QWidget* parent, Qt::Alignment alignment)
    : QWidget(parent),
      alignment_(alignment),
      caption_height_(QFontMetrics(Type(kLabelSize)).lineSpacing()) {}

void Captioned::Hold(QWidget& field) {
  field_ = &field;
  setSizePolicy(field.sizePolicy());
}

void Captioned::SetCaption(const QString& caption, const QString& marked) {
  if (marked_ == marked) return;
  caption_ = caption;
  marked_ = marked;
  caption_width_ = QFontMetrics(Type(kLabelSize)).horizontalAdvance(QString(marked).remove(u'&'));
  field_->setAccessibleName(caption);
  updateGeometry();
  update();
}

QSize Captioned::UnderCaption(const QSize& field) const {
  return {std::max(field.width(), caption_width_), field.height() + kCaptionGap + caption_height_};
}

// The field stands at the bottom, so that those of a row stand in line.
void Captioned::PlaceField() {
  const int height = FieldSize().height();
  field_->setGeometry(0, this->height() - height, width(), height);
}

void Captioned::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(Type(kLabelSize));
  painter.setPen(isEnabled() ? colour::kLabel : colour::kFaded);
  const int top = field_->y() - kCaptionGap - caption_height_;
  painter.drawText(QRect(0, top, width(), caption_height_), static_cast<int>(alignment_) | Qt::TextShowMnemonic, marked_);
}

bool Captioned::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {  // the field asks for another size
    updateGeometry();
    PlaceField();
  }
  return QWidget::event(event);
}

}  // namespace tpv::qt
