// Every screen on the screens that shops have: nothing cut, nothing over another,
// nothing to scroll to, whatever the size, the scale and the type.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <filesystem>
#include <set>
#include <sstream>

#include "adapters/files/temporary_folder.h"
#include "adapters/headless/scenario/player.h"
#include "adapters/qt/fit.h"
#include "adapters/qt/native_input.h"
#include "adapters/qt/placing.h"
#include "adapters/qt/qt_operator.h"
#include "adapters/qt/till_style.h"
#include "base/text.h"
#include "host/recorded_till.h"
#include "host/store.h"
#include "host/windows/application.h"
#include "screen/access_keys.h"

namespace tpv::qt {
namespace {

struct Looks {
  const char* scale;  // of the display
  double type;
};

// Bends whatever is on top to each screen and tells what does not fit.
class Tailor : public ui::Driver {
 public:
  Tailor(QtFrontEnd& windows, scenario::Player& player, std::string script)
      : windows_(windows), player_(player), script_(std::move(script)) {}

  bool Step() override {
    const bool at_end = player_.Over();
    if (seen_.insert(WhatIsOpen()).second || at_end) Measure();
    return player_.Step();
  }
  void OnBox(const ui::MessageBox& box) override {
    player_.OnBox(box);
  }
  bool GivesUp(const ui::Progress& progress) override { return player_.GivesUp(progress); }
  const std::set<std::string>& forms() const { return forms_; }

 private:
  std::string WhatIsOpen() const {
    std::string open = windows_.Top() != nullptr ? windows_.Top()->name : std::string();
    const ui::Control* focus = windows_.Top() != nullptr ? windows_.Top()->focus : nullptr;
    if (focus != nullptr && focus->frame != nullptr && focus->frame->name.starts_with("Pagina")) {
      open += "/" + focus->frame->name;
    }
    if (windows_.open_box() != nullptr) open += "/" + windows_.open_box()->box().text;
    return windows_.open_search() != nullptr ? open + "/search" : open;
  }

  // Whoever cannot see the window hears what each control is.
  void Listen() {
    if (windows_.TopWindow() == nullptr) return;
    for (const ui::Control* control : windows_.Top()->InLayoutOrder()) {
      ControlView* view = windows_.TopWindow()->ViewOf(*control);
      if (view == nullptr || !control->CanFocus() || !view->Target()->isVisible()) continue;
      QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(view->Target());
      ASSERT_NE(heard, nullptr) << control->name;
      EXPECT_FALSE(heard->text(QAccessible::Name).isEmpty()) << script_ << ": " << control->name;
      const bool keyed = control->access_key != 0 || ui::MarkedLetter(control->caption) != 0;
      EXPECT_TRUE(keyed || control->caption.empty() || !control->tab_stop) << script_ << ": " << control->name;
      EXPECT_FALSE(heard->text(QAccessible::Description).isEmpty()) << script_ << ": " << control->name;
    }
  }

  void Measure() {
    SettleWindows();
    Listen();
    if (windows_.Top() != nullptr) forms_.insert(windows_.Top()->name);
    for (const QSize screen : {QSize(1024, 768), QSize(1280, 800), QSize(1366, 768), QSize(1920, 1080)}) {
      const QSize room = RoomIn(screen - QSize(0, kPanel));
      QWidget* window = windows_.TopWindow();
      QSize wanted;
      if (windows_.open_box() != nullptr) {
        window = windows_.open_box();
      } else if (windows_.open_search() != nullptr) {
        window = windows_.open_search();
      } else if (window != nullptr) {
        wanted = windows_.TopWindow()->PreferredSize(room);
      }
      if (window == nullptr) return;
      const QSize before = window->size();
      window->resize((wanted.isEmpty() ? before : wanted).boundedTo(room));
      SettleWindows();
      EXPECT_LE(window->width(), room.width()) << script_ << ": " << WhatIsOpen();
      EXPECT_LE(window->height(), room.height()) << script_ << ": " << WhatIsOpen();
      EXPECT_EQ(Misfit(*window), "") << script_ << ": " << WhatIsOpen() << " at "
                                     << screen.width() << "x" << screen.height();
      window->resize(before);
      SettleWindows();
    }
  }

  QtFrontEnd& windows_;
  scenario::Player& player_;
  std::string script_;
  std::set<std::string> seen_;
  std::set<std::string> forms_;
};

class WindowFitTest : public testing::TestWithParam<Looks> {
 protected:
  void SetUp() override {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_SCALE_FACTOR", GetParam().scale, 1);
    SetTypeScale(GetParam().type);
    application_ = std::make_unique<Application>();
  }
  void TearDown() override {
    application_.reset();
    SetTypeScale(1);
    unsetenv("QT_SCALE_FACTOR");
  }

  // Plays the script and adds the forms that it opened.
  void Play(const std::string& script) {
    const TemporaryFolder folder;
    StepClock clock;
    clock.fixed = ParseDayFirst("24/11/2026 20:30:00");
    const auto store = OpenStore(folder / "tienda.db", Contents::Demonstration, clock);
    QtFrontEnd windows;
    RecordedTill till(*store, windows, clock, 1);
    QtOperator hands(windows);
    std::ostringstream transcript;
    scenario::Player player(till.rig, hands, transcript);
    Tailor tailor(windows, player, std::filesystem::path(script).stem().string());
    windows.SetDriver(tailor);
    EXPECT_TRUE(player.Play(scenario::ReadScript(script))) << script << "\n" << transcript.str();
    forms_.insert(tailor.forms().begin(), tailor.forms().end());
  }

  std::set<std::string> forms_;

 private:
  std::unique_ptr<Application> application_;
};

TEST_P(WindowFitTest, EveryScreen) {
  for (const char* folder : {TPV_PICTURE_FOLDER, TPV_TEST_FOLDER "/windows"}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() == ".tpv") Play(entry.path().string());
    }
  }
  const std::set<std::string> all = {
      "frmTpv",         "frmTpv1",            "frmTpvDevoluciones",  "frmTpvAperturaCaja",
      "frmTpvMovCaja",  "frmTpvCierreCaja",   "frmFactuTicket",      "frmTpvDiarioCierres",
      "frmTpvFacturas", "frmTpvDiarioVentas", "frmTpvPendiente",     "frmNuevoCliente",
      "frmArqueo", "frmTpvCuenta",      "frmOficina",          "frmPanel",           "frmRegistros",       "frmSubsanar",
      "frmAlmacenes",   "frmAlmacen",         "frmVendedores",       "frmVendedor",
      "frmClientes",    "frmCliente",         "frmPreciosCliente",   "frmPrecioCliente",
      "frmFormasPago",  "frmFormaPago",       "frmTiposIva",         "frmTipoIva",
      "frmArticulos",   "frmArticulo",        "frmPrecios",          "frmEtiquetas",
      "frmTeclas",      "frmTecla",           "frmParametros",
      "frmInicio",      "frmBienvenida",      "frmAbrirAlmacen",     "frmTiendaCerrada",
      "frmCrearTienda", "frmImportar",        "frmExportar",         "frmAjustes",
      "frmExportarLista", "frmVentasAparcadas", "frmSinImprimir"};
  EXPECT_EQ(forms_, all) << "a screen without a script in docs/screens or tests/windows";
}

INSTANTIATE_TEST_SUITE_P(Screens, WindowFitTest,
                         testing::Values(Looks{"1", 1}, Looks{"1", 1.2}, Looks{"1.25", 1}, Looks{"1.5", 1},
                                         Looks{"2", 1}),
                         [](const auto& looks) {
                           const std::string scale = ReplaceAll(looks.param.scale, ".", "_");
                           return "scale" + scale + (looks.param.type > 1 ? "_larger_type" : "");
                         });

}  // namespace
}  // namespace tpv::qt
