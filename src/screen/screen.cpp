#include "screen/screen.h"

#include <algorithm>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/text.h"
#include "platform/sound.h"
#include "screen/list_exits.h"
#include "screen/manual_pages.h"
#include "screen/unprinted_screen.h"

namespace tpv {

using ui::Key;

Screen::Screen(Context& context, std::string form_name)
    : Form(std::move(form_name)), context_(context) {}

void Screen::OnLoad() {
  toolkit_ = context_.MyBd->CreateFormToolkit();
  toolkit_->SetConexion(context_.Database());
  toolkit_->SetFocusColours(kFocusColour, kPlainColour);
}

bool Screen::OnKeyDown(Key) { return false; }

void Screen::OnKeyUp(Key key) {
  const bool pending = !pending_message.empty();
  switch (key) {
    case Key::Enter:
      pending_message.clear();
      if (!pending) SendTab();
      break;
    case Key::Esc:
      OnEscape();
      break;
    case Key::F1:
      OnF1(focus != nullptr ? focus->tag : std::string());
      break;
    case Key::F5:
      OnF5();
      break;
    case Key::F8:
      pending_message.clear();
      if (name != "frmSinImprimir") ShowUnprinted(context_);
      break;
    default:
      pending_message.clear();
  }
}

char32_t Screen::OnCharacter(ui::TextBox& box, char32_t character) {
  if (box.input == ui::Input::Any) return character < U' ' ? 0 : character;
  const FieldKind kind = box.input == ui::Input::Date ? FieldKind::Date : FieldKind::Number;
  return toolkit_->FiltrarTecla(box.text, character, kind);
}

void Screen::OnEnter(ui::Control& control) {
  auto* box = dynamic_cast<ui::TextBox*>(&control);
  if (box == nullptr) return;
  if (box->input == ui::Input::Date) box->text = ReplaceAll(box->text, "/", "");
  box->back_colour = toolkit_->FocusedColour();
  box->SelectAll();
}

void Screen::OnLeave(ui::Control& control) {
  auto* box = dynamic_cast<ui::TextBox*>(&control);
  if (box == nullptr) return;
  box->back_colour = toolkit_->PlainColour();
  box->selection_length = 0;
  if (box->input == ui::Input::Date && !box->text.empty()) {
    box->text = toolkit_->ValidarFecha(box->text);
  }
}

void Screen::OnScanRefused(const std::string& code) {
  Refuse("El código leído no se puede usar aquí: " + code, nullptr, ui::Icon::Exclamation);
}

void Screen::OnScanUnanswered() { context_.ports.sound.Warn(); }

void Screen::ExportList(ui::List& list, const std::string& path) { tpv::ExportList(context_, list, path); }

void Screen::PrintList(ui::List& list, ui::ListPaper paper) { tpv::PrintList(context_, list, paper); }

bool Screen::Finishes(const std::string& title, const std::function<void(ui::LongWork&)>& work) {
  try {
    ui::LongWork shown(context_.ports.ui, title);
    work(shown);
    return true;
  } catch (const GivenUp&) {
    return false;
  }
}

// Who scans looks at the goods: whatever a code brings up sounds.
ui::Answer Screen::Show(const ui::MessageBox& box) {
  if (scanning) context_.ports.sound.Warn();
  return context_.ports.ui.Show(box);
}

void Screen::Message(std::string text, ui::Icon icon, std::string title) {
  ui::MessageBox box;
  box.text = std::move(text);
  box.icon = icon;
  box.title = std::move(title);
  Show(box);
}

void Screen::Refuse(std::string text, ui::Control* focus_back, ui::Icon icon, std::string title) {
  pending_message = "e";
  Message(std::move(text), icon, std::move(title));
  if (focus_back != nullptr) SetFocus(*focus_back);
}

ui::Answer Screen::Ask(std::string text, ui::Icon icon, ui::Answer default_button,
                       bool with_cancel, std::string title) {
  ui::MessageBox box;
  box.text = std::move(text);
  box.icon = icon;
  box.buttons = {ui::Answer::Yes, ui::Answer::No};
  if (with_cancel) box.buttons.push_back(ui::Answer::Cancel);
  box.default_button = default_button;
  box.title = std::move(title);
  return Show(box);
}

bool Screen::LeaveField() {
  if (focus == nullptr) return true;
  OnLeave(*focus);
  if (focus->left) focus->left();
  if (requested_focus != nullptr) return false;
  OnEnter(*focus);
  return true;
}

void Screen::ShowManual() { context_.ports.ui.ShowManual(ManualPageOf(name)); }

void Screen::SendTab() { tab_sent = true; }

void Screen::MakeDateField(ui::TextBox& box) {
  box.input = ui::Input::Date;
  box.max_length = 10;
}

bool Screen::IsDate(std::string_view text) { return ParseDayFirst(text).has_value(); }

bool Screen::RequireDate(ui::TextBox& box, const char* refusal) {
  if (IsDate(box.text)) return true;
  Refuse(refusal, &box);
  return false;
}

bool Screen::CheckDates(std::initializer_list<ui::TextBox*> boxes) {
  return std::all_of(boxes.begin(), boxes.end(), [this](ui::TextBox* box) {
    return box->text.empty() || RequireDate(*box, "La fecha indicada no es valida");
  });
}

double Screen::Number(const ui::TextBox& box) { return NumberOrZero(box.text); }

}  // namespace tpv
