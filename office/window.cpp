#include "office/window.h"

#include "screen/manual_pages.h"

namespace tpv::office {

Window::Window(ui::FrontEnd& front_end, std::string form_name)
    : Form(std::move(form_name)), front_end_(front_end) {}

void Window::OnKeyUp(ui::Key key) {
  if (key == ui::Key::Enter) tab_sent = true;
  if (key == ui::Key::Esc) OnEscape();
  if (key == ui::Key::F1) front_end_.ShowManual(ManualPageOf(name));
}

void Window::OnEnter(ui::Control& control) {
  if (auto* box = dynamic_cast<ui::TextBox*>(&control)) box->SelectAll();
}

ui::Answer Window::Show(const std::string& text, ui::Icon icon, bool question) {
  ui::MessageBox box;
  box.text = text;
  box.icon = icon;
  box.title = caption;
  if (question) {
    box.buttons = {ui::Answer::Yes, ui::Answer::No};
    box.default_button = ui::Answer::No;
  }
  return front_end_.Show(box);
}

void Window::Tell(const std::string& text, ui::Icon icon) { Show(text, icon, false); }

void Window::Refuse(const std::string& text, ui::Control& control) {
  Tell(text, ui::Icon::Exclamation);
  SetFocus(control);
}

bool Window::Confirm(const std::string& text) {
  return Show(text, ui::Icon::Question, true) == ui::Answer::Yes;
}

void Window::Spread(ui::Frame& frame) {
  for (const auto& row : frame.rows) {
    for (ui::Control* button : row) button->stretch = true;
  }
}

}  // namespace tpv::office
