#include "adapters/qt/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>

#include "adapters/qt/chart_view.h"
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
  if (auto* chart = dynamic_cast<ChartWidget*>(object)) return new QAccessibleWidget(chart, QAccessible::Chart);
  if (auto* table = dynamic_cast<TillTable*>(object)) return new TableAccess(*table);
  if (auto* combo = qobject_cast<QComboBox*>(object)) return new ComboAccess(*combo);
  return nullptr;
}

// What a reader says of a control besides its name: what it takes, and how.
QString DescriptionOf(const ui::Control& control) {
  if (const auto* box = dynamic_cast<const ui::TextBox*>(&control)) {
    if (box->locked) return "Solo se muestra";
    if (box->input == ui::Input::Date) return "Fecha, día/mes/año; F4 abre el calendario";
    return box->input == ui::Input::Number ? "Número" : "Texto";
  }
  if (const auto* list = dynamic_cast<const ui::List*>(&control)) {
    return list->Narrows() ? "Lista; se filtra escribiendo, Mayús+F10 abre su menú" : "Lista; Mayús+F10 abre su menú";
  }
  if (dynamic_cast<const ui::ComboBox*>(&control) != nullptr) return "Lista desplegable; Alt+Abajo la abre";
  if (dynamic_cast<const ui::CheckBox*>(&control) != nullptr) return "Casilla; el espacio la cambia";
  if (dynamic_cast<const ui::OptionButton*>(&control) != nullptr) return "Opción; el espacio la elige";
  return "Botón; Intro o el espacio lo pulsan";
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

void NameAndDescribe(const ui::Form& form, const Views& views) {
  NameRows(form.rows, views);
  for (const auto& [control, view] : views) {
    if (control->CanFocus()) view->Target()->setAccessibleDescription(DescriptionOf(*control));
  }
}

}  // namespace tpv::qt
