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
  // A line drawn with a pen costs a third of the whole cell.
  painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), colour::kLine);
  painter->setFont(option.font);
  QRect text = option.rect.adjusted(kCellPadding / 2 - 1, 0, 1 - kCellPadding / 2, 0);
  if (const QVariant check = index.data(Qt::CheckStateRole); check.isValid()) {
    DrawCheck(*painter, option, check.toInt() == Qt::Checked);
    text.setLeft(option.rect.left() + kCheckWidth + 4);
  }
  if (index.data(kButtonRole).toBool()) {
    DrawButton(*painter, option, enabled);
    text.setRight(option.rect.right() - kButtonWidth - 4);
  }
  painter->setPen(focused ? QColor(Qt::white) : enabled ? colour::kText : colour::kFaded);
  const QVariant alignment = index.data(Qt::TextAlignmentRole);
  DrawText(*painter, text, option, index.data(Qt::DisplayRole).toString(),
           Qt::Alignment(alignment.isValid() ? alignment.toInt() : Qt::AlignLeft));
}

void CellDelegate::DrawText(QPainter& painter, const QRect& place, const QStyleOptionViewItem& option,
                            QString text, Qt::Alignment alignment) const {
  text.replace(u'\n', u' ');
  if (text.isEmpty()) return;
  QStaticText laid = LaidOut(text, option.font);
  if (laid.size().width() > place.width()) {
    laid = LaidOut(option.fontMetrics.elidedText(text, Qt::ElideRight, place.width()), option.font);
  }
  const QSize size = laid.size().toSize();
  painter.drawStaticText(QStyle::alignedRect(Qt::LeftToRight, alignment | Qt::AlignVCenter, size, place).topLeft(), laid);
}

// The shapes of a text are found once, as it is painted again and again.
QStaticText CellDelegate::LaidOut(const QString& text, const QFont& font) const {
  if (font != font_) {
    texts_.clear();
    font_ = font;
  }
  if (const QStaticText* known = texts_.object(text)) return *known;
  QStaticText laid(text);
  laid.setTextFormat(Qt::PlainText);
  laid.setPerformanceHint(QStaticText::AggressiveCaching);
  laid.prepare({}, font);
  texts_.insert(text, new QStaticText(laid));  // taken by the cache
  return laid;
}

void CellDelegate::DrawCheck(QPainter& painter, const QStyleOptionViewItem& option,
                             bool checked) const {
  QStyleOptionViewItem mark(option);
  mark.rect = CheckRect(option.rect);
  mark.state &= ~QStyle::State_HasFocus;
  mark.state |= checked ? QStyle::State_On : QStyle::State_Off;
  table_.style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &mark, &painter, &table_);
}

void CellDelegate::DrawButton(QPainter& painter, const QStyleOptionViewItem& option, bool enabled) const {
  QStyleOptionButton button;
  button.rect = ButtonRect(option.rect);
  button.state = enabled ? QStyle::State_Enabled : QStyle::State_None;
  table_.style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &button, &painter, nullptr);
  painter.setPen(enabled ? colour::kText : colour::kFaded);
  DrawText(painter, button.rect, option, "…", Qt::AlignHCenter);
}

}  // namespace tpv::qt
