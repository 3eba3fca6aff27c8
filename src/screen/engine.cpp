#include "screen/engine.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "screen/access_keys.h"
#include "screen/engine_lists.h"

namespace tpv::ui {

namespace {

bool CanTakeFocus(const Control& control) {
  return control.CanFocus() && control.IsEnabled() && control.IsVisible();
}

// The control that Tab (or Shift+Tab) goes to; null when there is none.
Control* Next(const Form& form, const Control* from, bool backwards) {
  std::vector<Control*> order = form.InLayoutOrder();
  if (backwards) std::reverse(order.begin(), order.end());
  const auto at = std::find(order.begin(), order.end(), from);
  const std::size_t start = at == order.end() ? 0 : static_cast<std::size_t>(at - order.begin()) + 1;
  for (std::size_t i = 0; i < order.size(); ++i) {
    Control* candidate = order[(start + i) % order.size()];
    if (candidate != from && candidate->tab_stop && CanTakeFocus(*candidate)) return candidate;
  }
  return nullptr;
}

void Leave(Form& form) {
  Control* old = form.focus;
  form.focus = nullptr;
  if (old == nullptr) return;
  form.OnLeave(*old);
  try {
    if (old->left) old->left();
  } catch (const std::exception&) {
    form.focus = old;  // it was not left
    form.OnEnter(*old);
    throw;
  }
}

void Enter(Form& form, Control& control) {
  form.focus = &control;
  form.OnEnter(control);
  if (control.entered) control.entered();
}

// Moves the focus to what was asked for, and on while handlers ask again.
void MoveFocus(Form& form) {
  constexpr int kPatience = 20;  // two fields that send the focus to each other end here
  for (int moves = 0; form.requested_focus != nullptr && moves < kPatience; ++moves) {
    Control* target = form.requested_focus;
    form.requested_focus = nullptr;
    if (target == form.focus || !CanTakeFocus(*target)) continue;
    const Control* old = form.focus;
    Leave(form);
    Control* redirected = std::exchange(form.requested_focus, nullptr);
    if (redirected != nullptr && CanTakeFocus(*redirected)) target = redirected;
    if (!CanTakeFocus(*target)) target = Next(form, old, false);
    if (target != nullptr) Enter(form, *target);
  }
  form.requested_focus = nullptr;
}

// Also when a handler fails on the way.
struct ClampedSelections {
  ~ClampedSelections() {
    for (Control* control : form.Controls()) control->ClampSelection();
  }
  const Form& form;
};

void RequireUsable(const Control& control) {
  if (!control.IsVisible()) throw ActionRefused(control.name + " no está visible");
  if (!control.IsEnabled()) throw ActionRefused(control.name + " está desactivado");
}

std::size_t ByteAt(std::string_view text, std::size_t characters) {
  return Left(text, characters).size();
}

void ReplaceSelection(TextBox& box, std::string_view with) {
  const std::size_t start = ByteAt(box.text, box.selection_start);
  const std::size_t end = ByteAt(box.text, box.selection_start + box.selection_length);
  box.text.replace(start, end - start, with);
  box.selection_start += Length(with);
  box.selection_length = 0;
}

void Erase(TextBox& box, bool before_caret) {
  if (box.locked) return;
  if (box.selection_length == 0) {
    if (before_caret && box.selection_start == 0) return;
    if (before_caret) --box.selection_start;
    box.selection_length = 1;
  }
  ReplaceSelection(box, "");
}

char32_t FirstFolded(std::string_view text) {
  const std::string folded = FoldCase(text);
  std::size_t position = 0;
  return NextCharacter(folded, position);
}

// The row that a key moves a list to; -1 when there are no rows.
int MovedRow(int current, std::size_t count, int step) {
  if (count == 0) return -1;
  return std::clamp(current + step, 0, static_cast<int>(count) - 1);
}

}  // namespace

// What every event ends with: the focus asked for, none on a control that can no
// longer have it, and selections inside their texts.
void Engine::Settle(Form& form) {
  const ClampedSelections clamped{form};
  ArrangeLists(form);
  if (std::exchange(form.tab_sent, false)) form.requested_focus = Next(form, form.focus, false);
  MoveFocus(form);
  if (form.focus != nullptr && !CanTakeFocus(*form.focus)) {
    form.requested_focus = Next(form, form.focus, false);
    form.focus = nullptr;
    MoveFocus(form);
  }
  if (std::exchange(box_closed_by_key_, false)) form.OnBoxClosedByKey();
}

// Runs a handler and settles the focus also when it fails.
template <typename Handler>
void Engine::Run(Form& form, Handler handler) {
  try {
    handler();
  } catch (const std::exception&) {
    Settle(form);
    throw;
  }
  Settle(form);
}

void Engine::SetBanner(std::string_view banner) {
  banner_ = banner;
  for (Form* form : forms_) form->banner = banner_;
}

void Engine::Load(Form& form) {
  form.banner = banner_;
  if (form.loaded) return;
  form.loaded = true;
  form.OnLoad();
}

void Engine::Open(Form& form) {
  Load(form);
  form.banner = banner_;  // which may have changed as it was loaded
  CountOpening();
  GiveAccessKeys(form);
  forms_.push_back(&form);
  try {
    if (form.requested_focus == nullptr) form.requested_focus = Next(form, nullptr, false);
    Settle(form);
    if (form.activated) return;
    form.activated = true;
    Run(form, [&] { form.OnFirstActivate(); });
  } catch (...) {
    Drop(form);
    throw;
  }
}

void Engine::Unload(Form& form) {
  Drop(form);
  form.OnUnload();
}

void Engine::Drop(Form& form) { std::erase(forms_, &form); }

void Engine::FocusOn(Control& control) {
  RequireUsable(control);
  if (!control.CanFocus()) throw ActionRefused(control.name + " no puede tener el foco");
  control.form.requested_focus = &control;
  Settle(control.form);
}

void Engine::TypeCharacter(char32_t character, KeyMoment when) {
  Form& form = *Top();
  const bool begins = burst_.Begins(character, when);
  if (begins) RememberFocus(form);
  if (form.focus == nullptr) throw ActionRefused("ningún control tiene el foco");
  if (!begins && dynamic_cast<TextBox*>(form.focus) == nullptr) return;  // no finger's key
  if (TypeIntoList(character)) return;
  if (character == U' ' && dynamic_cast<TextBox*>(form.focus) == nullptr) {
    return PressSpace(*form.focus);
  }
  if (auto* combo = dynamic_cast<ComboBox*>(form.focus)) return FindEntry(*combo, character);
  auto* box = dynamic_cast<TextBox*>(form.focus);
  if (box == nullptr) throw ActionRefused(form.focus->name + " no admite texto");
  Run(form, [&] {
    const char32_t accepted = form.OnCharacter(*box, character);
    const std::size_t length = Length(box->text) - box->selection_length;
    const bool full = box->max_length > 0 && length >= static_cast<std::size_t>(box->max_length);
    if (accepted == 0 || box->locked || full) return;
    std::string text;
    AppendCharacter(text, accepted);
    ReplaceSelection(*box, text);
  });
  const std::size_t openings = openings_;
  Run(form, [&] { form.OnKeyDown(Key::Other); });
  if (openings == openings_) Run(form, [&] { form.OnKeyUp(Key::Other); });
}

// The space bar does what a click on the control's own mark or button does.
void Engine::PressSpace(Control& control) {
  if (auto* list = dynamic_cast<ListView*>(&control); list != nullptr && list->check_boxes) {
    const int row = list->current_row;
    if (row >= 0) SetCheck(*list, list->PlaceOf(row), !list->items.at(row).checked);
  } else if (auto* grid = dynamic_cast<Grid*>(&control)) {
    const auto button = std::find_if(grid->layout.begin(), grid->layout.end(),
                                     [](const GridColumn& column) { return column.cell_button; });
    const bool usable = button != grid->layout.end() && grid->current_row >= 0 && !grid->read_only;
    if (usable) CellButton(*grid, grid->PlaceOf(grid->current_row), static_cast<int>(button - grid->layout.begin()));
  } else {
    Click(control);
  }
}

// The next entry that begins with the letter, as a list box's own search.
void Engine::FindEntry(ComboBox& combo, char32_t character) {
  std::string letter;
  AppendCharacter(letter, character);
  const int count = static_cast<int>(combo.items.size());
  for (int step = 1; step <= count; ++step) {
    const int row = (std::max(combo.index, -1) + step) % count;
    if (!FoldForSearch(combo.items[row]).starts_with(FoldForSearch(letter))) continue;
    if (row != combo.index) SelectRow(combo, row);
    return;
  }
}

void Engine::ClearText() {
  auto* box = dynamic_cast<TextBox*>(Top()->focus);
  if (box == nullptr) throw ActionRefused("ningún campo de texto tiene el foco");
  if (box->locked) throw ActionRefused(box->name + " no se puede cambiar");
  box->SelectAll();
  PressKey(Key::Delete);
}

void Engine::KeyDown(Key key, KeyMoment when) {
  Form& form = *Top();
  if (key == Key::Enter && TakeLineEnd(form, when)) return;
  if (key != Key::Enter) burst_.Interrupt();
  if (ForgetFilter(key)) return;
  bool swallowed = false;
  Run(form, [&] { swallowed = form.OnKeyDown(key); });
  if (swallowed || form.closing || Top() != &form) return;
  DefaultKey(form, key);
}

void Engine::DefaultKey(Form& form, Key key) {
  if (key == Key::Tab || key == Key::BackTab) {
    form.requested_focus = Next(form, form.focus, key == Key::BackTab);
    Settle(form);
    return;
  }
  Control* focus = form.focus;
  if (auto* box = dynamic_cast<TextBox*>(focus)) {
    if (key == Key::Delete || key == Key::Backspace) Erase(*box, key == Key::Backspace);
    if (key == Key::Add) TypeKeypad(form, *box, U'+');
    if (key == Key::Subtract) TypeKeypad(form, *box, U'-');
    if (key == Key::F4 && box->input == Input::Date && !box->locked) form.open_calendar = box;
    return;
  }
  if (focus == nullptr) return;
  if (key == Key::Enter && dynamic_cast<Button*>(focus) != nullptr) {
    CountOpening();  // the release belongs to the button
    Click(*focus);
  }
  if (key == Key::Up || key == Key::Down) MoveRow(*focus, key == Key::Up ? -1 : 1);
}

void Engine::TypeKeypad(Form& form, TextBox& box, char32_t character) {
  const char32_t accepted = form.OnCharacter(box, character);
  if (accepted == 0 || box.locked) return;
  std::string text;
  AppendCharacter(text, accepted);
  ReplaceSelection(box, text);
}

void Engine::MoveRow(Control& control, int step) {
  int current = -1;
  std::size_t count = 0;
  if (const auto* list = dynamic_cast<List*>(&control)) {
    current = list->PlaceOf(list->current_row);
    count = static_cast<std::size_t>(list->ShownCount());
  } else if (const auto* combo = dynamic_cast<ComboBox*>(&control)) {
    current = combo->index;
    count = combo->items.size();
  }
  const int row = MovedRow(current, count, step);
  if (row >= 0 && row != current) SelectRow(control, row);
}

void Engine::KeyUp(Key key) {
  Form& form = *Top();
  Run(form, [&] { form.OnKeyUp(key); });
}

void Engine::PressKey(Key key, KeyMoment when) {
  const Form* form = Top();
  const std::size_t openings = openings_;
  KeyDown(key, when);
  if (openings == openings_ && Top() == form && !form->closing) KeyUp(key);
}

void Engine::Click(Control& control) {
  RequireUsable(control);
  Form& form = control.form;
  FocusOn(control);
  if (form.focus != &control) return;  // leaving the old field sent the focus elsewhere
  Run(form, [&] {
    if (const auto* button = dynamic_cast<Button*>(&control)) {
      if (button->click) button->click();
    } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
      check->checked = !check->checked;
      if (check->click) check->click();
    } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
      option->Check();
      if (option->click) option->click();
    }
  });
}

// A caption's own mark comes first; of fields that share a letter, the next one.
void Engine::AccessKey(char32_t letter) {
  std::string text;
  AppendCharacter(text, letter);
  const char32_t wanted = FirstFolded(text);
  std::vector<Control*> fields;
  for (const bool marked : {true, false}) {
    for (Control* control : Top()->InLayoutOrder()) {
      const char32_t key = marked ? MarkedLetter(control->caption) : control->access_key;
      if (key != wanted || !CanTakeFocus(*control)) continue;
      if (control->IsPressed()) return Click(*control);
      fields.push_back(control);
    }
  }
  if (fields.empty()) return;
  const auto at = std::find(fields.begin(), fields.end(), Top()->focus);
  const bool last = at == fields.end() || at + 1 == fields.end();
  FocusOn(last ? *fields.front() : *at[1]);
}

void Engine::SelectRow(Control& control, int row) {
  FocusOn(control);
  if (control.form.focus != &control) return;
  const auto require = [&](std::size_t count) {
    if (row < 0 || static_cast<std::size_t>(row) >= count) {
      throw ActionRefused(control.name + " no tiene la fila " + std::to_string(row));
    }
  };
  Run(control.form, [&] {
    if (auto* list = dynamic_cast<List*>(&control)) {
      require(static_cast<std::size_t>(list->ShownCount()));
      list->current_row = list->RowAt(row);
      const auto* items = dynamic_cast<ListView*>(list);
      if (items != nullptr && items->selected) items->selected(list->current_row);
    } else if (auto* combo = dynamic_cast<ComboBox*>(&control)) {
      require(combo->items.size());
      combo->index = row;
      if (combo->changed) combo->changed();
    }
  });
}

void Engine::SelectEntry(ComboBox& combo, std::string_view text) {
  const auto row_of = [&](auto matches) {
    const auto found = std::find_if(combo.items.begin(), combo.items.end(), matches);
    return found == combo.items.end() ? -1 : static_cast<int>(found - combo.items.begin());
  };
  int row = row_of([&](const std::string& item) { return item == text; });
  if (row < 0) row = row_of([&](const std::string& item) { return item.starts_with(text); });
  if (row < 0) throw ActionRefused(combo.name + " no tiene la entrada " + std::string(text));
  SelectRow(combo, row);
}

void Engine::SetCheck(ListView& list, int row, bool checked) {
  FocusOn(list);
  if (list.form.focus != &list) return;
  const int at = list.RowAt(row);
  if (at < 0) throw ActionRefused(list.name + " no tiene la fila " + std::to_string(row));
  if (list.items[at].checked == checked) return;
  Run(list.form, [&] {
    list.Mark(static_cast<std::size_t>(at), checked);
    if (list.checked) list.checked(at);
  });
}

void Engine::CellButton(Grid& grid, int row, int column) {
  SelectRow(grid, row);
  if (grid.form.focus != &grid) return;
  const bool has_button = column >= 0 && static_cast<std::size_t>(column) < grid.layout.size() &&
                          grid.layout[column].cell_button;
  if (!has_button || grid.read_only) return;  // a click on a plain cell only chose its row
  Run(grid.form, [&] {
    if (grid.cell_button) grid.cell_button(grid.current_row, column);
  });
}

void Engine::ChooseMenu(std::string_view entry) {
  Form& form = *Top();
  Menu* menu = std::exchange(form.open_menu, nullptr);
  if (menu == nullptr) throw ActionRefused("no hay ningún menú abierto");
  for (const MenuEntry& candidate : menu->entries) {
    if (!EqualNoCase(candidate.name, entry)) continue;
    Run(form, [&] { candidate.click(); });
    return;
  }
  throw ActionRefused("el menú no tiene " + std::string(entry));
}

void Engine::ChooseDay(const DateTime& day) {
  Form& form = *Top();
  TextBox* box = std::exchange(form.open_calendar, nullptr);
  if (box == nullptr) throw ActionRefused("no hay ningún calendario abierto");
  FocusOn(*box);
  if (form.focus != box) return;
  ClearText();
  for (const char character : ToDayFirst(day)) TypeCharacter(static_cast<char32_t>(character));
}

void Engine::CloseBox() {
  Form& form = *Top();
  Run(form, [&] { form.OnCloseBox(); });
}

}  // namespace tpv::ui
