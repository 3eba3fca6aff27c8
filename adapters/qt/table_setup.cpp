#include "adapters/qt/table_setup.h"

#include <QAccessible>
#include <QHeaderView>

#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/table_access.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

TillTable::TillTable(QWidget* parent) : QTableView(parent) {
  setFocusPolicy(Qt::NoFocus);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setShowGrid(false);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setMinimumHeight(kRowHeight * 3 + 2);
  QHeaderView& rows = *verticalHeader();
  rows.hide();
  rows.setMinimumSectionSize(kRowHeight);
  rows.setSectionResizeMode(QHeaderView::Fixed);
  rows.setDefaultSectionSize(kRowHeight);
  QHeaderView& columns = *horizontalHeader();
  columns.setFont(Type(kLabelSize));
  columns.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  columns.setHighlightSections(false);
  columns.setSectionsClickable(false);
  columns.setMinimumSectionSize(20);
}

// Qt's own counts columns that nobody sees.
void TillTable::currentChanged(const QModelIndex& current, const QModelIndex& before) {
  QAbstractItemView::currentChanged(current, before);  // NOLINT(bugprone-parent-virtual-call)
  const int child = TableAccess::ChildOf(*this, current);
  if (child < 0 || !QAccessible::isActive()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(child);
  QAccessible::updateAccessibility(&event);
}

void TillTable::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
  QAbstractItemView::selectionChanged(now, before);  // NOLINT(bugprone-parent-virtual-call)
}

}  // namespace tpv::qt
