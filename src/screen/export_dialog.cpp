#include "screen/export_dialog.h"

#include "base/text.h"
#include "platform/table_file.h"

namespace tpv {

FrmExportar::FrmExportar(Context& context, TableFiles& files, const std::string& usual_name)
    : Screen(context, "frmExportarLista"), files_(files) {
  caption = "Exportar lista";
  Text1.Add(0, "Fichero").columns = 60;
  Text1[0].text = files.PathOf(usual_name);
  Text1[0].stretch = true;
  cmdExportar.emphasis = ui::Emphasis::Strong;
  cmdExportar.click = [this] { Choose(); };
  cmdCancelar.click = [this] { Close(); };
  rows = {{&Text1[0]}, {&cmdExportar, &cmdCancelar}};
}

void FrmExportar::Choose() {
  const std::string file = Trim(Text1[0].text);
  if (file.empty()) return Refuse("Indique el fichero", &Text1[0]);
  const std::string path = files_.PathOf(file);
  pending_message = "e";
  if (files_.Exists(path) && !Confirm("Ya existe " + path + ". ¿Desea reemplazarlo?", ui::Icon::Question, ui::Answer::No)) {
    return SetFocus(Text1[0]);
  }
  chosen = path;
  Close();
}

}  // namespace tpv
