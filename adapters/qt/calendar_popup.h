// The month that a date field opens, to pick a day from instead of typing it.
#pragma once

#include <QDate>
#include <QFrame>
#include <QIcon>
#include <functional>

namespace tpv::qt {

class CalendarPopup : public QFrame {
 public:
  // `chosen` runs once at most, `closed` whenever the popup goes.
  CalendarPopup(QWidget* parent, const QDate& shown, std::function<void(const QDate&)> chosen,
                std::function<void()> closed);

  // Under the field, where the screen has room for it.
  void OpenUnder(const QWidget& field);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  std::function<void()> closed_;
};

// A small sheet with its days.
QIcon CalendarIcon();

}  // namespace tpv::qt
