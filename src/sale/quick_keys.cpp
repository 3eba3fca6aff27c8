#include "sale/quick_keys.h"

#include "data/retired.h"
#include "platform/database.h"

namespace tpv {

namespace {

constexpr std::size_t kInARow = 3;

void AddRows(std::vector<std::vector<ui::Control*>>& rows, const std::vector<std::unique_ptr<ui::Button>>& buttons) {
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (i % kInARow == 0) rows.emplace_back();
    rows.back().push_back(buttons[i].get());
  }
}

}  // namespace

QuickKeys::QuickKeys(ui::Form& form, std::function<void(const std::string& code)> press)
    : frame(form, "FrameTeclas"), form_(form), press_(std::move(press)) {
  for (std::size_t i = 0; i < kInARow; ++i) {
    page_buttons_.push_back(MakeButton("cmdPagina", i));
    page_buttons_.back()->click = [this, i] { ChoosePage(i); };
  }
  for (std::size_t i = 0; i < kKeysOfPage; ++i) {
    key_buttons_.push_back(MakeButton("cmdTecla", i));
    key_buttons_.back()->click = [this, i] { Press(i); };
  }
  std::vector<std::vector<ui::Control*>> rows;
  AddRows(rows, page_buttons_);
  AddRows(rows, key_buttons_);
  frame.Rows(std::move(rows));
  frame.visible = false;
}

// Touched or clicked: the keyboard goes from field to field as without them.
std::unique_ptr<ui::Button> QuickKeys::MakeButton(const char* name, std::size_t number) {
  auto button = std::make_unique<ui::Button>(form_, std::string(name) + "(" + std::to_string(number) + ")");
  button->tab_stop = false;
  button->visible = false;
  button->stretch = true;
  return button;
}

void QuickKeys::Read(Connection& connection) {
  const std::string shown = page_ < pages_.size() ? pages_[page_].name : std::string();
  pages_.clear();
  const auto rows = connection.Execute(
      "SELECT tec_pagina, tec_texto, ART_Cod FROM Teclas INNER JOIN ART ON art_id = tec_idart WHERE " +
      NotRetired("ART", "art_id") + " ORDER BY tec_pagina, tec_orden, tec_id");
  for (; !rows->Eof(); rows->MoveNext()) {
    std::string page = rows->Field(0).TextOr("");
    if (pages_.empty() || pages_.back().name != page) pages_.push_back({std::move(page), {}});
    pages_.back().keys.push_back({rows->Field(1).TextOr(""), rows->Field(2).TextOr("")});
  }
  if (pages_.size() > kKeyPages) pages_.resize(kKeyPages);
  frame.visible = !pages_.empty();
  std::size_t page = 0;
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    if (pages_[i].name == shown) page = i;
  }
  ShowPage(page);
}

std::size_t QuickKeys::PagesAtOnce() const { return pages_.size() > kInARow ? kInARow - 1 : kInARow; }

void QuickKeys::ChoosePage(std::size_t button) {
  const std::size_t first = page_ / PagesAtOnce() * PagesAtOnce();
  const std::size_t page = first + button;
  const bool goes_on = button == PagesAtOnce();
  ShowPage(goes_on && page >= pages_.size() ? 0 : page);
}

void QuickKeys::ShowPage(std::size_t page) {
  page_ = page;
  const std::size_t first = page_ / PagesAtOnce() * PagesAtOnce();
  for (std::size_t i = 0; i < page_buttons_.size(); ++i) {
    ui::Button& button = *page_buttons_[i];
    const bool goes_on = i == PagesAtOnce();
    // One page alone needs no name.
    button.visible = pages_.size() > 1 && (goes_on || first + i < pages_.size());
    button.emphasis = !goes_on && first + i == page_ ? ui::Emphasis::Strong : ui::Emphasis::Normal;
    if (button.visible) button.caption = goes_on ? "Más páginas" : pages_[first + i].name;
  }
  for (std::size_t i = 0; i < key_buttons_.size(); ++i) {
    ui::Button& button = *key_buttons_[i];
    button.visible = page_ < pages_.size() && i < pages_[page_].keys.size();
    if (button.visible) button.caption = pages_[page_].keys[i].text;
  }
}

void QuickKeys::Press(std::size_t key) {
  const std::string code = pages_.at(page_).keys.at(key).code;
  press_(code);
}

}  // namespace tpv
