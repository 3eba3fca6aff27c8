// A table and, above one that is long or narrowed, what it is narrowed by.
#pragma once

#include <QWidget>
#include <functional>

#include "platform/ui/lists.h"

class QLabel;
class QTableView;

namespace tpv::qt {

class FilterBox : public QWidget {
 public:
  // Takes the table. `clicked`: the operator wants to type there.
  FilterBox(QTableView& table, QWidget& parent, std::function<void()> clicked);
  void Show(const ui::List& list);
  // The table's: the words are for where there is room.
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent*) override { ShowWords(); }

 private:
  void ShowWords();

  QTableView& table_;
  QLabel* words_;
  std::function<void()> clicked_;
  bool long_ = false;      // the list
  bool narrowed_ = false;
};

}  // namespace tpv::qt
