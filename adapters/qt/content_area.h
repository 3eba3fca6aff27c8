// What a window's rows stand in: it scrolls only where they cannot bend any more.
#pragma once

#include <QEvent>
#include <QScrollArea>

namespace tpv::qt {

class ContentArea : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    Decide();
    QScrollArea::resizeEvent(event);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) Decide();
    return QScrollArea::eventFilter(watched, event);
  }

 private:
  // Qt asks whether the rows fit beside the bar that is to be decided on; where
  // they need a second line only for the bar's sake it would never go.
  void Decide() {
    const QSize room = maximumViewportSize();
    const bool fits = widget()->heightForWidth(room.width()) <= room.height();
    const auto wanted = fits ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded;
    if (verticalScrollBarPolicy() != wanted) setVerticalScrollBarPolicy(wanted);
  }
};

}  // namespace tpv::qt
