#include "office/forms/record_list.h"

#include <algorithm>

#include "base/text.h"
#include "data/retired.h"
#include "office/forms/counted.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr std::size_t kShownAtOnce = 200;  // who wants another row types on
constexpr int kRetiredWidth = 1100;

}  // namespace

RecordList::RecordList(Context& context, RecordListing listing)
    : Screen(context, listing.form), listing_(std::move(listing)) {
  caption = listing_.title;
  Text1.Add(0, "Buscar").columns = 30;
  Text1[0].stretch = true;
  lstRegistros.narrowable = false;  // the box above it searches
  for (const ListedColumn& column : listing_.columns) {
    const ui::Align align = column.mask.empty() ? ui::Align::Left : ui::Align::Right;
    lstRegistros.layout.push_back({column.caption, column.mask, column.width, align});
    request_.shown_columns.push_back(request_.shown_columns.size() + 1);
    request_.masks.emplace_back(column.mask);
  }
  const bool retires = *listing_.retires != '\0';
  lstRegistros.layout.push_back({"Retirado", "", kRetiredWidth, ui::Align::Centre, true});
  lstRegistros.selected = [this](int) { ShowRetirement(); };
  chkRetirados.visible = cmdRetirar.visible = retires;
  chkRetirados.click = [this] { Fill(Marked()); };
  cmdNuevo.click = [this] { Open(0); };
  cmdCambiar.click = [this] { Change(); };
  cmdRetirar.click = [this] { RetireOrTakeBack(); };
  cmdCerrar.click = [this] { Close(); };
  rows = {{&Text1[0], &chkRetirados}, {&lstRegistros}, {&lblCuenta},
          {&cmdNuevo, &cmdCambiar, &cmdRetirar, &cmdCerrar}};
}

void RecordList::AddButtons(std::vector<ui::Control*> own_buttons) {
  rows.back().insert(rows.back().end() - 1, own_buttons.begin(), own_buttons.end());
}

void RecordList::OnLoad() {
  Screen::OnLoad();
  Read();
}

// From the search straight into the list.
bool RecordList::OnKeyDown(ui::Key key) {
  if (key != ui::Key::Down || focus != &Text1[0]) return false;
  SetFocus(lstRegistros);
  return true;
}

void RecordList::OnKeyUp(ui::Key key) {
  const bool opens = key == ui::Key::Enter && focus == &lstRegistros && pending_message.empty();
  if (opens) return Change();
  Screen::OnKeyUp(key);
  Narrow();
}

std::vector<std::vector<Variant>> RecordList::Records() {
  std::vector<std::vector<Variant>> all;
  const auto record = Database().Execute(Statement());
  for (; !record->Eof(); record->MoveNext()) all.push_back(record->Fields());
  return all;
}

void RecordList::Read() {
  const ui::WaitCursor wait(*this);
  const std::int32_t marked = Marked();
  const Snapshot snapshot(Database());
  auto now = Rows();
  retired_ = cmdRetirar.visible ? RetiredOf(Database(), listing_.retires) : std::set<std::int32_t>();
  found_.reset();
  request_.rows = std::move(now);
  found_ = std::make_unique<ui::SearchList>(request_);
  found_->Narrow(Text1[0].text);
  narrowed_by_ = Text1[0].text;
  Fill(marked);
}

void RecordList::Narrow() {
  if (Text1[0].text == narrowed_by_) return;
  narrowed_by_ = Text1[0].text;
  found_->Narrow(narrowed_by_);
  Fill(0);
}

// Shows what was found, the mark on that record or on the first.
void RecordList::Fill(std::int32_t marked) {
  lstRegistros.items.clear();
  lstRegistros.current_row = -1;
  lstRegistros.layout.back().hidden = !chkRetirados.checked;
  std::size_t count = 0;
  for (const std::size_t row : found_->Visible()) {
    const std::int32_t id = request_.rows[row][0].ToInt32();
    const bool retired = retired_.contains(id);
    if (retired && !chkRetirados.checked) continue;
    if (++count > kShownAtOnce) continue;
    ui::ListItem item;
    item.tag = id;
    for (std::size_t column = 0; column < request_.shown_columns.size(); ++column) {
      item.cells.push_back(found_->Cell(row, column));
    }
    item.cells.emplace_back(retired ? "Sí" : "");
    if (id == marked) lstRegistros.current_row = static_cast<int>(lstRegistros.items.size());
    lstRegistros.items.push_back(std::move(item));
  }
  if (lstRegistros.current_row < 0 && count > 0) lstRegistros.current_row = 0;
  lblCuenta.caption = count > kShownAtOnce
                          ? "Se ven " + std::to_string(kShownAtOnce) + " de " + std::to_string(count) +
                                ": escriba para buscar"
                          : Counted(count, "registro", "registros");
  cmdCambiar.enabled = cmdRetirar.enabled = count > 0;
  ShowRetirement();
}

std::int32_t RecordList::Marked() const {
  const int row = lstRegistros.current_row;
  return row < 0 ? 0 : lstRegistros.items.at(static_cast<std::size_t>(row)).tag;
}

std::string RecordList::MarkedText(std::size_t column) const {
  const int row = lstRegistros.current_row;
  return row < 0 ? std::string() : lstRegistros.items.at(static_cast<std::size_t>(row)).cells.at(column);
}

void RecordList::ShowRetirement() { cmdRetirar.caption = retired_.contains(Marked()) ? "&Reponer" : "&Retirar"; }

void RecordList::Open(std::int32_t id) {
  const auto form = FormOf(id);
  context().ports.ui.ShowModal(*form);
  if (!form->Stored()) return;
  Read();
  // A new record may not be among those that were searched.
  const auto is_it = [&](const ui::ListItem& item) { return item.tag == form->Id(); };
  const auto at = std::find_if(lstRegistros.items.begin(), lstRegistros.items.end(), is_it);
  if (at != lstRegistros.items.end()) {
    lstRegistros.current_row = static_cast<int>(at - lstRegistros.items.begin());
    ShowRetirement();
  }
}

void RecordList::Change() {
  if (Marked() != 0) Open(Marked());
}

void RecordList::RetireOrTakeBack() {
  const std::int32_t id = Marked();
  if (id == 0) return;
  const bool back = retired_.contains(id);
  const std::string named = "«" + MarkedText(1) + "»";
  const std::string text = back ? "¿Desea reponer " + named + "?"
                                : "¿Desea retirar " + named + "? No se ofrecerá más; lo ya vendido no cambia.";
  if (!Confirm(text, ui::Icon::Question, ui::Answer::No)) return;
  try {
    Transaction transaction(Database());
    const std::string kept = back ? std::string() : Kept(id);
    if (!kept.empty()) return Refuse(kept, nullptr, ui::Icon::Exclamation, "Atención");
    back ? TakeBack(Database(), listing_.retires, id) : Retire(Database(), listing_.retires, id);
    transaction.Commit();
  } catch (const DatabaseError& error) {
    return Refuse("No se ha podido grabar." + std::string(kLineBreak) + error.what(), nullptr, ui::Icon::Critical);
  }
  Read();
}

}  // namespace tpv::office
