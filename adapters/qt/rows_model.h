// The rows of a grid or a list as Qt's views ask for them, read from the model
// only where they are painted.
#pragma once

#include <QAbstractTableModel>
#include <string>
#include <vector>

#include "platform/ui/controls.h"

namespace tpv::qt {

// What a grid and a list view have in common for the eye.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual int Count() const = 0;
  virtual int CurrentRow() const = 0;
  virtual const std::vector<ui::GridColumn>& Columns() const = 0;
  virtual std::string Cell(int row, int column) const = 0;
  virtual bool HasChecks() const { return false; }
  virtual bool Checked(int /*row*/) const { return false; }
  virtual bool ReadOnly() const { return false; }
};

class RowsModel : public QAbstractTableModel {
 public:
  RowsModel(const RowSource& source, QObject* parent);

  // Takes over how many rows there are now; true when columns changed as well.
  bool Update();
  bool HasButton(int column) const;

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
