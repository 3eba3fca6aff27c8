#include "host/start.h"

#include <stdexcept>

#include "adapters/files/program.h"
#include "adapters/files/setting_names.h"
#include "adapters/qt/beep.h"
#include "adapters/qt/native_input.h"
#include "adapters/qt/qt_front_end.h"
#include "adapters/qt/till_style.h"
#include "base/number_text.h"
#include "base/text.h"
#include "host/machine.h"
#include "host/start_screen.h"
#include "host/windows/application.h"

namespace tpv {

namespace {

// Looks at the window once and leaves.
class Onlooker : public ui::Driver {
 public:
  explicit Onlooker(qt::QtFrontEnd& front_end) : front_end_(front_end) {}
  bool Step() override {
    qt::SettleWindows();
    picture = front_end_.Picture();
    return false;
  }
  void OnBox(const ui::MessageBox&) override {}
  QPixmap picture;

 private:
  qt::QtFrontEnd& front_end_;
};

}  // namespace

int Start(const std::string& picture) {
  // Unseen it would hold the store for nobody.
  if (picture.empty() && !CanShowWindows()) {
    throw std::runtime_error("no hay pantalla en la que abrir el punto de venta (DISPLAY)");
  }
  Application application;
  Machine machine;
  const auto percent = ParseInt32(machine.settings.Read(kTpv, "Windows", "TypeSize"));
  if (percent) qt::SetTypeScale(*percent / 100.0);
  qt::QtFrontEnd front_end;
  front_end.SetSettings(machine.settings);
  qt::Beep beep(front_end, [&machine] {
    const std::string command = machine.settings.Read(kTpv, "Sound", "Command");
    return !command.empty() && LaunchProgram(Split(command, " "));
  });
  suite::SuiteFactory objects;
  StartScreen screen(machine.ProgramFor(front_end, objects, beep));
  machine.printers.LookAhead();
  Onlooker onlooker(front_end);
  if (!picture.empty()) front_end.SetDriver(onlooker);
  front_end.ShowModal(screen);
  machine.Finish();
  if (picture.empty()) front_end.ShowNotices();
  const bool kept = picture.empty() || qt::SavePicture(onlooker.picture, picture);
  return kept ? 0 : 1;
}

}  // namespace tpv
