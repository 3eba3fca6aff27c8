#include "adapters/qt/rows_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/table_setup.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

// Getting the focus selects no row: the model says which one is current.
class Table : public TillTable {
 public:
  using TillTable::TillTable;
  std::function<void()> resized;
  std::function<void()> painted;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QTableView::resizeEvent(event);
    if (resized) resized();
  }
  void paintEvent(QPaintEvent* event) override {
    QTableView::paintEvent(event);
    if (painted) painted();
  }
  void focusInEvent(QFocusEvent* event) override {
    QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
    viewport()->update();
    update();  // the frame shows the focus
  }
  void focusOutEvent(QFocusEvent* event) override {
    QTableView::focusOutEvent(event);
    update();
  }
};

}  // namespace

RowsView::RowsView(ui::List& shown, Surroundings around)
    : ControlView(shown),
      list_(shown),
      source_(shown),
      actions_(around.actions),
      table_(new Table(nullptr)),
      box_(*new FilterBox(*table_, around.parent, [this] {
        actions_.Act([this](ui::Engine& engine) { engine.FocusOn(control); });
      })),
      model_(new RowsModel(source_, table_)) {
  static_cast<Table*>(table_)->resized = [this] {
    if (table_->viewport()->width() != room_) SetWidths();
  };
  // Painted in the middle of an event, while rows are read again: seen half changed.
  static_cast<Table*>(table_)->painted = [this] {
    if (seen_ && (seen_->stamp != source_.Stamp() || seen_->read_only != source_.ReadOnly())) seen_.reset();
  };
  own_widths_ = actions_.Memory().ColumnsOf(Key());
  table_->setModel(model_);
  table_->setItemDelegate(new CellDelegate(*table_, *table_));
}

// The table goes with its window, after this; it must not ask for rows any more.
RowsView::~RowsView() {
  static_cast<Table*>(table_)->resized = nullptr;
  static_cast<Table*>(table_)->painted = nullptr;
  table_->setModel(nullptr);
}

void RowsView::Sync() {
  ControlView::Sync();
  list_.Arrange();  // also between the events, where long work repaints
  box_.Show(list_);
  SyncOrder();
  const int before = model_->rowCount();
  const bool other_columns = model_->Update();
  if (other_columns) seen_.reset();
  if (other_columns || (before == 0 && model_->rowCount() > 0)) SetWidths();
  SyncCurrentRow();
  const bool other_rows = before != model_->rowCount();
  if (other_rows && table_->currentIndex().isValid()) table_->scrollTo(table_->currentIndex());
  TellWhatChanged();
}

void RowsView::SyncOrder() {
  QHeaderView& header = *table_->horizontalHeader();
  const auto order = list_.descending ? Qt::DescendingOrder : Qt::AscendingOrder;
  if (header.isSortIndicatorShown() != (list_.sorted_by >= 0)) header.setSortIndicatorShown(list_.sorted_by >= 0);
  if (list_.sorted_by >= 0) header.setSortIndicator(list_.sorted_by, order);
}

void RowsView::SyncCurrentRow() {
  const int row = source_.CurrentRow();
  if (table_->currentIndex().row() == row) return;
  if (row < 0 || row >= model_->rowCount()) {
    table_->setCurrentIndex({});
    table_->clearSelection();
  } else {
    table_->setCurrentIndex(Visible(row));
  }
}

// Rows that came into sight since are told as changed.
void RowsView::TellWhatChanged() {
  const int last = table_->rowAt(table_->viewport()->height() - 1);
  const int end = last < 0 ? source_.Count() : std::min(last + 1, source_.Count());
  RowsInSight now{source_.Stamp(), source_.ReadOnly(), std::clamp(table_->rowAt(0), 0, end), {}};
  const int count = end - now.first;
  if (seen_ && seen_->stamp == now.stamp && seen_->read_only == now.read_only && seen_->first == now.first &&
      static_cast<int>(seen_->texts.size()) == count) {
    return;
  }
  const bool all = !seen_ || seen_->read_only != now.read_only;
  if (all) table_->viewport()->update();
  for (int row = now.first; row < end; ++row) {
    now.texts.push_back(TextOf(row));
    if (all) continue;
    const auto before = static_cast<std::size_t>(row - seen_->first);  // far beyond the end for one above
    if (before >= seen_->texts.size() || seen_->texts[before] != now.texts.back()) model_->Tell(row);
  }
  seen_ = std::move(now);
}

// All that a row shows, its mark included.
std::string RowsView::TextOf(int row) const {
  std::string text(1, source_.Checked(row) ? '\2' : '\1');
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (!source_.Columns()[column].hidden) text += source_.Cell(row, column) + '\1';
  }
  return text;
}

QModelIndex RowsView::Visible(int row) const {
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (!source_.Columns()[column].hidden) return model_->index(row, column);
  }
  return {};
}

bool RowsView::Filter(QObject* watched, QEvent& event) {
  if (watched == table_->horizontalHeader()->viewport()) {
    if (event.type() == QEvent::MouseButtonPress) PressHeading(static_cast<QMouseEvent&>(event));
    if (event.type() == QEvent::MouseButtonRelease) ReleaseHeading(static_cast<QMouseEvent&>(event));
    return false;  // the widths are the operator's
  }
  if (watched != table_->viewport()) return false;
  switch (event.type()) {
    case QEvent::ContextMenu:
      actions_.Act([this](ui::Engine& engine) { engine.OpenListMenu(list_); });
      return true;
    case QEvent::MouseButtonPress:
      return Press(static_cast<QMouseEvent&>(event));
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return true;  // the engine selects, not the table
    default:
      return false;
  }
}

void RowsView::PressHeading(const QMouseEvent& event) {
  actions_.Act([this](ui::Engine& engine) { engine.FocusOn(control); });
  pressed_at_ = event.position().toPoint().x();
  pressed_widths_ = AllWidths();
}

// A press that neither pulled an edge nor wandered off sorts.
void RowsView::ReleaseHeading(const QMouseEvent& event) {
  constexpr int kStill = 4;  // pixels, and the edges' width
  KeepWidths();
  if (AllWidths() != pressed_widths_ || !list_.arrangeable) return;
  const int x = event.position().toPoint().x();
  const QHeaderView& header = *table_->horizontalHeader();
  const int column = header.logicalIndexAt(x);
  if (column < 0 || std::abs(x - pressed_at_) > kStill) return;
  const int from_edge = x - header.sectionViewportPosition(column);
  if (from_edge < kStill || header.sectionSize(column) - from_edge < kStill) return;
  actions_.Act([&](ui::Engine& engine) { engine.SortBy(list_, column); });
}

bool RowsView::Press(const QMouseEvent& event) {
  const QPoint at = event.position().toPoint();
  const bool chooses = event.button() == Qt::RightButton;  // its menu is on its way
  const QModelIndex index = table_->indexAt(at);
  actions_.Act([&](ui::Engine& engine) {
    if (!index.isValid()) return engine.FocusOn(control);
    const QRect cell = table_->visualRect(index);
    const bool on_check = source_.HasChecks() && index.column() == 0 && at.x() < cell.left() + kCheckWidth;
    if (on_check && !chooses) {
      engine.SetCheck(static_cast<ui::ListView&>(control), index.row(), !source_.Checked(index.row()));
    } else if (!chooses && model_->HasButton(index.row(), index.column()) && ButtonRect(cell).contains(at)) {
      engine.CellButton(static_cast<ui::Grid&>(control), index.row(), index.column());
    } else {
      engine.SelectRow(control, index.row());
    }
  });
  return true;
}

bool RowsView::TakesKey(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
      return Page(event.key());
    default:
      return event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
  }
}

// Moves by a page or to an end; the engine selects.
bool RowsView::Page(int key) {
  const int count = source_.Count();
  if (count == 0) return false;
  const int page = std::max(1, table_->viewport()->height() / kRowHeight - 1);
  int row = key == Qt::Key_Home ? 0 : count - 1;
  if (key == Qt::Key_PageUp) row = source_.CurrentRow() - page;
  if (key == Qt::Key_PageDown) row = source_.CurrentRow() + page;
  row = std::clamp(row, 0, count - 1);
  if (row != source_.CurrentRow()) {
    actions_.Act([&](ui::Engine& engine) { engine.SelectRow(control, row); });
  }
  return false;
}

// The current row and how many there are; the rows themselves are read where
// they are painted.
std::string RowsView::Shown() const {
  return std::to_string(model_->rowCount()) + "/" + std::to_string(table_->currentIndex().row());
}

std::string RowsView::Expected() const {
  const int row = source_.CurrentRow();
  return std::to_string(source_.Count()) + "/" +
         std::to_string(row < source_.Count() ? row : -1);
}

QPoint RowsView::RowPoint(int row) {
  if (row < 0 || row >= model_->rowCount()) return {};
  const QModelIndex index = Visible(row);
  table_->scrollTo(index);
  const QRect cell = table_->visualRect(index);
  return {cell.left() + std::min(cell.width() / 3, kCheckWidth + 12), cell.center().y()};
}

QPoint RowsView::CheckPoint(int row) {
  const QPoint point = RowPoint(row);
  if (point.isNull() || !source_.HasChecks()) return {};
  return CheckRect(table_->visualRect(Visible(row))).center();
}

QPoint RowsView::ButtonPoint(int row, int column) {
  if (row < 0 || row >= model_->rowCount() || !model_->HasButton(row, column)) return {};
  const QModelIndex index = model_->index(row, column);
  table_->scrollTo(index);
  return ButtonRect(table_->visualRect(index)).center();
}

// Below the current row's button, where there is one.
QPoint RowsView::MenuPoint() {
  const int row = source_.CurrentRow();
  QPoint at = RowPoint(row);
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (const QPoint button = ButtonPoint(row, column); !button.isNull()) at = button;
  }
  return at.isNull() ? at : table_->viewport()->mapToGlobal(at + QPoint(0, kRowHeight / 2));
}

QWidget* RowsView::Surface() { return table_->horizontalHeader()->viewport(); }

QPoint RowsView::HeadingPoint(int column) const {
  const QHeaderView& header = *table_->horizontalHeader();
  if (column < 0 || column >= model_->columnCount() || table_->isColumnHidden(column)) return {};
  return {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2};
}

std::unique_ptr<ControlView> MakeGridView(ui::Grid& grid, Surroundings around) {
  return std::make_unique<RowsView>(grid, around);
}

std::unique_ptr<ControlView> MakeListView(ui::ListView& list, Surroundings around) {
  return std::make_unique<RowsView>(list, around);
}

}  // namespace tpv::qt
