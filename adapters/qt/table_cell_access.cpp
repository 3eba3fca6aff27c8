#include "adapters/qt/table_cell_access.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <algorithm>

#include "adapters/qt/cell_delegate.h"

namespace tpv::qt {

std::vector<int> ShownColumns(const QTableView& table) {
  std::vector<int> shown;
  const int count = table.model() != nullptr ? table.model()->columnCount() : 0;
  for (int column = 0; column < count; ++column) {
    if (!table.isColumnHidden(column)) shown.push_back(column);
  }
  return shown;
}

bool PaintedAccess::isValid() const {
  return table_ && table_->model() != nullptr && row_ < table_->model()->rowCount() &&
         column_ < table_->model()->columnCount() && !table_->isColumnHidden(column_);
}

QAccessibleInterface* PaintedAccess::parent() const {
  return table_ ? QAccessible::queryAccessibleInterface(table_) : nullptr;
}

QRect PaintedAccess::Place() const { return table_->visualRect(Index()); }

QRect PaintedAccess::rect() const {
  if (!isValid()) return {};
  const QHeaderView& header = *table_->horizontalHeader();
  const QWidget& ground = row_ < 0 ? *header.viewport() : *table_->viewport();
  const QRect place = row_ < 0 ? QRect(header.sectionViewportPosition(column_), 0,
                                       header.sectionSize(column_), header.height())
                               : Place();
  return {ground.mapToGlobal(place.topLeft()), place.size()};
}

void* PaintedAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  return nullptr;
}

QString PaintedAccess::Heading() const {
  return table_->model()->headerData(column_, Qt::Horizontal, Qt::DisplayRole).toString();
}

void PaintedAccess::Press(const QPoint& at) const {
  QWidget& ground = *table_->viewport();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, at, ground.mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&ground, &event);
  }
}

QString HeadingAccess::text(QAccessible::Text kind) const {
  return kind == QAccessible::Name && isValid() ? Heading() : QString();
}

QString CellButtonAccess::text(QAccessible::Text kind) const {
  if (kind != QAccessible::Name || !isValid()) return {};
  return Heading() + " " + Index().data(Qt::DisplayRole).toString() + ": abrir";
}

QAccessible::State CellButtonAccess::state() const {
  QAccessible::State state;
  state.disabled = !isValid() || !table_->isEnabled();
  return state;
}

QRect CellButtonAccess::Place() const { return ButtonRect(PaintedAccess::Place()); }

QAccessibleInterface* CellButtonAccess::parent() const {
  QAccessibleInterface* table = PaintedAccess::parent();
  if (table == nullptr) return nullptr;
  const std::vector<int> shown = ShownColumns(*table_);
  const auto at = std::find(shown.begin(), shown.end(), column_);
  return table->tableInterface()->cellAt(row_, static_cast<int>(at - shown.begin()));
}

void CellButtonAccess::doAction(const QString& action) {
  if (action != pressAction() || !isValid()) return;
  table_->scrollTo(Index());
  Press(Place().center());
}

CellAccess::~CellAccess() {
  if (button_ != 0) QAccessible::deleteAccessibleInterface(button_);
}

QString CellAccess::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  if (kind == QAccessible::Description) return Heading();
  return kind == QAccessible::Name ? Index().data(Qt::DisplayRole).toString() : QString();
}

QAccessible::State CellAccess::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  const bool current = isSelected();
  const QVariant check = Index().data(Qt::CheckStateRole);
  state.selectable = state.focusable = true;
  state.readOnly = true;
  state.selected = current;
  state.focused = current && table_->hasFocus();
  state.disabled = !table_->isEnabled();
  state.checkable = check.isValid();
  state.checked = check.toInt() == Qt::Checked;
  state.offscreen = !table_->viewport()->rect().intersects(Place());
  return state;
}

int CellAccess::childCount() const { return isValid() && Index().data(kButtonRole).toBool() ? 1 : 0; }

QAccessibleInterface* CellAccess::child(int index) const {
  if (index != 0 || childCount() == 0) return nullptr;
  if (button_ == 0) {
    button_ = QAccessible::registerAccessibleInterface(new CellButtonAccess(*table_, row_, column_));
  }
  return QAccessible::accessibleInterface(button_);
}

int CellAccess::indexOfChild(const QAccessibleInterface* child) const {
  return button_ != 0 && QAccessible::accessibleInterface(button_) == child ? 0 : -1;
}

void* CellAccess::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
  return PaintedAccess::interface_cast(type);
}

QStringList CellAccess::actionNames() const {
  if (!isValid()) return {};
  QStringList names = {pressAction()};
  if (Index().data(Qt::CheckStateRole).isValid()) names.append(toggleAction());
  return names;
}

void CellAccess::doAction(const QString& action) {
  if (!actionNames().contains(action)) return;
  table_->scrollTo(Index());
  const QRect cell = Place();
  const QPoint beside_marks(cell.left() + std::min(cell.width() / 3, kCheckWidth + 12), cell.center().y());
  Press(action == toggleAction() ? CheckRect(cell).center() : beside_marks);
}

bool CellAccess::isSelected() const { return isValid() && table_->currentIndex().row() == row_; }

QList<QAccessibleInterface*> CellAccess::columnHeaderCells() const {
  QAccessibleInterface* above = parent();
  return above != nullptr && isValid() ? QList<QAccessibleInterface*>{above->child(columnIndex())}
                                       : QList<QAccessibleInterface*>();
}

int CellAccess::columnIndex() const {
  if (!isValid()) return -1;
  const std::vector<int> shown = ShownColumns(*table_);
  return static_cast<int>(std::find(shown.begin(), shown.end(), column_) - shown.begin());
}

}  // namespace tpv::qt
