// Takes a spreadsheet's articles, customers or stocks into the shop: first what would be
// new, changed and refused, then all of it or nothing.
#pragma once

#include <chrono>
#include <string>

#include "office/import/import.h"
#include "office/tools.h"
#include "screen/screen.h"

namespace tpv::office {

class ImportWindow : public Screen {
 public:
  // Both outlive the window.
  ImportWindow(Context& ctx, const Tools& tools);

  void OnLoad() override;

 private:
  void Browse();
  ImportOrder Order() const;
  void Preview();
  void Import();
  void Show(const ImportReport& report);
  void Forget();
  std::string Waiting() const;

  const Tools& tools_;
  std::chrono::steady_clock::duration looking_{};  // how long the last preview took

  ui::TextBoxes Text1{*this, "Text1"};
  ui::ComboBox cboTipo{*this, "cboTipo", "Qué trae"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar…"};
  ui::Button cmdVer{*this, "cmdVer", "&Ver qué cambiaría"};
  ui::Button cmdImportar{*this, "cmdImportar", "&Importar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "&Cerrar"};
  ui::Label lblResumen{*this, "lblResumen"};
  ui::ListView lstFilas{*this, "lstFilas"};
  ui::Frame Frame1{*this, "Frame1"};
  ui::Frame Frame2{*this, "Frame2", "Líneas del fichero"};
};

}  // namespace tpv::office
