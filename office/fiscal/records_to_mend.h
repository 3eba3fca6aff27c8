// The records that the tax agency refused or took with errors: why, what to mend, and the
// button that registers them anew.
#pragma once

#include <string>
#include <vector>

#include "fiscal/record.h"
#include "screen/screen.h"

namespace tpv::office {

class RecordsToMend : public Screen {
 public:
  explicit RecordsToMend(Context& context);

  void OnLoad() override;
  void OnF5() override { Read(); }

 private:
  const fiscal::Record* Current() const;
  void Read();
  void ShowReason();
  void Mend();

  std::vector<fiscal::Record> records_;
  ui::ListView lstRegistros{*this, "lstRegistros"};
  ui::Frame Frame1{*this, "Frame1", "Registros"};
  ui::Label lblMotivo{*this, "lblMotivo"};
  ui::Label lblArreglo{*this, "lblArreglo"};
  ui::TextBoxes Text1{*this, "Text1"};  // 0 the buyer, 1 the buyer's tax number
  ui::Label lblCuenta{*this, "lblCuenta"};
  ui::Button cmdSubsanar{*this, "cmdSubsanar", "&Subsanar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "Cerrar"};
};

}  // namespace tpv::office
