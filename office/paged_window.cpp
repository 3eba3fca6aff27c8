#include "office/paged_window.h"

namespace tpv::office {

ui::Frame& PagedWindow::AddPage(const std::string& title) {
  const std::size_t number = pages_.size();
  const std::string index = "(" + std::to_string(number) + ")";
  pages_.push_back({std::make_unique<ui::Button>(*this, "cmdPagina" + index, title),
                    std::make_unique<ui::Frame>(*this, "Pagina" + index)});
  Page& page = pages_.back();
  page.button->stretch = true;
  page.button->click = [this, number] { ShowPage(number); };
  return *page.frame;
}

void PagedWindow::LayOutPages(std::vector<ui::Control*> below) {
  rows.emplace_back();
  for (const Page& page : pages_) rows.front().push_back(page.button.get());
  for (const Page& page : pages_) rows.push_back({page.frame.get()});
  rows.push_back(std::move(below));
  ShowPage(0);
}

void PagedWindow::ShowPage(std::size_t number) {
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    pages_[i].frame->visible = i == number;
    pages_[i].button->emphasis = i == number ? ui::Emphasis::Strong : ui::Emphasis::Normal;
  }
  for (const auto& row : pages_.at(number).frame->rows) {
    for (ui::Control* control : row) {
      if (!control->CanFocus()) continue;
      return SetFocus(*control);
    }
  }
}

void PagedWindow::GoTo(ui::Control& control) {
  const ui::Frame* outermost = control.frame;
  while (outermost != nullptr && outermost->frame != nullptr) outermost = outermost->frame;
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    if (pages_[i].frame.get() == outermost) ShowPage(i);
  }
  SetFocus(control);
}

}  // namespace tpv::office
