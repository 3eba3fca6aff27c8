#include "screen/engine_lists.h"

#include "base/text.h"
#include "screen/engine.h"

namespace tpv::ui {

void ArrangeLists(Form& form) {
  for (Control* control : form.Controls()) {
    List* list = control->AsList();
    if (list == nullptr) continue;
    list->Arrange();
    if (list->current_row >= 0 && list->PlaceOf(list->current_row) < 0) list->current_row = list->RowAt(0);
  }
}

std::vector<MenuEntry> ListMenu(List& list, const std::function<void(int column)>& sort) {
  std::vector<MenuEntry> entries;
  if (list.form.GivesListsAway()) {
    entries = {{"mnuExportar", "Exportar CSV", [&list] { list.form.ExportList(list, ""); }},
               {"mnuImprimirLista", "Imprimir", [&list] { list.form.PrintList(list, ListPaper::Printer); }},
               {"mnuVerLista", "Ver en PDF", [&list] { list.form.PrintList(list, ListPaper::Pdf); }}};
  }
  for (int column = 0; list.arrangeable && column < static_cast<int>(list.layout.size()); ++column) {
    const GridColumn& shown = list.layout[static_cast<std::size_t>(column)];
    if (shown.hidden || shown.caption.empty()) continue;
    entries.push_back({"mnuOrden" + std::to_string(column), "Ordenar por " + shown.caption,
                       [sort, column] { sort(column); }});
  }
  return entries;
}

// Back to the screen's order after both ways.
void Engine::SortBy(List& list, int column) {
  FocusOn(list);
  if (list.form.focus != &list) return;
  if (!list.arrangeable) throw ActionRefused(list.name + " no se ordena");
  if (column < 0 || column >= static_cast<int>(list.layout.size())) {
    throw ActionRefused(list.name + " no tiene la columna " + std::to_string(column));
  }
  const bool again = list.sorted_by == column;
  list.sorted_by = again && list.descending ? -1 : column;
  list.descending = again && !list.descending;
  Settle(list.form);
}

void Engine::Narrow(List& list, std::string_view words) {
  FocusOn(list);
  if (list.form.focus != &list) return;
  if (!list.Narrows()) throw ActionRefused(list.name + " no se filtra");
  list.filter = words;
  const int row = list.current_row;
  Settle(list.form);
  const auto* items = dynamic_cast<ListView*>(&list);
  if (list.current_row != row && items != nullptr && items->selected && list.current_row >= 0) {
    SelectRow(list, list.PlaceOf(list.current_row));
  }
}

// Letters typed at a list narrow it. True when the character was its own.
bool Engine::TypeIntoList(char32_t character) {
  auto* list = dynamic_cast<List*>(Top()->focus);
  if (list == nullptr || !list->Narrows() || (character == U' ' && list->filter.empty())) return false;
  std::string words = list->filter;
  AppendCharacter(words, character);
  Narrow(*list, words);
  return true;
}

// The first Esc at a narrowed list shows all of it again. True when the key was the filter's.
bool Engine::ForgetFilter(Key key) {
  auto* list = dynamic_cast<List*>(Top()->focus);
  if (list == nullptr || list->filter.empty() || (key != Key::Esc && key != Key::Backspace)) return false;
  CountOpening();  // the release is no key of the form's
  const std::size_t length = Length(list->filter);
  Narrow(*list, key == Key::Esc ? std::string() : Left(list->filter, length - 1));
  return true;
}

void Engine::OpenListMenu(List& list) {
  FocusOn(list);
  if (list.form.focus != &list) return;
  Form& form = list.form;
  if (!form.list_menu) form.list_menu = std::make_unique<Menu>(form, "mnuLista");
  form.list_menu->entries = ListMenu(list, [this, &list](int column) { SortBy(list, column); });
  if (!form.list_menu->entries.empty()) form.OpenMenu(*form.list_menu);
}

}  // namespace tpv::ui
