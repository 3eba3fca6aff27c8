#include "adapters/qt/panel.h"

#include <QPixmap>
#include <QPixmapCache>
#include <cmath>

namespace tpv::qt {

namespace {

void DrawWhole(QPainter& painter, const QRect& rect, const Panel& panel) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(panel.fill);
  painter.setPen(QPen(panel.line, panel.width));
  const qreal inset = panel.width / 2.0;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), panel.radius,
                          panel.radius);
  painter.restore();
}

int CornerOf(const Panel& panel) { return panel.radius + panel.width; }

// The panel as small as it can be: its four corners. Kept by what it looks like.
QPixmap Corners(const Panel& panel, int ratio) {
  const QString key = QString::asprintf("tpv panel %x %x %d %d %d", panel.fill.rgba(),
                                        panel.line.rgba(), panel.width, panel.radius, ratio);
  QPixmap corners;
  if (QPixmapCache::find(key, &corners)) return corners;
  const int side = 2 * CornerOf(panel);
  corners = QPixmap(side * ratio, side * ratio);
  corners.setDevicePixelRatio(ratio);
  corners.fill(Qt::transparent);
  QPainter painter(&corners);
  DrawWhole(painter, {0, 0, side, side}, panel);
  QPixmapCache::insert(key, corners);
  return corners;
}

void DrawCorners(QPainter& painter, const QRect& rect, const Panel& panel, int ratio) {
  const QPixmap corners = Corners(panel, ratio);
  const int size = CornerOf(panel);
  for (const bool right : {false, true}) {
    for (const bool bottom : {false, true}) {
      const QPoint at(right ? rect.right() + 1 - size : rect.left(),
                      bottom ? rect.bottom() + 1 - size : rect.top());
      const QRect part(right ? size : 0, bottom ? size : 0, size, size);
      painter.drawPixmap(QRect(at, QSize(size, size)), corners,
                         QRect(part.topLeft() * ratio, part.size() * ratio));
    }
  }
}

// What lies between the corners: straight lines and the fill.
void DrawBetween(QPainter& painter, const QRect& rect, const Panel& panel) {
  const int corner = CornerOf(panel);
  const int line = panel.width;
  const QRect wide = rect.adjusted(corner, 0, -corner, 0);
  const QRect high = rect.adjusted(0, corner, 0, -corner);
  if (panel.fill.alpha() != 0) {
    painter.fillRect(wide.adjusted(0, line, 0, -line), panel.fill);
    painter.fillRect(QRect(high.left() + line, high.top(), corner - line, high.height()), panel.fill);
    painter.fillRect(QRect(high.right() + 1 - corner, high.top(), corner - line, high.height()),
                     panel.fill);
  }
  painter.fillRect(QRect(wide.left(), wide.top(), wide.width(), line), panel.line);
  painter.fillRect(QRect(wide.left(), wide.bottom() + 1 - line, wide.width(), line), panel.line);
  painter.fillRect(QRect(high.left(), high.top(), line, high.height()), panel.line);
  painter.fillRect(QRect(high.right() + 1 - line, high.top(), line, high.height()), panel.line);
}

}  // namespace

// Smooth painting of a large area costs many times what its few curved pixels do.
// On a screen whose pixels are not whole ones the parts would not join.
void Draw(QPainter& painter, const QRect& rect, const Panel& panel) {
  const qreal ratio = painter.device()->devicePixelRatio();
  const bool whole = ratio == std::floor(ratio) && painter.transform().type() <= QTransform::TxTranslate;
  const int least = 2 * CornerOf(panel);
  if (!whole || rect.width() < least || rect.height() < least) return DrawWhole(painter, rect, panel);
  DrawBetween(painter, rect, panel);
  DrawCorners(painter, rect, panel, static_cast<int>(ratio));
}

}  // namespace tpv::qt
