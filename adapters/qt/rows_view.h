// Grids and list views: a table that paints the model's rows and turns clicks on
// rows, check marks and cell buttons into calls of the engine.
#pragma once

#include <QTableView>
#include <optional>
#include <utility>

class QMouseEvent;

#include "adapters/qt/column_widths.h"
#include "adapters/qt/control_view.h"
#include "adapters/qt/filter_box.h"
#include "adapters/qt/rows_model.h"

namespace tpv::qt {

// What the eye saw: rows of a stamp, from `first` on.
struct RowsInSight {
  std::pair<std::uint64_t, std::uint64_t> stamp;
  bool read_only = false;
  int first = 0;
  std::vector<std::string> texts = {};
};

class RowsView : public ControlView {
 public:
  RowsView(ui::List& shown, Surroundings around);
  ~RowsView() override;

  QWidget* Outer() override { return &box_; }
  QWidget* Target() override { return table_; }
  QWidget* Surface() override;  // the header
  QWidget* Rows() const { return table_->viewport(); }
  void Sync() override;
  bool Filter(QObject* watched, QEvent& event) override;
  bool TakesKey(const QKeyEvent& event) override;
  std::string Shown() const override;
  std::string Expected() const override;
  bool Tall() const override { return true; }
  QPoint MenuPoint() override;

  // Where to click, in Rows(), for a row, its check mark or cell button;
  // scrolls there first. A null point when there is none.
  QPoint RowPoint(int row);
  QPoint CheckPoint(int row);
  QPoint ButtonPoint(int row, int column);
  // In Surface(): where to click to sort by a column.
  QPoint HeadingPoint(int column) const;

 private:
  void PressHeading(const QMouseEvent& event);
  void ReleaseHeading(const QMouseEvent& event);
  bool Press(const QMouseEvent& event);
  bool Page(int key);
  void SyncOrder();
  void SyncCurrentRow();
  void SetWidths();
  std::string Key() const;  // in the memory of widths
  void KeepWidths();
  void SetType(int smaller);
  ColumnNeed NeedOf(int column) const;
  std::vector<ColumnNeed> NeedsOf(const std::vector<int>& columns);
  int Widest(const std::vector<int>& columns, const std::vector<int>& widths) const;
  void PreferOwnWidths(const std::vector<int>& columns, std::vector<ColumnNeed>& needs) const;
  std::vector<int> AllWidths() const;
  QModelIndex Visible(int row) const;
  void TellWhatChanged();
  std::string TextOf(int row) const;

  ui::List& list_;
  const RowSource source_;
  Actions& actions_;
  QTableView* table_;
  FilterBox& box_;
  RowsModel* model_;
  int pressed_at_ = 0;             // in the headings
  std::vector<int> pressed_widths_;
  int room_ = -1;                  // that the widths were last set for
  std::vector<int> own_widths_;    // the operator's, of all columns; empty for none
  std::vector<int> shown_widths_;  // as they were last set
  std::optional<RowsInSight> seen_;  // as last told to be painted; null: all is painted anew
};

}  // namespace tpv::qt
