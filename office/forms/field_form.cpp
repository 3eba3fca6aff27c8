#include "office/forms/field_form.h"

#include <algorithm>
#include <cmath>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr int kWidestField = 50;  // characters that are shown at once
constexpr int kHelpLines = 2;
constexpr int kHelpColumns = 60;  // that a line of the help has at least
constexpr const char* kTitle = "Atención";

std::string Limits(const FormField& field) {
  return "se admite de " + ToSpanish(field.least) + " a " + ToSpanish(field.most);
}

void RequireWithin(const FormField& field, double value) {
  if (value < field.least || value > field.most) throw FieldFault(field.column, Limits(field));
}

// As ParseNumber, with more decimals than cents and a sign where the field takes one.
double ReadAmount(const FormField& field, const std::string& text) {
  const auto number = ParseNumber(text);
  if (!number) throw FieldFault(field.column, "no es un número; " + Limits(field));
  RequireWithin(field, *number);
  return *number;
}

std::int32_t ReadWhole(const FormField& field, const std::string& text) {
  const auto number = ParseInt32(text);
  if (!number) throw FieldFault(field.column, "no es un número entero; " + Limits(field));
  RequireWithin(field, *number);
  return *number;
}

std::string CodeOf(const std::string& entry) { return entry.substr(0, entry.find(" - ")); }

}  // namespace

FieldForm::FieldForm(Context& context, std::string form_name, std::span<const FormField> fields)
    : Screen(context, std::move(form_name)), fields_(fields) {
  for (std::size_t index = 0; index < fields_.size(); ++index) {
    auto made = Make(index);
    controls_.push_back(made ? made.get() : &Text1[static_cast<int>(index)]);
    if (made) others_.push_back(std::move(made));
  }
  lblAyuda.stretch = true;
  lblAyuda.lines = kHelpLines;
  lblAyuda.columns = kHelpColumns;
  cmdAceptar.emphasis = ui::Emphasis::Strong;
  cmdAceptar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Leave(); };
  DeclareLayout();
}

// Null for a text box, which is its own collection's.
std::unique_ptr<ui::Control> FieldForm::Make(std::size_t index) {
  const FormField& field = fields_[index];
  const std::string number = "(" + std::to_string(index) + ")";
  if (field.asks == Asks::Flag) return std::make_unique<ui::CheckBox>(*this, "Check1" + number, field.caption);
  if (field.asks == Asks::Choice) {
    auto combo = std::make_unique<ui::ComboBox>(*this, "Combo1" + number, field.caption);
    combo->columns = field.width;
    return combo;
  }
  ui::TextBox& box = Text1.Add(static_cast<int>(index), field.caption);
  box.max_length = field.width;
  box.columns = field.shown > 0 ? field.shown : std::min(field.width, kWidestField);
  const bool number_asked = field.asks == Asks::Whole || field.asks == Asks::Amount;
  if (number_asked) box.align = ui::Align::Right;
  if (number_asked && field.least >= 0) box.input = ui::Input::Number;  // no key for a sign
  if (field.asks == Asks::Date) MakeDateField(box);
  return nullptr;
}

void FieldForm::DeclareLayout() {
  std::vector<std::vector<std::vector<ui::Control*>>> groups;
  for (std::size_t index = 0; index < fields_.size(); ++index) {
    const FormField& field = fields_[index];
    if (field.frame != nullptr || groups.empty()) {
      const std::string number = "(" + std::to_string(groups.size()) + ")";
      const char* caption_of_frame = field.frame != nullptr ? field.frame : "";
      frames_.push_back(std::make_unique<ui::Frame>(*this, "Frame1" + number, caption_of_frame));
      groups.emplace_back();
    }
    if (!field.beside || groups.back().empty()) groups.back().emplace_back();
    groups.back().back().push_back(controls_[index]);
  }
  for (std::size_t i = 0; i < groups.size(); ++i) {
    frames_[i]->Rows(std::move(groups[i]));
    rows.push_back({frames_[i].get()});
  }
  rows.push_back({&lblAyuda});
  rows.push_back({&cmdAceptar, &cmdCancelar});
}

void FieldForm::AddRows(std::vector<std::vector<ui::Control*>> own_rows) {
  rows.insert(rows.end() - 2, own_rows.begin(), own_rows.end());
}

void FieldForm::OnLoad() {
  Screen::OnLoad();
  Refill();
}

void FieldForm::Refill() {
  Fill();
  filled_ = Held();
}

void FieldForm::OnEnter(ui::Control& control) {
  Screen::OnEnter(control);
  const auto at = std::find(controls_.begin(), controls_.end(), &control);
  lblAyuda.caption = at == controls_.end() ? "" : fields_[static_cast<std::size_t>(at - controls_.begin())].help;
}

std::size_t FieldForm::IndexOf(std::string_view column) const {
  for (std::size_t index = 0; index < fields_.size(); ++index) {
    if (EqualNoCase(fields_[index].column, column)) return index;
  }
  throw std::out_of_range(name + " no tiene el campo " + std::string(column));
}

ui::Control& FieldForm::ControlOf(std::string_view column) const { return *controls_[IndexOf(column)]; }

void FieldForm::Offer(std::string_view column, ui::Entries entries) {
  auto& combo = dynamic_cast<ui::ComboBox&>(ControlOf(column));
  combo.items = std::move(entries);
  combo.index = -1;
}

std::string FieldForm::Plain(std::string_view column) const {
  const std::size_t index = IndexOf(column);
  const ui::Control& control = *controls_[index];
  if (const auto* check = dynamic_cast<const ui::CheckBox*>(&control)) return check->checked ? "1" : "0";
  if (const auto* combo = dynamic_cast<const ui::ComboBox*>(&control)) return CodeOf(combo->Text());
  std::string text = Trim(dynamic_cast<const ui::TextBox&>(control).text);
  if (fields_[index].asks != Asks::Amount) return text;
  const auto number = ParseNumber(text);
  return number ? ToPlain(*number) : std::string();
}

double FieldForm::Amount(std::string_view column) const {
  return NumberOrZero(dynamic_cast<const ui::TextBox&>(ControlOf(column)).text);
}

std::int32_t FieldForm::Whole(std::string_view column) const { return Int32OrZero(Plain(column)); }

void FieldForm::Show(std::string_view column, const Variant& value) {
  const std::size_t index = IndexOf(column);
  ui::Control& control = *controls_[index];
  if (auto* check = dynamic_cast<ui::CheckBox*>(&control)) {
    check->checked = !value.IsNull() && value.ToBool();
  } else if (auto* combo = dynamic_cast<ui::ComboBox*>(&control)) {
    combo->index = -1;
    const std::string code = value.IsNull() ? std::string() : value.ToPlainText();
    combo->SelectIf([&](std::string_view entry) { return CodeOf(std::string(entry)) == code; });
  } else {
    std::string& text = dynamic_cast<ui::TextBox&>(control).text;
    const Asks asks = fields_[index].asks;
    if (value.IsNull()) {
      text.clear();
    } else if (asks == Asks::Amount) {
      text = ToSpanish(value.ToDouble());
    } else {
      text = asks == Asks::Date ? ToDayFirst(value.ToDate()) : value.ToText();
    }
  }
}

std::vector<std::string> FieldForm::Held() const {
  std::vector<std::string> held;
  for (const FormField& field : fields_) held.push_back(Plain(field.column));
  return held;
}

bool FieldForm::IsChanged(std::string_view column) const {
  const std::size_t index = IndexOf(column);
  return filled_.empty() || Plain(column) != filled_[index];
}

void FieldForm::CheckField(std::size_t index) const {
  const FormField& field = fields_[index];
  const auto* box = dynamic_cast<const ui::TextBox*>(controls_[index]);
  const std::string text = box != nullptr ? Trim(box->text) : Plain(field.column);
  if (text.empty()) {
    if (!field.required) return;
    const bool number = field.asks == Asks::Whole || field.asks == Asks::Amount;
    throw FieldFault(field.column, number                        ? "falta; " + Limits(field)
                                   : field.asks == Asks::Choice ? "falta: elija una entrada de la lista"
                                                                : "falta");
  }
  if (field.asks == Asks::Whole) ReadWhole(field, text);
  if (field.asks == Asks::Amount) ReadAmount(field, text);
  if (field.asks == Asks::Date && !IsDate(text)) {
    throw FieldFault(field.column, "no es una fecha; se admite día/mes/año");
  }
}

void FieldForm::Accept() {
  try {
    for (std::size_t index = 0; index < fields_.size(); ++index) CheckField(index);
    Check();
    Store();
    stored_ = true;
    Close();
  } catch (const FieldFault& fault) {
    if (fault.column().empty()) return Refuse(fault.what(), nullptr, ui::Icon::Exclamation, kTitle);
    const std::string caption_of = fields_[IndexOf(fault.column())].caption;
    Refuse(caption_of + ": " + fault.what(), &ControlOf(fault.column()), ui::Icon::Exclamation, kTitle);
  } catch (const DatabaseError& error) {
    Refuse("No se ha podido grabar." + std::string(kLineBreak) + error.what(), nullptr, ui::Icon::Critical);
  }
}

void FieldForm::Leave() {
  const bool lost = Held() != filled_;
  if (lost && !Confirm("Hay cambios sin grabar. ¿Desea abandonarlos?", ui::Icon::Question, ui::Answer::No)) return;
  Close();
}

}  // namespace tpv::office
