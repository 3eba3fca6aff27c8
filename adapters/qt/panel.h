// The rounded ground with a line around it that cards, fields and buttons stand on.
#pragma once

#include <QColor>
#include <QPainter>

namespace tpv::qt {

struct Panel {
  QColor fill;
  QColor line;
  int width = 1;   // of the line, inside the rectangle
  int radius = 4;
};

void Draw(QPainter& painter, const QRect& rect, const Panel& panel);

}  // namespace tpv::qt
