#include "host/windows/application.h"

#include <QApplication>
#include <QLocale>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "adapters/files/display.h"
#include "adapters/files/pdf/fonts.h"
#include "adapters/qt/till_style.h"

namespace tpv {

namespace {

// What the platform without a screen has to say about itself helps nobody.
void DropChatter(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (text.startsWith("This plugin does not support") || text.startsWith("QStandardPaths")) return;
  std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

// Qt would leave a core behind.
void EndWithoutWindows(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  DropChatter(type, context, text);
  if (type != QtFatalMsg) return;
  std::fputs("tpv: no se pueden abrir ventanas en esta pantalla\n", stderr);
  std::_Exit(1);
}

}  // namespace

bool CanShowWindows() { return HasDisplay() || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"); }

Application::Application() {
  if (!HasDisplay()) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const bool unseen = qEnvironmentVariable("QT_QPA_PLATFORM") == "offscreen";
  const QtMessageHandler usual = qInstallMessageHandler(EndWithoutWindows);
  FindFontsByName(qt::kTillFont);
  application_ = std::make_unique<QApplication>(argc_, argv_);
  qInstallMessageHandler(unseen ? DropChatter : usual);
  QApplication::setApplicationDisplayName("Punto de venta");
  QGuiApplication::setDesktopFileName("tpv");  // the installed entry's icon
  QApplication::setQuitOnLastWindowClosed(false);
  QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
  constexpr int kAfterTheFirstWindow = 300;  // milliseconds
  QTimer::singleShot(kAfterTheFirstWindow, application_.get(), [this] { rules_ = std::thread(&ReadFontRules); });
}

Application::~Application() {
  if (rules_.joinable()) rules_.join();
}

}  // namespace tpv
