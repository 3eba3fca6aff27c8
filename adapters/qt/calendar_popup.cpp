#include "adapters/qt/calendar_popup.h"

#include <QCalendarWidget>
#include <QLocale>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

CalendarPopup::CalendarPopup(QWidget* parent, const QDate& shown,
                             std::function<void(const QDate&)> chosen, std::function<void()> closed)
    : QFrame(parent, Qt::Popup), closed_(std::move(closed)) {
  setFrameShape(QFrame::StyledPanel);
  auto* calendar = new QCalendarWidget(this);
  calendar->setLocale(QLocale(QLocale::Spanish, QLocale::Spain));
  calendar->setFirstDayOfWeek(Qt::Monday);
  calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  calendar->setSelectedDate(shown);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(1, 1, 1, 1);
  layout->addWidget(calendar);
  const auto choose = [this, chosen = std::move(chosen)](const QDate& day) {
    if (!isVisible()) return;  // the second click of two
    hide();
    chosen(day);
  };
  connect(calendar, &QCalendarWidget::clicked, this, choose);
  connect(calendar, &QCalendarWidget::activated, this, choose);
  setFocusProxy(calendar);
}

void CalendarPopup::OpenUnder(const QWidget& field) {
  adjustSize();
  const QRect room = field.screen()->availableGeometry();
  QRect place({}, size());
  place.moveTopLeft(field.mapToGlobal(QPoint(0, field.height())));
  if (place.bottom() > room.bottom()) place.moveBottom(field.mapToGlobal(QPoint()).y());
  place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() - place.width())));
  move(place.topLeft());
  show();
  setFocus();
}

void CalendarPopup::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  closed_();
}

QIcon CalendarIcon() {
  constexpr int kSide = 32;
  QPixmap picture(kSide, kSide);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setPen(QPen(colour::kLabel, 2));
  painter.drawRect(4, 6, 24, 22);
  painter.fillRect(4, 6, 24, 7, colour::kLabel);
  for (int day = 0; day < 6; ++day) {
    painter.fillRect(9 + day % 3 * 6, 17 + day / 3 * 5, 3, 3, colour::kLabel);
  }
  return QIcon(picture);
}

}  // namespace tpv::qt
