// What the engine does with a bar-code scanner's keys: they come one by one, go
// where the focus is, and turn out to be a code only with their last.
#include "base/scoped_value.h"
#include "base/text.h"
#include "screen/engine.h"

namespace tpv::ui {

void Engine::RememberFocus(const Form& form) {
  touched_ = {form.focus, {}, 0, 0, -1};
  if (const auto* box = dynamic_cast<const TextBox*>(form.focus)) {
    touched_.text = box->text;
    touched_.selection_start = box->selection_start;
    touched_.selection_length = box->selection_length;
  } else if (const auto* combo = dynamic_cast<const ComboBox*>(form.focus)) {
    touched_.index = combo->index;
  } else if (const auto* list = dynamic_cast<const List*>(form.focus)) {
    touched_.text = list->filter;
  }
}

void Engine::RestoreFocus() {
  if (auto* box = dynamic_cast<TextBox*>(touched_.control)) {
    box->text = touched_.text;
    box->selection_start = touched_.selection_start;
    box->selection_length = touched_.selection_length;
  } else if (auto* combo = dynamic_cast<ComboBox*>(touched_.control)) {
    if (combo->index != touched_.index) SelectRow(*combo, touched_.index);
  } else if (auto* list = dynamic_cast<List*>(touched_.control)) {
    if (list->filter != touched_.text) Narrow(*list, touched_.text);
  }
}

// True when the line end is a scanner's: the form and its fields do not see it.
bool Engine::TakeLineEnd(Form& form, KeyMoment when) {
  if (burst_.Trails(when)) {
    CountOpening();  // its release is nobody's either
    return true;
  }
  const auto code = burst_.LineEnd(when);
  if (!code) return false;
  const auto* box = dynamic_cast<const TextBox*>(form.focus);
  const bool typed = box != nullptr && box == touched_.control && box->input == Input::Any;
  if (!form.TakesScans() && typed) return false;  // a search, a description
  CountOpening();
  if (form.focus == touched_.control) RestoreFocus();
  EnterScanned(form, *code);
  return true;
}

// As if the operator had gone to the field, emptied it, typed and pressed Enter.
void Engine::EnterScanned(Form& form, const std::string& code) {
  const ScopedValue scanning(form.scanning, true);
  if (!form.TakesScans()) return form.OnScanRefused(code);
  TextBox* field = form.FieldForScan();
  Settle(form);
  if (field == nullptr) return;
  FocusOn(*field);
  const bool fits = field->max_length == 0 || Length(code) <= static_cast<std::size_t>(field->max_length);
  if (form.focus != field || !fits) return form.OnScanRefused(code);
  field->SelectAll();
  for (std::size_t at = 0; at < code.size();) TypeCharacter(NextCharacter(code, at));
  PressKey(Key::Enter);
}

void Engine::Scan(std::string_view code) {
  constexpr std::int64_t kBetweenScans = 1000;
  std::int64_t moment = ++scans_ * kBetweenScans;
  for (std::size_t at = 0; at < code.size();) {
    try {
      TypeCharacter(NextCharacter(code, at), ++moment);
    } catch (const ActionRefused&) {
      // A button or a grid has the focus: keys that nothing takes.
    }
  }
  PressKey(Key::Enter, ++moment);
}

void Engine::ScanUnanswered() {
  if (Top() != nullptr) Top()->OnScanUnanswered();
}

}  // namespace tpv::ui
