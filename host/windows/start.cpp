#include "host/start.h"

#include <QFileDialog>

#include "adapters/qt/qt_front_end.h"
#include "adapters/qt/text.h"
#include "host/machine.h"
#include "host/start_screen.h"
#include "host/windows/application.h"

namespace tpv {

namespace {

std::string ChooseFile(QWidget* over, const std::string& current) {
  return qt::Utf8(QFileDialog::getOpenFileName(over, "Almacén de la tienda", qt::Text(current),
                                               "Almacenes (*.db);;Todos los ficheros (*)"));
}

}  // namespace

int Start() {
  Application application;
  qt::QtFrontEnd front_end;
  Machine machine;
  StartScreen screen(machine, front_end);
  screen.choose_file = [&](const std::string& current) {
    return ChooseFile(front_end.TopWindow(), current);
  };
  front_end.ShowModal(screen);
  return 0;
}

}  // namespace tpv
