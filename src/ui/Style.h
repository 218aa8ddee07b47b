#pragma once

#include <QProxyStyle>

#include "ui/StylePaint.h"

namespace ombrelian::ui {

/// The look of the window: flat and dense, based on Qt's own portable style, which paints
/// everything that is not overridden here. All colours come from the palette (Themes.h explains its
/// roles), and all lengths are device independent.
class Style : public QProxyStyle {
 public:
  Style();

  int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                  const QWidget* widget = nullptr) const override;
  int styleHint(StyleHint hint, const QStyleOption* option = nullptr,
                const QWidget* widget = nullptr,
                QStyleHintReturn* returnData = nullptr) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl subControl, const QWidget* widget) const override;
  QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                     const QWidget* widget = nullptr) const override;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget = nullptr) const override;
  void drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                      const QPixmap& pixmap) const override;

  using QProxyStyle::polish;
  void polish(QWidget* widget) override;
};

}  // namespace ombrelian::ui
