#include "adapters/qt/table_access.h"

#include <QTableView>
#include <algorithm>

#include "adapters/qt/table_cell_access.h"

namespace tpv::qt {

TableAccess::TableAccess(QTableView& table) : QAccessibleWidget(&table, QAccessible::Table), table_(table) {}

TableAccess::~TableAccess() {
  for (const auto& [place, id] : known_) QAccessible::deleteAccessibleInterface(id);
}

int TableAccess::ChildOf(const QTableView& table, const QModelIndex& cell) {
  const std::vector<int> shown = ShownColumns(table);
  const auto at = std::find(shown.begin(), shown.end(), cell.column());
  if (!cell.isValid() || at == shown.end()) return -1;
  return (cell.row() + 1) * static_cast<int>(shown.size()) + static_cast<int>(at - shown.begin());
}

int TableAccess::rowCount() const {
  return table_.model() != nullptr ? table_.model()->rowCount() : 0;
}

int TableAccess::columnCount() const { return static_cast<int>(ShownColumns(table_).size()); }

int TableAccess::childCount() const { return (rowCount() + 1) * columnCount(); }

QAccessibleInterface* TableAccess::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  return Known(index / columnCount() - 1, index % columnCount());
}

QAccessibleInterface* TableAccess::cellAt(int row, int column) const {
  return row < 0 ? nullptr : Known(row, column);
}

QAccessibleInterface* TableAccess::Known(int row, int column) const {
  const std::vector<int> shown = ShownColumns(table_);
  if (row >= rowCount() || column < 0 || column >= static_cast<int>(shown.size())) return nullptr;
  const int at = shown[static_cast<std::size_t>(column)];
  QAccessible::Id& id = known_[{row, at}];
  if (id == 0) {
    QAccessibleInterface* made = row < 0 ? static_cast<QAccessibleInterface*>(new HeadingAccess(table_, at))
                                         : new CellAccess(table_, row, at);
    id = QAccessible::registerAccessibleInterface(made);
  }
  return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* TableAccess::childAt(int x, int y) const {
  const QModelIndex cell = table_.indexAt(table_.viewport()->mapFromGlobal(QPoint(x, y)));
  return child(ChildOf(table_, cell));
}

int TableAccess::indexOfChild(const QAccessibleInterface* child) const {
  for (const auto& [place, id] : known_) {
    if (QAccessible::accessibleInterface(id) != child) continue;
    const std::vector<int> shown = ShownColumns(table_);
    const auto at = std::find(shown.begin(), shown.end(), place.second);
    if (at == shown.end()) return -1;
    return (place.first + 1) * static_cast<int>(shown.size()) + static_cast<int>(at - shown.begin());
  }
  return -1;
}

void* TableAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QString TableAccess::columnDescription(int column) const {
  const QAccessibleInterface* heading = Known(-1, column);
  return heading != nullptr ? heading->text(QAccessible::Name) : QString();
}

QList<int> TableAccess::selectedRows() const {
  const QModelIndex current = table_.currentIndex();
  return current.isValid() ? QList<int>{current.row()} : QList<int>();
}

QList<QAccessibleInterface*> TableAccess::selectedCells() const {
  QList<QAccessibleInterface*> cells;
  for (const int row : selectedRows()) {
    for (int column = 0; column < columnCount(); ++column) cells.append(cellAt(row, column));
  }
  return cells;
}

bool TableAccess::selectRow(int row) {
  QAccessibleInterface* cell = cellAt(row, 0);
  if (cell == nullptr) return false;
  cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  return table_.currentIndex().row() == row;
}

// Cells are known by their places and say themselves whether these still exist.
void TableAccess::modelChange(QAccessibleTableModelChangeEvent*) {}

}  // namespace tpv::qt
