#include "adapters/qt/rows_model.h"

#include "adapters/qt/alignment.h"
#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/text.h"

namespace tpv::qt {

RowsModel::RowsModel(const RowSource& source, QObject* parent)
    : QAbstractTableModel(parent), source_(source) {}

bool RowsModel::Update() {
  const auto& now = source_.Columns();
  if (now != columns_) {
    beginResetModel();
    columns_ = now;
    rows_ = source_.Count();
    endResetModel();
    return true;
  }
  const int count = source_.Count();
  if (count > rows_) {
    beginInsertRows({}, rows_, count - 1);
    rows_ = count;
    endInsertRows();
  } else if (count < rows_) {
    beginRemoveRows({}, count, rows_ - 1);
    rows_ = count;
    endRemoveRows();
  }
  return false;
}

// Cell by cell: a view paints all it shows when it hears of several at once.
void RowsModel::Tell(int row) {
  for (int column = 0; column < columnCount(); ++column) {
    const QModelIndex cell = index(row, column);
    emit dataChanged(cell, cell);
  }
}

bool RowsModel::HasButton(int row, int column) const {
  return column >= 0 && column < columnCount() && columns_[column].cell_button &&
         !source_.ReadOnly() && !source_.IsDetail(row);
}

int RowsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  if (index.row() >= source_.Count()) return {};  // the view has not heard yet
  switch (role) {
    case Qt::DisplayRole:
      return Text(source_.Cell(index.row(), index.column()));
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(AlignmentOf(columns_[index.column()].align) | Qt::AlignVCenter);
    case kButtonRole:
      return HasButton(index.row(), index.column());
    case Qt::CheckStateRole:
      if (!source_.HasChecks() || index.column() != 0) return {};
      return source_.Checked(index.row()) ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return Text(columns_[section].caption);
  if (role == Qt::TextAlignmentRole) return QVariant::fromValue(AlignmentOf(columns_[section].align) | Qt::AlignVCenter);
  return {};
}

}  // namespace tpv::qt
