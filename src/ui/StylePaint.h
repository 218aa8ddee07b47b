#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRectF>

// Tools to paint the parts of the style. Lengths are device independent pixels. Straight edges are
// put on whole device pixels at any scale.

namespace ombrelian::ui {

/// The width of the thinnest line that covers whole device pixels; about 1.
qreal hairline(const QPainter& painter);

/// `rect` with its edges moved to whole device pixels.
QRectF snapped(const QPainter& painter, const QRectF& rect);

/// Paints thin lines along `edges` of `rect`, inside of it.
void paintEdges(QPainter& painter, const QRectF& rect, Qt::Edges edges, const QColor& color);

struct Box {
  QColor fill;  ///< not filled if invalid
  QColor line;  ///< not outlined if invalid
  qreal radius = 4;
  qreal lineWidth = 0;  ///< 0 for a hairline
};

/// Paints a box with round corners and its line inside of `rect`.
void paintBox(QPainter& painter, const QRectF& rect, const Box& box);

/// Paints a chevron of `size` in the middle of `rect`.
void paintChevron(QPainter& painter, const QRectF& rect, Qt::ArrowType direction,
                  const QColor& color, qreal size = 7);

/// Paints the mark of a checked box in the middle of `rect`.
void paintTick(QPainter& painter, const QRectF& rect, const QColor& color);

/// `color` with `alpha`, 0 to 1.
QColor withAlpha(QColor color, double alpha);

/// Paints the bar of a percent cell, filled by `fraction`, which is limited to 0 to 1. Every
/// fraction above 0 is visible, and only 1 fills the bar. The bar keeps a margin to the edges of
/// `cell`.
void paintBar(QPainter& painter, const QRectF& cell, double fraction, const QColor& bar,
              const QColor& background);

}  // namespace ombrelian::ui
