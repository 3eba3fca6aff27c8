// What a shop's invoice records need: who made the program, which installation it is, its
// zone; what is missing, and the buttons that turn them on.
#pragma once

#include "fiscal/setup.h"
#include "office/forms/field_form.h"

namespace tpv::office {

class FiscalSettings : public FieldForm {
 public:
  explicit FiscalSettings(Context& context);

 protected:
  void Fill() override;
  void Store() override;

 private:
  void TurnOn(fiscal::Mode mode);
  void TurnOff();
  void Change(const std::function<void()>& change);
  // What this machine lacks to send, if anything.
  std::vector<std::string> OfMachine() const;
  void ShowState();

  ui::Label lblEstado{*this, "lblEstado"};
  ui::Label lblFalta{*this, "lblFalta"};
  ui::Button cmdPruebas{*this, "cmdPruebas", "Encender en &pruebas"};
  ui::Button cmdReal{*this, "cmdReal", "Encender de &verdad"};
  ui::Button cmdApagar{*this, "cmdApagar", "Apa&gar"};
};

}  // namespace tpv::office
