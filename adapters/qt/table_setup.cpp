#include "adapters/qt/table_setup.h"

#include <QHeaderView>
#include <QTableView>

#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

void PrepareTable(QTableView& table) {
  table.setFocusPolicy(Qt::NoFocus);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setShowGrid(false);
  table.setTabKeyNavigation(false);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setMinimumHeight(kRowHeight * 3 + 2);
  QHeaderView& rows = *table.verticalHeader();
  rows.hide();
  rows.setMinimumSectionSize(kRowHeight);
  rows.setSectionResizeMode(QHeaderView::Fixed);
  rows.setDefaultSectionSize(kRowHeight);
  QHeaderView& columns = *table.horizontalHeader();
  columns.setFont(Type(kLabelSize));
  columns.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  columns.setHighlightSections(false);
  columns.setSectionsClickable(false);
  columns.setMinimumSectionSize(20);
}

}  // namespace tpv::qt
