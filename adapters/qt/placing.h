// Where windows stand: inside the room of the screen, over their caller's middle.
#pragma once

#include <QWidget>

namespace tpv::qt {

// Whether there is a display; the platform without one reports a screen that is
// smaller than any shop's.
bool OnScreen();
// What a window has on a screen with this much room free of panels: its frame and
// title take the rest.
QSize RoomIn(const QSize& free);
// Without a display: the screen that windows are to believe in, and its panel.
void PretendScreen(const QSize& screen);
inline constexpr int kPanel = 40;
// The room on this window's screen.
QSize RoomFor(const QWidget& window);
// Puts the window there; no part of it leaves the screen's free room.
void PutOver(QWidget& window, const QWidget* caller);

}  // namespace tpv::qt
