// The records that the tax agency refused: why, what to mend, and the button that registers
// them anew.
#pragma once

#include <string>
#include <vector>

#include "fiscal/record.h"
#include "screen/screen.h"

namespace tpv::office {

class RejectedRecords : public Screen {
 public:
  explicit RejectedRecords(Context& context);

  void OnLoad() override;
  void OnF5() override { Read(); }

 private:
  void Read();
  void ShowReason();
  void Mend();

  std::vector<fiscal::Record> records_;
  ui::ListView lstRechazados{*this, "lstRechazados"};
  ui::Label lblMotivo{*this, "lblMotivo"};
  ui::Label lblArreglo{*this, "lblArreglo"};
  ui::TextBoxes Text1{*this, "Text1"};  // 0 the buyer, 1 the buyer's tax number
  ui::Label lblCuenta{*this, "lblCuenta"};
  ui::Button cmdSubsanar{*this, "cmdSubsanar", "&Subsanar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

}  // namespace tpv::office
