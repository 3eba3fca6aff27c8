#include "host/store_choice_window.h"

#include <filesystem>

#include "adapters/files/private_files.h"
#include "base/text.h"
#include "host/chosen_store.h"
#include "host/shops.h"

namespace tpv {

StoreChoiceWindow::StoreChoiceWindow(ui::FrontEnd& front_end) : Window(front_end, "frmAbrirAlmacen") {
  caption = "Abrir un almacén o servidor";
  Text1.Add(0, "Fichero del almacén").columns = 50;
  Text1.Add(1, "Origen de datos o cadena de conexión (ODBC), sin contraseña").columns = 50;
  for (auto& [index, box] : Text1) box->stretch = true;
  lblServidor.caption = "La contraseña va en TPV_ODBC_PASSWORD o en el fichero TPV_ODBC_CREDENTIALS.";
  Frame1.Rows({{&Text1[0], &cmdBuscar}});
  Frame2.Rows({{&Text1[1]}, {&lblServidor}});
  rows = {{&Frame1}, {&Frame2}, {&cmdAceptar, &cmdCancelar}};
  cmdAceptar.emphasis = ui::Emphasis::Strong;
  cmdBuscar.click = [this] { Browse(); };
  cmdAceptar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Close(); };
}

void StoreChoiceWindow::Browse() {
  const std::string path = front_end().ChooseFile({"Almacén de la tienda", "Almacenes (*.db)", DataFolder()});
  if (!path.empty()) Text1[0].text = Shortened(path);
}

// A store is opened here, never made from a typing slip.
void StoreChoiceWindow::Accept() {
  const std::string file = ExpandHome(Trim(Text1[0].text));
  const std::string server = Trim(Text1[1].text);
  if (file.empty() == server.empty()) {
    return Refuse("Escriba el fichero del almacén o la conexión del servidor, uno de los dos", Text1[0]);
  }
  if (server.empty() && !std::filesystem::exists(file)) {
    return Refuse("No existe el almacén «" + Shortened(file) + "»", Text1[0]);
  }
  chosen_ = server.empty() ? std::filesystem::absolute(file).lexically_normal().string()
                           : std::string(kServerStore) + server;
  Close();
}

}  // namespace tpv
