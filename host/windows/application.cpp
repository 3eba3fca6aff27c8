#include "host/windows/application.h"

#include <QApplication>
#include <QLocale>
#include <cstdlib>

namespace tpv {

namespace {

bool HasDisplay() {
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

// What the platform without a screen has to say about itself helps nobody.
void DropChatter(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (text.startsWith("This plugin does not support") || text.startsWith("QStandardPaths")) return;
  std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

}  // namespace

Application::Application() {
  if (!HasDisplay()) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  if (qEnvironmentVariable("QT_QPA_PLATFORM") == "offscreen") qInstallMessageHandler(DropChatter);
  application_ = std::make_unique<QApplication>(argc_, argv_);
  QApplication::setApplicationDisplayName("Punto de venta");
  QGuiApplication::setDesktopFileName("tpv");  // the installed entry's icon
  QApplication::setQuitOnLastWindowClosed(false);
  QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
}

Application::~Application() = default;

}  // namespace tpv
