#include "adapters/qt/placing.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tpv::qt {

namespace {

constexpr QSize kFrame(8, 36);
QSize pretended(1280, 800);

}  // namespace

bool OnScreen() { return QGuiApplication::platformName() != "offscreen"; }

QSize RoomIn(const QSize& free) { return free - kFrame; }

void PretendScreen(const QSize& screen) { pretended = RoomIn(screen - QSize(0, kPanel)); }

QSize RoomFor(const QWidget& window) {
  return OnScreen() ? RoomIn(window.screen()->availableSize()) : pretended;
}

void PutOver(QWidget& window, const QWidget* caller) {
  if (!OnScreen()) return;
  const QRect free = (caller != nullptr ? *caller : window).screen()->availableGeometry();
  QRect place({}, window.size() + kFrame);
  place.moveCenter(caller != nullptr ? caller->frameGeometry().center() : free.center());
  place.moveLeft(std::clamp(place.left(), free.left(), std::max(free.left(), free.right() + 1 - place.width())));
  place.moveTop(std::clamp(place.top(), free.top(), std::max(free.top(), free.bottom() + 1 - place.height())));
  window.move(place.topLeft());
}

}  // namespace tpv::qt
