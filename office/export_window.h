// Writes what the shop has into a file for a spreadsheet.
#pragma once

#include "office/export.h"
#include "office/tools.h"
#include "screen/screen.h"

namespace tpv::office {

class ExportWindow : public Screen {
 public:
  // Both outlive the window.
  ExportWindow(Context& ctx, const Tools& tools);

  void OnLoad() override;

 private:
  ExportKind Kind() const { return static_cast<ExportKind>(cboTipo.index); }
  void ShowDates();
  void Export();

  const Tools& tools_;

  ui::TextBoxes Text1{*this, "Text1"};  // 0 the file, 1 and 2 the days
  ui::ComboBox cboTipo{*this, "cboTipo", "Qué se lleva"};
  ui::Button cmdBuscar{*this, "cmdBuscar", "&Buscar…"};
  ui::Button cmdExportar{*this, "cmdExportar", "&Exportar"};
  ui::Button cmdCerrar{*this, "cmdCerrar", "&Cerrar"};
  ui::Label lblProceso{*this, "lblProceso"};
  ui::Frame Frame1{*this, "Frame1"};
};

}  // namespace tpv::office
