// Where a list goes that leaves the till as a file.
#pragma once

#include "screen/screen.h"

namespace tpv {

class TableFiles;

class FrmExportar : public Screen {
 public:
  // The files outlive the dialog.
  FrmExportar(Context& context, TableFiles& files, const std::string& usual_name);

  std::string chosen;  // the whole path; "" when given up

  ui::TextBoxes Text1{*this, "Text1"};
  ui::Button cmdExportar{*this, "cmdExportar", "&Exportar"};
  ui::Button cmdCancelar{*this, "cmdCancelar", "&Cancelar"};

 private:
  void Choose();

  TableFiles& files_;
};

}  // namespace tpv
