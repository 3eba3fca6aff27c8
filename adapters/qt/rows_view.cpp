#include "adapters/qt/rows_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kRowHeight = 32;
constexpr int kTwipsInPixel = 15;
constexpr double kTypeScale = 1.4;  // the till's type against the one widths were made for
constexpr int kCellPadding = 20;
constexpr int kButtonWidth = 34;
constexpr int kCheckWidth = 30;
constexpr int kSampleRows = 40;

QRect ButtonRect(const QRect& cell) {
  return {cell.right() - kButtonWidth, cell.top() + 3, kButtonWidth - 2, cell.height() - 6};
}

QRect CheckRect(const QRect& cell) { return {cell.left() + 6, cell.center().y() - 10, 20, 20}; }

// Getting the focus selects no row: the model says which one is current.
class Table : public QTableView {
 public:
  using QTableView::QTableView;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
  }
};

// Paints cells with room around the text, and the button of those that have one.
class CellDelegate : public QStyledItemDelegate {
 public:
  CellDelegate(QTableView& table, const RowsModel& model)
      : QStyledItemDelegate(&table), table_(table), model_(model) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool selected = option.state & QStyle::State_Selected && enabled;
    const bool focused = selected && table_.hasFocus();
    painter->fillRect(option.rect, focused ? colour::kAccent
                                   : selected ? colour::kSelected
                                              : option.palette.color(QPalette::Base));
    painter->setPen(colour::kLine);
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    QRect text = option.rect.adjusted(kCellPadding / 2, 0, -kCellPadding / 2, 0);
    if (const QVariant check = index.data(Qt::CheckStateRole); check.isValid()) {
      DrawCheck(*painter, option, check.toInt() == Qt::Checked);
      text.setLeft(option.rect.left() + kCheckWidth + 4);
    }
    if (model_.HasButton(index.column())) {
      DrawButton(*painter, option.rect, enabled);
      text.setRight(option.rect.right() - kButtonWidth - 4);
    }
    painter->setPen(focused ? Qt::white : enabled ? colour::kText : colour::kFaded);
    painter->setFont(option.font);
    const QString shown = index.data(Qt::DisplayRole).toString();
    painter->drawText(text, index.data(Qt::TextAlignmentRole).toInt() | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(shown, Qt::ElideRight, text.width()));
  }

 private:
  void DrawCheck(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const {
    QStyleOptionViewItem mark(option);
    mark.rect = CheckRect(option.rect);
    mark.state &= ~QStyle::State_HasFocus;
    mark.state |= checked ? QStyle::State_On : QStyle::State_Off;
    table_.style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &mark, &painter, &table_);
  }

  void DrawButton(QPainter& painter, const QRect& cell, bool enabled) const {
    QStyleOptionButton button;
    button.rect = ButtonRect(cell);
    button.state = enabled ? QStyle::State_Enabled : QStyle::State_None;
    table_.style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &button, &painter, nullptr);
    painter.setPen(enabled ? colour::kText : colour::kFaded);
    painter.drawText(button.rect, Qt::AlignCenter, "…");
  }

  QTableView& table_;
  const RowsModel& model_;
};

class GridRows : public RowSource {
 public:
  explicit GridRows(const ui::Grid& grid) : grid_(grid) {}
  int Count() const override { return static_cast<int>(grid_.rows.size()); }
  int CurrentRow() const override { return grid_.current_row; }
  const std::vector<ui::GridColumn>& Columns() const override { return grid_.layout; }
  std::string Cell(int row, int column) const override {
    const bool known = column < static_cast<int>(grid_.rows[row].size());
    return known ? grid_.Cell(row, column) : std::string();
  }
  bool ReadOnly() const override { return grid_.read_only; }

 private:
  const ui::Grid& grid_;
};

class ListRows : public RowSource {
 public:
  explicit ListRows(const ui::ListView& list) : list_(list) {}
  int Count() const override { return static_cast<int>(list_.items.size()); }
  int CurrentRow() const override { return list_.current_row; }
  const std::vector<ui::GridColumn>& Columns() const override { return list_.layout; }
  std::string Cell(int row, int column) const override {
    const auto& cells = list_.items[row].cells;
    return column < static_cast<int>(cells.size()) ? cells[column] : std::string();
  }
  bool HasChecks() const override { return list_.check_boxes; }
  bool Checked(int row) const override { return list_.items[row].checked; }

 private:
  const ui::ListView& list_;
};

void Prepare(QTableView& table) {
  table.setFocusPolicy(Qt::NoFocus);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setShowGrid(false);
  table.setTabKeyNavigation(false);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.setMinimumHeight(kRowHeight * 4);
  table.verticalHeader()->hide();
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.verticalHeader()->setDefaultSectionSize(kRowHeight);
  QHeaderView& header = *table.horizontalHeader();
  header.setFont(Type(kLabelSize + 1, true));
  header.setHighlightSections(false);
  header.setSectionsClickable(false);
  header.setMinimumSectionSize(20);
}

}  // namespace

RowsView::RowsView(ui::Control& shown, std::unique_ptr<RowSource> source, Surroundings around)
    : ControlView(shown),
      source_(std::move(source)),
      actions_(around.actions),
      table_(new Table(&around.parent)),
      model_(new RowsModel(*source_, table_)) {
  Prepare(*table_);
  table_->setModel(model_);
  table_->setItemDelegate(new CellDelegate(*table_, *model_));
}

// The table goes with its window, after this; it must not ask for rows any more.
RowsView::~RowsView() { table_->setModel(nullptr); }

void RowsView::Sync() {
  ControlView::Sync();
  const int before = model_->rowCount();
  if (model_->Update()) SetWidths();
  SyncCurrentRow();
  if (before > 0 && model_->rowCount() == before + 1) table_->scrollToBottom();
  std::string now = PaintedText();
  if (now == painted_) return;
  painted_ = std::move(now);
  table_->viewport()->update();
}

void RowsView::SyncCurrentRow() {
  const int row = source_->CurrentRow();
  if (table_->currentIndex().row() == row) return;
  if (row < 0 || row >= model_->rowCount()) {
    table_->setCurrentIndex({});
    table_->clearSelection();
  } else {
    table_->setCurrentIndex(Visible(row));
  }
}

// Everything that the visible rows show, marks included.
std::string RowsView::PaintedText() const {
  const int first = std::max(table_->rowAt(0), 0);
  const int last = table_->rowAt(table_->viewport()->height() - 1);
  const int end = last < 0 ? source_->Count() : last + 1;
  std::string text;
  for (int row = first; row < std::min(end, source_->Count()); ++row) {
    text += source_->Checked(row) ? '\2' : '\1';
    for (int column = 0; column < model_->columnCount(); ++column) {
      if (!source_->Columns()[column].hidden) text += source_->Cell(row, column) + '\1';
    }
  }
  return text + (source_->ReadOnly() ? 'r' : 'w');
}

QModelIndex RowsView::Visible(int row) const {
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (!source_->Columns()[column].hidden) return model_->index(row, column);
  }
  return {};
}

int RowsView::WidthOf(int column) const {
  const ui::GridColumn& layout = source_->Columns()[column];
  const QFontMetrics header(table_->horizontalHeader()->font());
  int width = header.horizontalAdvance(Text(layout.caption)) + kCellPadding;
  if (layout.width > 0) return std::max(width, qRound(layout.width * kTypeScale / kTwipsInPixel));
  const QFontMetrics cells(table_->font());
  for (int row = 0; row < std::min(source_->Count(), kSampleRows); ++row) {
    width = std::max(width, cells.horizontalAdvance(Text(source_->Cell(row, column))) + kCellPadding);
  }
  return width + (column == 0 && source_->HasChecks() ? kCheckWidth : 0);
}

// The widest column of text takes the room that is left.
void RowsView::SetWidths() {
  QHeaderView& header = *table_->horizontalHeader();
  int widest = -1;
  int most = 0;
  for (int column = 0; column < model_->columnCount(); ++column) {
    const bool hidden = source_->Columns()[column].hidden;
    table_->setColumnHidden(column, hidden);
    header.setSectionResizeMode(column, QHeaderView::Interactive);
    if (hidden) continue;
    const int width = WidthOf(column);
    table_->setColumnWidth(column, width);
    if (width > most && source_->Columns()[column].align == ui::Align::Left) {
      widest = column;
      most = width;
    }
  }
  if (widest >= 0) header.setSectionResizeMode(widest, QHeaderView::Stretch);
}

bool RowsView::Filter(QObject* watched, QEvent& event) {
  if (watched == table_->horizontalHeader()->viewport()) {
    if (event.type() == QEvent::MouseButtonPress) {
      actions_.Act([this](ui::Engine& engine) { engine.FocusOn(control); });
    }
    return false;  // the widths are the operator's
  }
  if (watched != table_->viewport()) return false;
  switch (event.type()) {
    case QEvent::MouseButtonPress:
      return Press(static_cast<QMouseEvent&>(event).position().toPoint());
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return true;  // the engine selects, not the table
    default:
      return false;
  }
}

bool RowsView::Press(const QPoint& at) {
  const QModelIndex index = table_->indexAt(at);
  actions_.Act([&](ui::Engine& engine) {
    if (!index.isValid()) return engine.FocusOn(control);
    const QRect cell = table_->visualRect(index);
    auto* list = dynamic_cast<ui::ListView*>(&control);
    const bool on_check = list != nullptr && list->check_boxes && index.column() == 0 &&
                          at.x() < cell.left() + kCheckWidth;
    if (on_check) {
      engine.SetCheck(*list, index.row(), !list->items.at(index.row()).checked);
    } else if (model_->HasButton(index.column()) && ButtonRect(cell).contains(at)) {
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
  const int count = source_->Count();
  if (count == 0) return false;
  const int page = std::max(1, table_->viewport()->height() / kRowHeight - 1);
  int row = key == Qt::Key_Home ? 0 : count - 1;
  if (key == Qt::Key_PageUp) row = source_->CurrentRow() - page;
  if (key == Qt::Key_PageDown) row = source_->CurrentRow() + page;
  row = std::clamp(row, 0, count - 1);
  if (row != source_->CurrentRow()) {
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
  const int row = source_->CurrentRow();
  return std::to_string(source_->Count()) + "/" +
         std::to_string(row < source_->Count() ? row : -1);
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
  if (point.isNull() || !source_->HasChecks()) return {};
  return CheckRect(table_->visualRect(Visible(row))).center();
}

QPoint RowsView::ButtonPoint(int row, int column) {
  if (row < 0 || row >= model_->rowCount() || !model_->HasButton(column)) return {};
  const QModelIndex index = model_->index(row, column);
  table_->scrollTo(index);
  return ButtonRect(table_->visualRect(index)).center();
}

QWidget* RowsView::Surface() { return table_->horizontalHeader()->viewport(); }

std::unique_ptr<ControlView> MakeGridView(ui::Grid& grid, Surroundings around) {
  return std::make_unique<RowsView>(grid, std::make_unique<GridRows>(grid), around);
}

std::unique_ptr<ControlView> MakeListView(ui::ListView& list, Surroundings around) {
  return std::make_unique<RowsView>(list, std::make_unique<ListRows>(list), around);
}

}  // namespace tpv::qt
