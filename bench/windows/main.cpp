// tpv_windows_bench: what the operator waits for in the windows, each beside the
// same thing in an empty window of the same libraries. On the platform without a
// screen: painting counts, the display does not.
#include <QApplication>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "adapters/files/temporary_folder.h"
#include "adapters/headless/recorders.h"
#include "adapters/qt/native_input.h"
#include "adapters/qt/qt_front_end.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "bench/harness.h"
#include "component/zrtpve.h"
#include "host/store.h"
#include "host/windows/application.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv::bench {
namespace {

constexpr std::size_t kLines = 200;
constexpr const char* kCode = "8436210000011";

// The sale screen in a window, worked from outside until `work` is done.
class WindowTill : private ui::Driver {
 public:
  explicit WindowTill(const std::string& path) : connection_(path, clock_) {
    objects_.SetPorts(ports_);
    component_.context().MyBd =
        std::make_shared<suite::StoreDatabase>(connection_, 1, front_end_, clock_);
    front_end_.SetDriver(*this);
  }
  void Sell(std::function<void()> work) {
    work_ = std::move(work);
    component_.zTpv();
  }
  ui::Form& form() { return *front_end_.Top(); }
  void Focus(const char* field) {
    front_end_.Act([&](ui::Engine& engine) { engine.FocusOn(*form().Find(field)); });
  }
  void Click(const char* button) {
    front_end_.Act([&](ui::Engine& engine) { engine.Click(*form().Find(button)); });
  }

 private:
  bool Step() override {
    qt::SettleWindows();
    if (work_) std::exchange(work_, nullptr)();
    return false;
  }
  void OnBox(const ui::MessageBox&) override {}

  StepClock clock_;
  SqliteConnection connection_;
  qt::QtFrontEnd front_end_;
  RecordingPrinters printers_;
  RecordingDevices devices_;
  MemorySettings settings_;
  RecordingMailer mailer_;
  RecordingReports reports_;
  suite::SuiteFactory objects_;
  Ports ports_{front_end_, printers_, devices_, settings_, clock_, mailer_, reports_, objects_};
  Zrtpve component_{ports_};
  std::function<void()> work_;
};

// An empty window but for one field.
class EmptyWindow {
 public:
  // Over `parent`, so that a modal window does not shut it out.
  explicit EmptyWindow(QWidget* parent = nullptr) : window_(parent, Qt::Window) {
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(&field_);
    window_.resize(1280, 800);
    window_.show();
    window_.activateWindow();
    field_.setFocus();
    qt::SettleWindows();
  }
  void Raise() {
    window_.activateWindow();
    field_.clear();
    qt::SettleWindows();
    if (!field_.hasFocus()) throw std::runtime_error("the empty window gets no keys");
  }

 private:
  QWidget window_;
  QLineEdit field_{&window_};
};

// Qt would paint with the next frame; here it paints at once what has changed.
void Paint() {
  qt::SettleWindows();
  QEvent update(QEvent::UpdateRequest);
  QCoreApplication::sendEvent(QApplication::activeWindow(), &update);
}

void TypeAndPaint(const char* text) {
  qt::SendText(text);
  Paint();
}

void Scan() {
  qt::SendText(kCode);
  qt::SendStroke(qt::StrokeOf(ui::Key::Enter));
  Paint();
}

void OpenTill(const std::string& path) {
  SqliteConnection(path, StepClock()).Execute(
      "INSERT INTO DiaCaj (DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_IdCliPr, "
      "DiaCaj_Tipo, DiaCaj_Modo, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, "
      "DiaCaj_Ret) VALUES (getdate(), 1, 1, 1, 0, 0, 1, 100, 0, 0, 0, 0)");
}

void MeasureKeys(const std::string& path) {
  WindowTill till(path);
  till.Sell([&] {
    auto& form = till.form();
    till.Focus("Text1(0)");
    qt::SendText("1");
    qt::SendStroke(qt::StrokeOf(ui::Key::Enter));
    till.Click("cmdNueva");
    for (std::size_t line = 0; line < kLines; ++line) Scan();
    QWidget* window = QApplication::activeWindow();
    EmptyWindow empty(window);
    const auto back = [&] {
      window->activateWindow();
      qt::SettleWindows();
    };
    const auto& goods = dynamic_cast<ui::Grid&>(*form.Find("dbgVenta"));
    if (goods.rows.size() != kLines) throw std::runtime_error("the ticket has not its lines");
    std::printf("Sale screen with a ticket of %zu lines\n\n", goods.rows.size());
    std::vector<Row> rows;
    rows.push_back(Compare({"a key press to the painted window"}, 200,
                           {back, [] { TypeAndPaint("8"); }},
                           {[&] { empty.Raise(); }, [] { TypeAndPaint("8"); }}));
    back();
    qt::SendStroke({Qt::Key_A, Qt::ControlModifier, ""});
    rows.push_back(Compare({"20 codes scanned to 20 stored and painted lines"}, 5,
                           {back, [] { for (int i = 0; i < 20; ++i) Scan(); }},
                           {[&] { empty.Raise(); }, [] { for (int i = 0; i < 20; ++i) Scan(); }}));
    Print(rows);
  });
}

// Measured from outside: this program started again for one window.
void MeasureStart(const char* program, const std::string& path) {
  const auto start = [&](const std::string& what) {
    const std::string command = std::string(program) + " " + what + " '" + path + "'";
    return [command] {
      if (std::system(command.c_str()) != 0) throw std::runtime_error(command);
    };
  };
  std::printf("\nStart of the program to the painted sale screen, beside an empty window\n\n");
  Print({Compare({"cold start", 1.3}, 15, {{}, start("--sale")}, {{}, start("--empty")})});
}

int Main(int count, char** words) {
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  const std::string what = count == 3 ? words[1] : "";
  const Application application;
  if (what == "--empty") return EmptyWindow(), 0;
  if (what == "--sale") return WindowTill(words[2]).Sell({}), 0;
  const TemporaryFolder folder;
  const std::string path = folder / "tienda.db";
  MakeStore(path, Contents::Demonstration, StepClock());
  OpenTill(path);
  MeasureKeys(path);
  MeasureStart(words[0], path);
  return 0;
}

}  // namespace
}  // namespace tpv::bench

int main(int count, char** words) {
  return tpv::bench::Guarded(count, words, tpv::bench::Main);
}
