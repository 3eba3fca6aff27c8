#include "adapters/qt/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>

#include "adapters/qt/form_window.h"
#include "adapters/qt/status_band.h"
#include "adapters/qt/table_access.h"
#include "adapters/qt/table_setup.h"
#include "adapters/qt/text.h"

namespace tpv::qt {

namespace {

// Qt's own gives the chosen entry for the name, which leaves nobody to say of what.
class ComboAccess : public QAccessibleWidget {
 public:
  explicit ComboAccess(QComboBox& combo)
      : QAccessibleWidget(&combo, QAccessible::ComboBox), combo_(combo) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? combo_.currentText() : QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override { return {showMenuAction()}; }
  void doAction(const QString& action) override {
    if (action == showMenuAction()) combo_.showPopup();
  }

 private:
  QComboBox& combo_;
};

QAccessibleInterface* AccessOf(const QString&, QObject* object) {
  if (auto* window = dynamic_cast<FormWindow*>(object)) {
    return new QAccessibleWidget(window, QAccessible::Window);
  }
  if (auto* band = dynamic_cast<StatusBand*>(object)) {
    return new QAccessibleWidget(band, QAccessible::StatusBar);
  }
  if (auto* table = dynamic_cast<TillTable*>(object)) return new TableAccess(*table);
  if (auto* combo = qobject_cast<QComboBox*>(object)) return new ComboAccess(*combo);
  return nullptr;
}

using Row = std::vector<ui::Control*>;

void NameRows(const std::vector<Row>& rows, const Views& views) {
  for (const Row& row : rows) {
    std::string before;
    for (const ui::Control* control : row) {
      if (const auto* frame = dynamic_cast<const ui::Frame*>(control)) NameRows(frame->rows, views);
      const auto view = views.find(control);
      const bool nameless = control->caption.empty() && dynamic_cast<const ui::TextBox*>(control) != nullptr;
      if (nameless && !before.empty() && view != views.end()) {
        view->second->Target()->setAccessibleName(Text(before + ": nombre"));
      }
      if (!control->caption.empty()) before = control->caption;
    }
  }
}

}  // namespace

void TellAccessibility() {
  static const bool told = [] {
    QAccessible::installFactory(&AccessOf);
    return true;
  }();
  static_cast<void>(told);
}

void NameByNeighbours(const ui::Form& form, const Views& views) { NameRows(form.rows, views); }

}  // namespace tpv::qt
