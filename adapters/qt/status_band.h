// The band on top of a window: the facts of the till, seen at a glance.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "platform/ui/form.h"

namespace tpv::qt {

class StatusBand : public QWidget {
 public:
  // `press`: for a click on a fact that a key opens.
  StatusBand(QWidget* parent, std::function<void(ui::Key)> press);
  // Hides itself while there is nothing to say.
  // A band of warning is red from end to end.
  void Show(std::vector<ui::StatusItem> items, bool warning);
  // Turns to the other colour for a moment.
  void Flash();
  QSize sizeHint() const override;
  // Whether nothing of it has to be shortened.
  bool Fits() const;

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  std::vector<int> Widths() const;

  const std::function<void(ui::Key)> press_;
  std::vector<ui::StatusItem> items_;
  bool flashing_ = false;
  bool warning_ = false;
};

}  // namespace tpv::qt
