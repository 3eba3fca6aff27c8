// Key strokes and clicks sent to real windows, the way the window system does.
#pragma once

#include <QPoint>
#include <QWidget>

#include "adapters/qt/keys.h"

namespace tpv::qt {

void SendPress(const Stroke& stroke);    // to the active window
void SendRelease(const Stroke& stroke);
void SendStroke(const Stroke& stroke);
void SendText(const QString& text);      // a stroke a character
Stroke StrokeOf(char32_t character);
void SendClick(QWidget& widget, const QPoint& at, bool twice = false);
void SendClick(QWidget& widget);         // in its middle
void SettleWindows();                    // activation, layout and painting that are due

}  // namespace tpv::qt
