// New prices for many articles: a rule, what it would change, and then the change.
#pragma once

#include <vector>

#include "office/articles/price_change.h"
#include "screen/screen.h"

namespace tpv::office {

class PriceScreen : public Screen {
 public:
  explicit PriceScreen(Context& context);

  void OnLoad() override;

 private:
  enum Field { kSearch, kPercent };

  void Plan();
  // The rule that the fields say; nullopt when refused.
  std::optional<PriceRule> Rule();
  void ShowPlan();
  void ForgetPlan();
  void Tick(int row);
  void Count();
  void Store();

  PriceRule rule_;  // of the plan that is shown
  std::vector<PriceChange> plan_;
  ui::TextBoxes Text1{*this, "Text1"};
  ui::ComboBox cboTipo{*this, "cboTipo", "IVA"};
  ui::ComboBox cboFinal{*this, "cboFinal", "Redondeo"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::Button cmdCalcular{*this, "cmdCalcular", "Ca&lcular"};
  ui::ListView lstPrecios{*this, "lstPrecios"};
  ui::Label lblCuenta{*this, "lblCuenta"};
  ui::Button cmdAplicar{*this, "cmdAplicar", "&Aplicar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

}  // namespace tpv::office
