#include "adapters/qt/cell_delegate.h"

#include <QAbstractItemView>
#include <QPainter>

#include "adapters/qt/till_style.h"

namespace tpv::qt {

QRect ButtonRect(const QRect& cell) {
  return {cell.right() - kButtonWidth, cell.top() + 3, kButtonWidth - 2, cell.height() - 6};
}

QRect CheckRect(const QRect& cell) { return {cell.left() + 6, cell.center().y() - 10, 20, 20}; }

CellDelegate::CellDelegate(QAbstractItemView& table, const QWidget& focus)
    : QStyledItemDelegate(&table), table_(table), focus_(focus) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool selected = option.state & QStyle::State_Selected && enabled;
  const bool focused = selected && focus_.hasFocus();
  painter->fillRect(option.rect, focused ? colour::kAccent
                                 : selected ? colour::kSelected
                                            : option.palette.color(QPalette::Base));
  painter->setPen(colour::kLine);
  painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
  QRect text = option.rect.adjusted(kCellPadding / 2 - 1, 0, 1 - kCellPadding / 2, 0);
  if (const QVariant check = index.data(Qt::CheckStateRole); check.isValid()) {
    DrawCheck(*painter, option, check.toInt() == Qt::Checked);
    text.setLeft(option.rect.left() + kCheckWidth + 4);
  }
  if (index.data(kButtonRole).toBool()) {
    DrawButton(*painter, option.rect, enabled);
    text.setRight(option.rect.right() - kButtonWidth - 4);
  }
  painter->setPen(focused ? QColor(Qt::white) : enabled ? colour::kText : colour::kFaded);
  painter->setFont(option.font);
  const QString shown = index.data(Qt::DisplayRole).toString();
  const QVariant alignment = index.data(Qt::TextAlignmentRole);
  const int flags = alignment.isValid() ? alignment.toInt() : Qt::AlignLeft | Qt::AlignVCenter;
  painter->drawText(text, flags | Qt::TextSingleLine,
                    option.fontMetrics.elidedText(shown, Qt::ElideRight, text.width()));
}

void CellDelegate::DrawCheck(QPainter& painter, const QStyleOptionViewItem& option,
                             bool checked) const {
  QStyleOptionViewItem mark(option);
  mark.rect = CheckRect(option.rect);
  mark.state &= ~QStyle::State_HasFocus;
  mark.state |= checked ? QStyle::State_On : QStyle::State_Off;
  table_.style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &mark, &painter, &table_);
}

void CellDelegate::DrawButton(QPainter& painter, const QRect& cell, bool enabled) const {
  QStyleOptionButton button;
  button.rect = ButtonRect(cell);
  button.state = enabled ? QStyle::State_Enabled : QStyle::State_None;
  table_.style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &button, &painter, nullptr);
  painter.setPen(enabled ? colour::kText : colour::kFaded);
  painter.drawText(button.rect, Qt::AlignCenter, "…");
}

}  // namespace tpv::qt
