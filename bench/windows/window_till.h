// The sale screen in a window, and an empty window to compare it to.
#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QVBoxLayout>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "adapters/headless/recorders.h"
#include "adapters/qt/native_input.h"
#include "adapters/qt/qt_front_end.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "component/zrtpve.h"
#include "data/till_state.h"
#include "suite/store_database.h"
#include "suite/suite_factory.h"

namespace tpv::bench {

// Worked from outside until `work` is done.
class WindowTill : private ui::Driver {
 public:
  // Opens till 1 when it is closed.
  explicit WindowTill(const std::string& path) : connection_(path, clock_) {
    OpenTill();
    objects_.SetPorts(ports_);
    component_.context().MyBd = database_;
    front_end_.SetDriver(*this);
  }
  void Sell(std::function<void()> work) {
    work_ = std::move(work);
    component_.zTpv();
  }
  // Opens a screen of the component.
  void Open(void (Zrtpve::*screen)(), std::function<void()> work) {
    work_ = std::move(work);
    (component_.*screen)();
  }
  suite::StoreDatabase& database() { return *database_; }
  ui::Form& form() { return *front_end_.Top(); }
  void Focus(const char* field) {
    front_end_.Act([&](ui::Engine& engine) { engine.FocusOn(*form().Find(field)); });
  }
  std::size_t TicketsPrinted() const { return printers_.documents.size(); }
  // Forgets what was printed: the sales to come shall take no memory here.
  void ForgetPaper() {
    printers_.documents.clear();
    printers_.raw_bytes.clear();
    devices_.written.clear();
  }
  void Click(const char* button) {
    front_end_.Act([&](ui::Engine& engine) { engine.Click(*form().Find(button)); });
  }

 private:
  bool Step() override {
    qt::SettleWindows();
    if (work_) {
      std::exchange(work_, nullptr)();
      return false;
    }
    if (form().Find("cmdTicket") == nullptr) return false;
    Click("cmdTicket");  // the checkout
    return true;
  }
  void OnBox(const ui::MessageBox&) override {}

  void OpenTill() {
    if (TillIsOpen(connection_, "1")) return;
    connection_.Execute(
        "INSERT INTO DiaCaj (DiaCaj_Caja, DiaCaj_Tipo, DiaCaj_Modo) VALUES (1, 0, 1)");
  }

  StepClock clock_;
  SqliteConnection connection_;
  qt::QtFrontEnd front_end_;
  RecordingPrinters printers_;
  RecordingDevices devices_;
  MemorySettings settings_;
  RecordingMailer mailer_;
  RecordingReports reports_;
  Silence sound_;
  suite::SuiteFactory objects_;
  Ports ports_{front_end_, printers_, devices_, settings_, clock_,
               mailer_,    reports_,  objects_, sound_};
  Zrtpve component_{ports_};
  const std::shared_ptr<suite::StoreDatabase> database_ =
      std::make_shared<suite::StoreDatabase>(connection_, 1, front_end_, clock_, settings_);
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
inline void Paint() {
  qt::SettleWindows();
  QEvent update(QEvent::UpdateRequest);
  QCoreApplication::sendEvent(QApplication::activeWindow(), &update);
}

inline void TypeAndPaint(const char* text) {
  qt::SendText(text);
  Paint();
}

inline void Press(ui::Key key) {
  qt::SendStroke(qt::StrokeOf(key));
  Paint();
}

inline constexpr const char* kCode = "8436210000011";

inline void Scan() {
  qt::SendText(kCode);
  Press(ui::Key::Enter);
}

}  // namespace tpv::bench
