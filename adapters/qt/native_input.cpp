#include "adapters/qt/native_input.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace tpv::qt {

namespace {

QWindow* KeyWindow() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup->windowHandle();
  return QGuiApplication::focusWindow();
}

void SendKey(QEvent::Type type, const Stroke& stroke) {
  QWindow* window = KeyWindow();
  if (window == nullptr) return;
  QKeyEvent event(type, stroke.code, stroke.modifiers, stroke.text);
  event.setTimestamp(stroke.moment);
  QCoreApplication::sendEvent(window, &event);
}

void SendMouse(QEvent::Type type, QWidget& widget, const QPoint& at, Qt::MouseButtons held) {
  QWindow* window = widget.window()->windowHandle();
  const QPoint local = widget.mapTo(widget.window(), at);
  QMouseEvent event(type, local, window->mapToGlobal(local), Qt::LeftButton, held, Qt::NoModifier);
  QCoreApplication::sendEvent(window, &event);
}

}  // namespace

void SettleWindows() {
  for (int round = 0; round < 2; ++round) QCoreApplication::processEvents();
}

void SendPress(const Stroke& stroke) { SendKey(QEvent::KeyPress, stroke); }
void SendRelease(const Stroke& stroke) { SendKey(QEvent::KeyRelease, stroke); }

void SendStroke(const Stroke& stroke) {
  SendPress(stroke);
  SendRelease(stroke);
}

Stroke StrokeOf(char32_t character) {
  const bool plain = character < 0x7F;
  const int code = plain ? QChar(static_cast<char16_t>(character)).toUpper().unicode()
                         : static_cast<int>(Qt::Key_unknown);
  return {code, Qt::NoModifier, QString::fromUcs4(&character, 1), 0};
}

void SendText(const QString& text) {
  for (const char32_t character : text.toUcs4()) SendStroke(StrokeOf(character));
}

void SendClick(QWidget& widget, const QPoint& at, bool twice) {
  SendMouse(QEvent::MouseButtonPress, widget, at, Qt::LeftButton);
  SendMouse(QEvent::MouseButtonRelease, widget, at, Qt::NoButton);
  if (!twice) return;
  SendMouse(QEvent::MouseButtonDblClick, widget, at, Qt::LeftButton);
  SendMouse(QEvent::MouseButtonRelease, widget, at, Qt::NoButton);
}

void SendClick(QWidget& widget) { SendClick(widget, widget.rect().center()); }

}  // namespace tpv::qt
