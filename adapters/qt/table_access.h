// A table as a screen reader walks it: the columns that the eye sees, with their
// headings, and what can be pressed in a cell.
#pragma once

#include <QAccessibleWidget>
#include <map>

class QModelIndex;
class QTableView;

namespace tpv::qt {

// Children are the headings, then the cells row by row, hidden columns left out.
class TableAccess : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit TableAccess(QTableView& table);
  ~TableAccess() override;
  TableAccess(const TableAccess&) = delete;
  TableAccess& operator=(const TableAccess&) = delete;

  // The child that shows it; -1 for none.
  static int ChildOf(const QTableView& table, const QModelIndex& cell);

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int row, int column) const override;
  int columnCount() const override;
  int rowCount() const override;
  QString columnDescription(int column) const override;
  QString rowDescription(int) const override { return {}; }
  int selectedCellCount() const override { return static_cast<int>(selectedCells().size()); }
  int selectedColumnCount() const override { return 0; }
  int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
  QList<QAccessibleInterface*> selectedCells() const override;
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override;
  bool isColumnSelected(int) const override { return false; }
  bool isRowSelected(int row) const override { return selectedRows().contains(row); }
  bool selectRow(int row) override;
  bool selectColumn(int) override { return false; }
  bool unselectRow(int) override { return false; }
  bool unselectColumn(int) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent*) override;

 private:
  QAccessibleInterface* Known(int row, int column) const;  // row -1: the headings

  QTableView& table_;
  mutable std::map<std::pair<int, int>, QAccessible::Id> known_;
};

}  // namespace tpv::qt
