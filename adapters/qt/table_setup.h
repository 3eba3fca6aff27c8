// What the tables of lists and of the search dialog look and behave like, and whom
// they tell which cell is current.
#pragma once

#include <QTableView>

namespace tpv::qt {

class TillTable : public QTableView {
 public:
  explicit TillTable(QWidget* parent);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& before) override;
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;
};

}  // namespace tpv::qt
