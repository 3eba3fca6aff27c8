#include "adapters/qt/qt_operator.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QHeaderView>
#include <QTableView>
#include <stdexcept>

#include "adapters/qt/native_input.h"
#include "adapters/qt/rows_view.h"
#include "adapters/qt/text.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::qt {

namespace {

[[noreturn]] void Refuse(const std::string& text) { throw ui::ActionRefused(text); }

}  // namespace

const ui::MessageBox* QtOperator::Box() {
  return front_end_.open_box() != nullptr ? &front_end_.open_box()->box() : nullptr;
}

// What every action begins with: the windows as they are, active and painted.
void QtOperator::Begin() {
  front_end_.Refresh();
  SettleWindows();
}

// What every action ends with: due events, the handler's error, and a look at
// the window.
void QtOperator::Done() {
  SettleWindows();
  front_end_.RethrowError();
  FormWindow* window = front_end_.TopWindow();
  if (window == nullptr || Box() != nullptr || HasSearch() || window->form().closing) return;
  const std::string difference = window->Difference();
  if (!difference.empty()) throw std::logic_error("la ventana no muestra " + difference);
}

// The control's widgets as the operator finds them, scrolled into sight.
ControlView& QtOperator::Usable(const ui::Control& control) {
  Begin();
  ControlView* view = front_end_.TopWindow()->ViewOf(control);
  if (view == nullptr || !view->Outer()->isVisible()) Refuse(control.name + " no está visible");
  if (!view->Target()->isEnabled()) Refuse(control.name + " está desactivado");
  front_end_.TopWindow()->Reveal(*view);
  return *view;
}

void QtOperator::Focus(ui::Control& control) {
  ControlView& view = Usable(control);
  if (!control.CanFocus()) Refuse(control.name + " no puede tener el foco");
  if (view.Target()->hasFocus()) return;
  if (view.Tall()) {
    SendClick(*view.Surface(), {1, 5});  // a heading's edge: its middle would sort
  } else if (dynamic_cast<ui::TextBox*>(&control) != nullptr) {
    SendClick(*view.Surface());
  } else if (auto* combo = qobject_cast<QComboBox*>(view.Target())) {
    SendClick(*view.Target());
    combo->hidePopup();
  } else {
    // A button's click would press it: the focus comes there by the engine alone.
    front_end_.Act([&](ui::Engine& engine) { engine.FocusOn(control); });
  }
  Done();
}

void QtOperator::Type(std::string_view text) {
  Begin();
  // Character by character, as whatever opens in between takes the rest.
  for (std::size_t at = 0; at < text.size();) {
    std::string character;
    AppendCharacter(character, NextCharacter(text, at));
    SendText(Text(character));
    front_end_.RethrowError();
  }
  Done();
}

void QtOperator::Clear() {
  const auto* box = dynamic_cast<ui::TextBox*>(Top()->focus);
  if (box == nullptr) Refuse("ningún campo de texto tiene el foco");
  if (box->locked) Refuse(box->name + " no se puede cambiar");
  Begin();
  SendStroke({Qt::Key_A, Qt::ControlModifier, "\x01"});
  Press(ui::Key::Delete);
}

void QtOperator::Press(ui::Key key) {
  Begin();
  SendStroke(StrokeOf(key));
  Done();
}

// A stroke that has nothing to do where it arrives is no failure of a scanner's.
void QtOperator::Strike(const std::function<void()>& stroke) {
  stroke();
  try {
    front_end_.RethrowError();
  } catch (const ui::ActionRefused&) {
  }
}

void QtOperator::Scan(std::string_view code) {
  constexpr quint64 kBetweenScans = 1000;
  Begin();
  quint64 moment = ++scans_ * kBetweenScans;
  const auto strike = [&](Stroke stroke) {
    stroke.moment = ++moment;
    Strike([&] { SendStroke(stroke); });
  };
  for (std::size_t at = 0; at < code.size();) strike(StrokeOf(NextCharacter(code, at)));
  strike(StrokeOf(ui::Key::Enter));
  Done();
}

void QtOperator::Click(ui::Control& control) {
  const bool clickable = dynamic_cast<ui::Button*>(&control) != nullptr ||
                         dynamic_cast<ui::CheckBox*>(&control) != nullptr ||
                         dynamic_cast<ui::OptionButton*>(&control) != nullptr;
  if (!clickable) Refuse(control.name + " no es un botón");
  QWidget& button = *Usable(control).Target();
  SendClick(button, {12, button.height() / 2});
  Done();
}

void QtOperator::Select(ui::Control& control, const std::string& row_or_entry) {
  if (auto* combo = dynamic_cast<ui::ComboBox*>(&control)) return SelectEntry(*combo, row_or_entry);
  const auto row = ParseInt32(row_or_entry);
  if (!row) Refuse(control.name + " pide un número de fila");
  RowsView& rows = Rows(control);
  const QPoint at = rows.RowPoint(*row);
  if (at.isNull()) Refuse(control.name + " no tiene la fila " + row_or_entry);
  SendClick(*rows.Rows(), at);
  Done();
}

// Opens the entries with the mouse and chooses with the keyboard.
void QtOperator::SelectEntry(ui::ComboBox& combo, const std::string& entry) {
  auto& widget = static_cast<QComboBox&>(*Usable(combo).Target());
  int row = widget.findText(Text(entry), Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (row < 0) row = widget.findText(Text(entry), Qt::MatchStartsWith | Qt::MatchCaseSensitive);
  if (row < 0) Refuse(combo.name + " no tiene la entrada " + entry);
  SendClick(widget);
  SettleWindows();
  front_end_.RethrowError();
  if (!widget.view()->isVisible()) return Done();  // leaving the old field kept the focus
  widget.view()->setCurrentIndex(widget.model()->index(row, 0));
  SendStroke(StrokeOf(ui::Key::Enter));
  Done();
}

RowsView& QtOperator::Rows(ui::Control& control) {
  auto* rows = dynamic_cast<RowsView*>(&Usable(control));
  if (rows == nullptr) Refuse(control.name + " no tiene filas");
  return *rows;
}

void QtOperator::Tick(ui::Control& control, int row, bool on) {
  auto* list = dynamic_cast<ui::ListView*>(&control);
  if (list == nullptr) Refuse(control.name + " no es una lista");
  RowsView& rows = Rows(control);
  const QPoint at = rows.CheckPoint(row);
  if (at.isNull()) Refuse(control.name + " no tiene la fila " + std::to_string(row));
  if (list->items[static_cast<std::size_t>(list->RowAt(row))].checked == on) return Focus(control);
  SendClick(*rows.Rows(), at);
  Done();
}

void QtOperator::CellButton(ui::Control& control, int row, int column) {
  if (dynamic_cast<ui::Grid*>(&control) == nullptr) Refuse(control.name + " no es una rejilla");
  RowsView& rows = Rows(control);
  const QPoint cell = rows.RowPoint(row);
  if (cell.isNull()) Refuse(control.name + " no tiene la fila " + std::to_string(row));
  const QPoint button = rows.ButtonPoint(row, column);
  SendClick(*rows.Rows(), button.isNull() ? cell : button);
  Done();
}

void QtOperator::Sort(ui::List& list, int column) {
  RowsView& rows = Rows(list);
  const QPoint at = rows.HeadingPoint(column);
  if (at.isNull() || !list.arrangeable) Refuse(list.name + " no se ordena por la columna " + std::to_string(column));
  SendClick(*rows.Surface(), at);
  Done();
}

void QtOperator::OpenListMenu(ui::List& list) {
  Focus(list);
  SendStroke({Qt::Key_Menu, Qt::NoModifier, {}, 0});
  Done();
}

void QtOperator::ChooseIn(QMenu* menu, std::string_view entry) {
  if (menu == nullptr || !menu->isVisible()) Refuse("no hay ningún menú abierto");
  for (QAction* action : menu->actions()) {
    if (EqualNoCase(Utf8(action->objectName()), entry)) return SendClick(*menu, menu->actionGeometry(action).center());
  }
  Refuse("el menú no tiene " + std::string(entry));
}

void QtOperator::ChooseMenu(std::string_view entry) {
  Begin();
  ChooseIn(front_end_.TopWindow()->menu(), entry);
  // A desktop gives the keys back to the window; without one nobody does.
  if (FormWindow* window = front_end_.TopWindow(); window != nullptr && Box() == nullptr) window->activateWindow();
  Done();
}

void QtOperator::Close() {
  front_end_.TopWindow()->close();
  Done();
}

void QtOperator::Answer(ui::Answer answer) {
  Begin();
  QPushButton* button = front_end_.open_box()->ButtonOf(answer);
  if (button == nullptr) Refuse("el mensaje no tiene ese botón");
  SendClick(*button);
  Done();
}

std::vector<std::string> QtOperator::Matches() {
  const QAbstractItemModel& model = *front_end_.open_search()->table().model();
  std::vector<std::string> matches;
  for (int row = 0; row < model.rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column) {
      cells << model.index(row, column).data().toString();
    }
    matches.push_back(Utf8(cells.join(" | ")));
  }
  return matches;
}

void QtOperator::Find(std::string_view text) {
  Begin();
  front_end_.open_search()->edit().selectAll();
  SendText(Text(text));
  Done();
}

void QtOperator::SortMatches(std::size_t column) {
  Begin();
  QHeaderView& header = *front_end_.open_search()->table().horizontalHeader();
  const int at = static_cast<int>(column);
  SendClick(*header.viewport(), {header.sectionViewportPosition(at) + header.sectionSize(at) / 2, header.height() / 2});
  Done();
}

void QtOperator::ChooseSearchMenu(std::string_view entry) {
  Begin();
  SendStroke({Qt::Key_Menu, Qt::NoModifier, {}, 0});
  SettleWindows();
  ChooseIn(front_end_.open_search()->menu(), entry);
  if (HasSearch() && Box() == nullptr) front_end_.open_search()->activateWindow();  // as a desktop does
  Done();
}

void QtOperator::ExportMatches(const std::string& path) {
  front_end_.open_search()->Leave([path](ui::SearchedForm& form) {
    if (!form.GivesListsAway()) Refuse("la búsqueda no exporta sus filas");
    form.ExportList(form.found, path);
  });
}

void QtOperator::PickRow(std::size_t visible_row) {
  Begin();
  SearchDialog& search = *front_end_.open_search();
  if (visible_row >= search.list().Visible().size()) {
    Refuse("la búsqueda no tiene la fila " + std::to_string(visible_row));
  }
  QTableView& table = search.table();
  const QModelIndex index = table.model()->index(static_cast<int>(visible_row), 0);
  table.scrollTo(index);
  SendClick(*table.viewport(), table.visualRect(index).center(), true);
  Done();
}

void QtOperator::PickText(std::string_view text) {
  const ui::SearchList& list = front_end_.open_search()->list();
  const auto row = list.First(text);
  if (!row) Refuse("la búsqueda no tiene «" + std::string(text) + "»");
  const auto& visible = list.Visible();
  PickRow(static_cast<std::size_t>(std::find(visible.begin(), visible.end(), *row) - visible.begin()));
}

void QtOperator::PickNone() {
  Begin();
  SendStroke(StrokeOf(ui::Key::Esc));
  Done();
}

}  // namespace tpv::qt
