#include "ui/StylePaint.h"

#include <algorithm>
#include <cmath>

namespace ombrelian::ui {
namespace {

constexpr qreal kBarMarginX = 4;
constexpr qreal kBarMarginY = 3;
constexpr qreal kBarRadius = 2.5;

/// How many device pixels a device independent pixel has.
qreal scaleOf(const QPainter& painter) {
  const QTransform transform = painter.deviceTransform();
  return std::max<qreal>(std::hypot(transform.m11(), transform.m12()), 0.01);
}

/// Turns on smooth edges for its own lifetime.
class Smooth {
 public:
  explicit Smooth(QPainter& painter) : painter_(painter) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
  }
  ~Smooth() { painter_.restore(); }
  Smooth(const Smooth&) = delete;
  Smooth& operator=(const Smooth&) = delete;

 private:
  QPainter& painter_;
};

void strokeLines(QPainter& painter, const QPolygonF& points, const QColor& color, qreal width) {
  const Smooth smooth(painter);
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(points);
}

/// How many of `total` device pixels show `fraction`.
qreal filledPixels(qreal total, double fraction) {
  if (!(fraction > 0) || total < 1) return 0;
  if (fraction >= 1) return total;
  return std::clamp<qreal>(std::round(total * fraction), 1, std::max<qreal>(total - 1, 1));
}

}  // namespace

qreal hairline(const QPainter& painter) {
  const qreal scale = scaleOf(painter);
  return std::max<qreal>(std::floor(scale), 1) / scale;
}

QRectF snapped(const QPainter& painter, const QRectF& rect) {
  const QTransform toDevice = painter.deviceTransform();
  const QRectF device = toDevice.mapRect(rect);
  const QPointF topLeft(std::round(device.left()), std::round(device.top()));
  const QPointF bottomRight(std::round(device.right()), std::round(device.bottom()));
  return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

void paintEdges(QPainter& painter, const QRectF& rect, Qt::Edges edges, const QColor& color) {
  const QRectF box = snapped(painter, rect);
  const qreal thin = hairline(painter);
  if (edges & Qt::TopEdge) painter.fillRect(QRectF(box.x(), box.y(), box.width(), thin), color);
  if (edges & Qt::BottomEdge)
    painter.fillRect(QRectF(box.x(), box.bottom() - thin, box.width(), thin), color);
  if (edges & Qt::LeftEdge) painter.fillRect(QRectF(box.x(), box.y(), thin, box.height()), color);
  if (edges & Qt::RightEdge)
    painter.fillRect(QRectF(box.right() - thin, box.y(), thin, box.height()), color);
}

void paintBox(QPainter& painter, const QRectF& rect, const Box& box) {
  const Smooth smooth(painter);
  QRectF area = snapped(painter, rect);
  qreal radius = box.radius;
  painter.setPen(Qt::NoPen);
  if (box.line.isValid()) {
    const qreal width = box.lineWidth > 0 ? box.lineWidth : hairline(painter);
    painter.setPen(QPen(box.line, width));
    area.adjust(width / 2, width / 2, -width / 2, -width / 2);
    radius -= width / 2;
  }
  painter.setBrush(box.fill.isValid() ? QBrush(box.fill) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(area, radius, radius);
}

void paintChevron(QPainter& painter, const QRectF& rect, Qt::ArrowType direction,
                  const QColor& color, qreal size) {
  const qreal half = size / 2;
  const qreal flat = size / 4;
  QPolygonF points{{-half, -flat}, {0, flat}, {half, -flat}};
  const int turn = direction == Qt::UpArrow      ? 180
                   : direction == Qt::RightArrow ? -90
                   : direction == Qt::LeftArrow  ? 90
                                                 : 0;
  points = QTransform().rotate(turn).map(points);
  points.translate(rect.center());
  strokeLines(painter, points, color, 1.4);
}

void paintTick(QPainter& painter, const QRectF& rect, const QColor& color) {
  QPolygonF points{{-3.6, 0.2}, {-1.1, 2.7}, {3.7, -2.5}};
  points.translate(rect.center());
  strokeLines(painter, points, color, 1.7);
}

QColor withAlpha(QColor color, double alpha) {
  color.setAlphaF(float(alpha));
  return color;
}

void paintBar(QPainter& painter, const QRectF& cell, double fraction, const QColor& bar,
              const QColor& background) {
  const QRectF whole =
      snapped(painter, cell.adjusted(kBarMarginX, kBarMarginY, -kBarMarginX, -kBarMarginY));
  if (whole.width() <= 0 || whole.height() <= 0) return;
  const qreal radius = std::min(kBarRadius, whole.height() / 2);
  const qreal scale = scaleOf(painter);
  QRectF filled = whole;
  filled.setWidth(filledPixels(std::round(whole.width() * scale), fraction) / scale);

  paintBox(painter, whole, {background, {}, radius});
  if (filled.width() <= 0) return;
  painter.save();
  painter.setClipRect(filled, Qt::IntersectClip);
  paintBox(painter, whole, {bar, {}, radius});
  painter.restore();
}

}  // namespace ombrelian::ui
