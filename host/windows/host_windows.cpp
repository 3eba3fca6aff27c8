#include "host/host_windows.h"

#include <QApplication>
#include <QThread>

#include "adapters/qt/beep.h"
#include "adapters/qt/qt_front_end.h"
#include "host/windows/application.h"

namespace tpv {

namespace {

using qt::QtFrontEnd;

// Only the thread that made the application's user interface may show anything.
bool HasForeignApplication() {
  QCoreApplication* const application = QCoreApplication::instance();
  if (application == nullptr) return false;
  if (application->thread() != QThread::currentThread()) {
    throw NoWindows("Las ventanas son del hilo que tiene la interfaz del programa");
  }
  if (qobject_cast<QApplication*>(application) == nullptr) {
    throw NoWindows("El programa tiene una aplicación de Qt sin ventanas");
  }
  return true;
}

// The application of ours that the process has, if any.
std::shared_ptr<Application> OurApplication() {
  static std::weak_ptr<Application> ours;
  auto application = ours.lock();
  const bool foreign = HasForeignApplication() && !application;
  if (foreign) return nullptr;
  if (!application) ours = application = std::make_shared<Application>();
  return application;
}

class Windows : public HostWindows {
 public:
  ui::FrontEnd& FrontEnd() override { return front_end_; }
  void ShowNotices() override { front_end_.ShowNotices(); }
  Sound& Loudspeaker() override { return beep_; }

 private:
  const std::shared_ptr<Application> ours_ = OurApplication();
  QtFrontEnd front_end_{ours_ ? QtFrontEnd::Dress::Application : QtFrontEnd::Dress::OwnWindows};
  qt::Beep beep_{front_end_};
};

}  // namespace

std::unique_ptr<HostWindows> OpenHostWindows() { return std::make_unique<Windows>(); }

}  // namespace tpv
