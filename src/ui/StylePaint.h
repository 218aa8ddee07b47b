#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRectF>

// What the parts of the style are painted with. Lengths are device independent pixels; everything
// that has straight edges is put on whole device pixels, at any scale.

namespace ombrelian::ui {

/// The width of the thinnest line that is even: whole device pixels, about 1.
qreal hairline(const QPainter& painter);

/// `rect` with its edges on device pixels.
QRectF snapped(const QPainter& painter, const QRectF& rect);

/// Thin lines along the edges of `rect`, inside of it.
void paintEdges(QPainter& painter, const QRectF& rect, Qt::Edges edges, const QColor& color);

struct Box {
  QColor fill;  ///< invalid: none
  QColor line;  ///< invalid: none
  qreal radius = 4;
  qreal lineWidth = 0;  ///< 0: a hairline
};

/// A box with round corners, its line inside of `rect`.
void paintBox(QPainter& painter, const QRectF& rect, const Box& box);

/// A chevron of `size` in the middle of `rect`.
void paintChevron(QPainter& painter, const QRectF& rect, Qt::ArrowType direction,
                  const QColor& color, qreal size = 7);

/// The mark of a checked box in the middle of `rect`.
void paintTick(QPainter& painter, const QRectF& rect, const QColor& color);

/// `color` with `alpha`, 0 to 1.
QColor withAlpha(QColor color, double alpha);

/// The bar of a percent cell: `fraction` (0 to 1; what lies outside is cut off) of it is filled.
/// Anything above 0 shows, and only 1 fills the bar. It leaves a margin to the edges of `cell`.
void paintBar(QPainter& painter, const QRectF& cell, double fraction, const QColor& bar,
              const QColor& background);

}  // namespace ombrelian::ui
