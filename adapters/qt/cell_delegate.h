// Paints the cells of tables: room around the text, check marks, cell buttons,
// and a current row that shows whether the table has the focus.
#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>
#include <QStyledItemDelegate>

class QAbstractItemView;

namespace tpv::qt {

inline constexpr int kRowHeight = 32;
inline constexpr int kCellPadding = 22;  // left and right together
inline constexpr int kButtonWidth = 34;
inline constexpr int kCheckWidth = 30;
// Columns' widths come in twips and for smaller type than the till's.
inline constexpr double kPixelsInTwip = 1.4 / 15;

// Whether a cell has a button, asked of the model.
inline constexpr int kButtonRole = Qt::UserRole;

QRect ButtonRect(const QRect& cell);
QRect CheckRect(const QRect& cell);

class CellDelegate : public QStyledItemDelegate {
 public:
  // `focus` is the widget whose focus makes the current row stand out.
  CellDelegate(QAbstractItemView& table, const QWidget& focus);
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  void DrawCheck(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const;
  void DrawButton(QPainter& painter, const QStyleOptionViewItem& option, bool enabled) const;
  void DrawText(QPainter& painter, const QRect& place, const QStyleOptionViewItem& option, QString text,
                Qt::Alignment alignment) const;
  QStaticText LaidOut(const QString& text, const QFont& font) const;

  QAbstractItemView& table_;
  const QWidget& focus_;
  mutable QCache<QString, QStaticText> texts_{1000};  // in font_
  mutable QFont font_;
};

}  // namespace tpv::qt
