// A cell, a heading and a cell's button as a screen reader finds them.
#pragma once

#include <QAccessible>
#include <QModelIndex>
#include <QPointer>
#include <QTableView>

namespace tpv::qt {

// The columns of a table that are shown, by their places from the left.
std::vector<int> ShownColumns(const QTableView& table);

// Something painted in a table: it has no widget of its own.
class PaintedAccess : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  // `row` -1 is the heading of the column.
  PaintedAccess(QTableView& table, int row, int column) : table_(&table), row_(row), column_(column) {}

  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return table_ ? table_->window()->windowHandle() : nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 protected:
  QModelIndex Index() const { return table_->model()->index(row_, column_); }
  QString Heading() const;
  virtual QRect Place() const;  // in the viewport, or the header
  void Press(const QPoint& at) const;  // as a mouse does

  QPointer<QTableView> table_;
  const int row_;
  const int column_;
};

class HeadingAccess : public PaintedAccess {
 public:
  HeadingAccess(QTableView& table, int column) : PaintedAccess(table, -1, column) {}
  QString text(QAccessible::Text kind) const override;
  QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
  QAccessible::State state() const override { return {}; }
  QStringList actionNames() const override { return {}; }
  void doAction(const QString&) override {}
};

class CellButtonAccess : public PaintedAccess {
 public:
  using PaintedAccess::PaintedAccess;
  QString text(QAccessible::Text kind) const override;
  QAccessible::Role role() const override { return QAccessible::Button; }
  QAccessible::State state() const override;
  QAccessibleInterface* parent() const override;
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override;

 protected:
  QRect Place() const override;
};

class CellAccess : public PaintedAccess, public QAccessibleTableCellInterface {
 public:
  CellAccess(QTableView& table, int row, int column) : PaintedAccess(table, row, column) {}
  ~CellAccess() override;
  CellAccess(const CellAccess&) = delete;
  CellAccess& operator=(const CellAccess&) = delete;

  QString text(QAccessible::Text kind) const override;
  QAccessible::Role role() const override { return QAccessible::Cell; }
  QAccessible::State state() const override;
  QAccessibleInterface* child(int index) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  void* interface_cast(QAccessible::InterfaceType type) override;
  QStringList actionNames() const override;
  void doAction(const QString& action) override;

  bool isSelected() const override;
  QList<QAccessibleInterface*> columnHeaderCells() const override;
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  int columnIndex() const override;
  int rowIndex() const override { return row_; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return PaintedAccess::parent(); }

 private:
  mutable QAccessible::Id button_ = 0;
};

}  // namespace tpv::qt
