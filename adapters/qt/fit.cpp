#include "adapters/qt/fit.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <vector>

#include "adapters/qt/captioned.h"
#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/chart_view.h"
#include "adapters/qt/status_band.h"
#include "adapters/qt/text.h"

namespace tpv::qt {

namespace {

constexpr int kLeastRows = 2;   // of a table, below its header
constexpr const char* kCommonAmount = "99.999,99";

bool LabelFits(const QLabel& label) {
  if (!label.pixmap().isNull()) return true;
  if (label.wordWrap()) return label.height() >= label.heightForWidth(label.width());
  return label.width() >= label.sizeHint().width();
}

bool ButtonFits(const QAbstractButton& button) {
  const bool command = qobject_cast<const QPushButton*>(&button) != nullptr;
  const int text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text()).width();
  return button.width() >= (command ? text + 8 : button.sizeHint().width()) &&
         button.height() >= button.fontMetrics().height();
}

// What a field shows that is no longer than what it usually holds.
bool FieldFits(const Captioned& field) {
  const auto* edit = field.findChild<const QLineEdit*>();
  if (!field.CaptionFits() || field.field().width() < field.field().minimumSizeHint().width()) {
    return false;
  }
  if (edit == nullptr || !(edit->alignment() & Qt::AlignRight)) return true;
  const int text = edit->fontMetrics().horizontalAdvance(edit->text());
  if (text > edit->fontMetrics().horizontalAdvance(kCommonAmount)) return true;  // scrolls under the caret
  const QMargins margins = edit->textMargins();
  return text + margins.left() + margins.right() <= edit->width();
}

bool TableFits(const QTableView& table) {
  const int columns = table.horizontalHeader()->length();
  return columns <= table.viewport()->width() &&
         table.viewport()->height() >= kLeastRows * table.verticalHeader()->defaultSectionSize();
}

bool HasItsRoom(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return LabelFits(*label);
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return ButtonFits(*button);
  if (const auto* table = qobject_cast<const QTableView*>(&widget)) return TableFits(*table);
  if (const auto* field = dynamic_cast<const Captioned*>(&widget)) return FieldFits(*field);
  if (const auto* band = dynamic_cast<const StatusBand*>(&widget)) return band->Fits();
  return true;
}

// What an operator reads or works: not what only holds others.
bool IsPart(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    return !label->text().isEmpty() || !label->pixmap().isNull();
  }
  return qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
         qobject_cast<const QTableView*>(&widget) != nullptr ||
         qobject_cast<const QLineEdit*>(&widget) != nullptr ||
         dynamic_cast<const Captioned*>(&widget) != nullptr ||
         dynamic_cast<const ChartWidget*>(&widget) != nullptr ||
         dynamic_cast<const StatusBand*>(&widget) != nullptr;
}

void Collect(const QWidget& widget, std::vector<const QWidget*>& parts) {
  for (const QObject* child : widget.children()) {
    const auto* inner = qobject_cast<const QWidget*>(child);
    if (inner == nullptr || inner->isWindow() || !inner->isVisible()) continue;
    if (IsPart(*inner)) {
      parts.push_back(inner);
    } else {
      Collect(*inner, parts);
    }
  }
}

std::string NameOf(const QWidget& part) {
  QString name = part.accessibleName();
  if (const auto* label = qobject_cast<const QLabel*>(&part)) name = label->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&part)) name = button->text();
  if (const auto* field = dynamic_cast<const Captioned*>(&part)) name = field->field().accessibleName();
  return Utf8(name.isEmpty() ? QString(part.metaObject()->className()) : name);
}

QRect PlaceIn(const QWidget& window, const QWidget& part) {
  return {part.mapTo(&window, QPoint()), part.size()};
}

}  // namespace

std::string Misfit(const QWidget& window) {
  std::vector<const QWidget*> parts;
  Collect(window, parts);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const QWidget& part = *parts[i];
    const QRect place = PlaceIn(window, part);
    if (part.visibleRegion().boundingRect() != part.rect()) return NameOf(part) + ": out of sight";
    for (std::size_t other = i + 1; other < parts.size(); ++other) {
      if (place.intersects(PlaceIn(window, *parts[other]))) {
        return NameOf(part) + ": overlaps " + NameOf(*parts[other]);
      }
    }
    if (!HasItsRoom(part)) return NameOf(part) + ": clipped";
  }
  return {};
}

}  // namespace tpv::qt
