// A form of declared fields: shows what each is for, checks it, and stores them all or
// none. Field i of the table is Text1(i), Combo1(i) or Check1(i).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "office/forms/form_field.h"
#include "screen/screen.h"

namespace tpv::office {

class FieldForm : public Screen {
 public:
  // The fields outlive the form.
  FieldForm(Context& context, std::string form_name, std::span<const FormField> fields);

  // Whether the operator accepted and all was stored.
  bool Stored() const { return stored_; }

  void OnLoad() override;
  void OnEnter(ui::Control& control) override;
  void OnEscape() override { Leave(); }
  void OnCloseBox() override { Leave(); }

 protected:
  // Fills the fields when the form opens; what they hold then counts as unchanged.
  virtual void Fill() {}
  // Fills them again; what they hold then counts as unchanged.
  void Refill();
  // What the fields' table cannot say. Throws FieldFault.
  virtual void Check() {}
  // Stores all or nothing. Throws FieldFault and DatabaseError.
  virtual void Store() = 0;

  // A field by its column; throws std::out_of_range for one that the form has not.
  ui::Control& ControlOf(std::string_view column) const;
  void Offer(std::string_view column, ui::Entries entries);  // of a choice
  // What the field holds, "" for nothing: a number with a decimal point, a choice's
  // code, "1" or "0" of a flag, a date as dd/mm/yyyy.
  std::string Plain(std::string_view column) const;
  double Amount(std::string_view column) const;      // 0 for nothing
  std::int32_t Whole(std::string_view column) const;  // 0 for nothing
  // Shows a stored value; null empties the field.
  void Show(std::string_view column, const Variant& value);
  bool IsChanged(std::string_view column) const;
  // Rows of the screen's own, between the fields and the buttons.
  void AddRows(std::vector<std::vector<ui::Control*>> own_rows);

  std::span<const FormField> fields() const { return fields_; }

  ui::Button cmdAceptar{*this, "cmdAceptar", "&Aceptar"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "Cancelar"};

 private:
  std::size_t IndexOf(std::string_view column) const;
  std::unique_ptr<ui::Control> Make(std::size_t index);
  void DeclareLayout();
  void CheckField(std::size_t index) const;
  void Accept();
  void Leave();
  std::vector<std::string> Held() const;

  std::span<const FormField> fields_;
  ui::Label lblAyuda{*this, "lblAyuda"};
  ui::TextBoxes Text1{*this, "Text1"};
  std::vector<std::unique_ptr<ui::Control>> others_;  // combos and check boxes
  std::vector<ui::Control*> controls_;                // of the fields
  std::vector<std::unique_ptr<ui::Frame>> frames_;
  std::vector<std::string> filled_;  // what the fields held when the form opened
  bool stored_ = false;
};

}  // namespace tpv::office
