// The band on top of a window: the facts of the till, seen at a glance.
#pragma once

#include <QWidget>
#include <vector>

#include "platform/ui/form.h"

namespace tpv::qt {

class StatusBand : public QWidget {
 public:
  explicit StatusBand(QWidget* parent);
  // Hides itself while there is nothing to say.
  void Show(std::vector<ui::StatusItem> items);
  // Turns to the warning colour for a moment.
  void Flash();
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  std::vector<ui::StatusItem> items_;
  bool flashing_ = false;
};

}  // namespace tpv::qt
