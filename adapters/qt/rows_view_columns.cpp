// How wide the columns of a grid or a list stand: what they show, what the operator
// made of them, the room there is.
#include <QHeaderView>
#include <algorithm>

#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/rows_view.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kMeasuredRows = 40;
constexpr int kWidestColumn = 500;
constexpr int kMostSmaller = 5;  // pixels of type
constexpr int kNameDigits = 12;   // digits as wide
constexpr int kAmountDigits = 7;  // 9.999,99

}  // namespace

ColumnNeed RowsView::NeedOf(int column) const {
  const ui::GridColumn& layout = source_.Columns()[column];
  const QFontMetrics header(table_->horizontalHeader()->font());
  const QFontMetrics cells(table_->font());
  const int extra = kCellPadding + (column == 0 && source_.HasChecks() ? kCheckWidth : 0) +
                    (layout.cell_button ? kButtonWidth : 0);
  int shown = header.horizontalAdvance(Text(layout.caption)) + kCellPadding;
  const int declared = std::max(shown, qRound(layout.width * kPixelsInTwip));
  const int most = layout.width > 0 ? declared * 2 : kWidestColumn;
  for (int row = 0; row < std::min(source_.Count(), kMeasuredRows); ++row) {
    shown = std::max(shown, cells.horizontalAdvance(Text(source_.Cell(row, column))) + extra);
  }
  const bool name = layout.align == ui::Align::Left && layout.mask.empty();
  const int usual = cells.horizontalAdvance(u'0') * (name ? kNameDigits : kAmountDigits) + extra;
  return {std::min(std::max(declared, shown), most), name ? std::min(shown, usual) : shown};
}

// Where there is too little room the type gets smaller, down to what can still be read.
std::vector<ColumnNeed> RowsView::NeedsOf(const std::vector<int>& columns) {
  std::vector<ColumnNeed> needs;
  for (int smaller = 0; smaller <= kMostSmaller; ++smaller) {
    SetType(smaller);
    needs.clear();
    for (const int column : columns) needs.push_back(NeedOf(column));
    if (Least(needs) <= room_) break;
  }
  return needs;
}

// The column of text, among these, with the largest of the widths; -1 for none.
int RowsView::Widest(const std::vector<int>& columns, const std::vector<int>& widths) const {
  int widest = -1;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (source_.Columns()[columns[i]].align != ui::Align::Left) continue;
    if (widest < 0 || widths[i] > widths[static_cast<std::size_t>(widest)]) widest = static_cast<int>(i);
  }
  return widest;
}

// The widths that the operator gave, where they fit; the widest gives way.
void RowsView::PreferOwnWidths(const std::vector<int>& columns, std::vector<ColumnNeed>& needs) const {
  if (own_widths_.size() != static_cast<std::size_t>(model_->columnCount())) return;
  std::vector<int> widths;
  for (const int column : columns) widths.push_back(own_widths_[static_cast<std::size_t>(column)]);
  const int widest = Widest(columns, widths);
  std::vector<ColumnNeed> own;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const bool gives = static_cast<int>(i) == widest;
    own.push_back({widths[i], gives ? std::min(needs[i].least, widths[i]) : widths[i]});
  }
  if (Least(own) <= room_) needs = std::move(own);
}

// The widest column of text takes the room that is left.
void RowsView::SetWidths() {
  if (!table_->testAttribute(Qt::WA_Resized)) return;  // its window gives it its room first
  QHeaderView& header = *table_->horizontalHeader();
  room_ = table_->viewport()->width();
  std::vector<int> columns;
  for (int column = 0; column < model_->columnCount(); ++column) {
    table_->setColumnHidden(column, source_.Columns()[column].hidden);
    if (!source_.Columns()[column].hidden) columns.push_back(column);
  }
  std::vector<ColumnNeed> needs = NeedsOf(columns);
  PreferOwnWidths(columns, needs);
  const std::vector<int> widths = FitColumns(needs, room_);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    header.setSectionResizeMode(columns[i], QHeaderView::Interactive);
    table_->setColumnWidth(columns[i], widths[i]);
  }
  if (const int widest = Widest(columns, widths); widest >= 0) {
    header.setSectionResizeMode(columns[static_cast<std::size_t>(widest)], QHeaderView::Stretch);
  }
  shown_widths_ = AllWidths();
}

std::vector<int> RowsView::AllWidths() const {
  std::vector<int> widths;
  for (int column = 0; column < model_->columnCount(); ++column) {
    widths.push_back(std::max(1, table_->columnWidth(column)));  // 0 is a hidden one's
  }
  return widths;
}

std::string RowsView::Key() const { return control.form.name + "." + control.name; }

// The operator let go of a heading, or of a column's edge.
void RowsView::KeepWidths() {
  const std::vector<int> widths = AllWidths();
  if (widths == shown_widths_) return;
  own_widths_ = shown_widths_ = widths;
  actions_.Memory().Keep(Key(), widths);
}

void RowsView::SetType(int smaller) {
  const QFont cells = Type(kTextSize - smaller);
  if (table_->font() == cells) return;
  table_->setFont(cells);
  table_->horizontalHeader()->setFont(Type(kLabelSize - smaller / 2));
}

}  // namespace tpv::qt
