// The rows of a grid or a list as Qt's views ask for them, read from the model
// only where they are painted.
#pragma once

#include <QAbstractTableModel>
#include <string>
#include <vector>

#include "platform/ui/controls.h"

namespace tpv::qt {

// A list as the eye sees it: rows by their places.
class RowSource {
 public:
  explicit RowSource(const ui::List& list)
      : list_(list),
        grid_(dynamic_cast<const ui::Grid*>(&list)),
        items_(dynamic_cast<const ui::ListView*>(&list)) {}

  int Count() const { return list_.ShownCount(); }
  int CurrentRow() const { return list_.PlaceOf(list_.current_row); }
  const std::vector<ui::GridColumn>& Columns() const { return list_.layout; }
  std::pair<std::uint64_t, std::uint64_t> Stamp() const { return list_.Stamp(); }
  std::string Cell(int row, int column) const { return list_.Cell(list_.RowAt(row), column); }
  bool HasChecks() const { return items_ != nullptr && items_->check_boxes; }
  bool Checked(int row) const {
    const int at = list_.RowAt(row);
    return items_ != nullptr && at >= 0 && items_->items[static_cast<std::size_t>(at)].checked;
  }
  bool IsDetail(int row) const {
    const int at = list_.RowAt(row);
    return at >= 0 && list_.IsDetail(at);
  }
  bool ReadOnly() const { return grid_ != nullptr && grid_->read_only; }

 private:
  const ui::List& list_;
  const ui::Grid* grid_;
  const ui::ListView* items_;
};

class RowsModel : public QAbstractTableModel {
 public:
  RowsModel(const RowSource& source, QObject* parent);

  // Takes over how many rows there are now; true when columns changed as well. Rows come
  // and go at the end, as all are read where they stand; see Tell.
  bool Update();
  // A row shows something else.
  void Tell(int row);
  // A detail has none: it is a part of the row above it.
  bool HasButton(int row, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const RowSource& source_;
  int rows_ = 0;
  std::vector<ui::GridColumn> columns_;
};

}  // namespace tpv::qt
