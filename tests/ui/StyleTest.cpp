#include "ui/Style.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleOptionSlider>
#include <QToolButton>
#include <climits>

#include "ui/Icons.h"
#include "ui/QtText.h"
#include "ui/StylePaint.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
QImage canvas(int width, int height, qreal scale) {
  QImage image(qRound(width * scale), qRound(height * scale), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  return image;
}

/// How many pixels of the row or column through the middle have exactly `color`.
int pixelsOf(const QImage& image, const QColor& color, Qt::Orientation orientation) {
  const bool isRow = orientation == Qt::Horizontal;
  int count = 0;
  for (int i = 0; i < (isRow ? image.width() : image.height()); ++i)
    count += (isRow ? image.pixelColor(i, image.height() / 2)
                    : image.pixelColor(image.width() / 2, i)) == color;
  return count;
}

TEST(StyleTest, ABarIsSharpAndTellsNothingFromLittleAndMuchFromAll) {
  const QColor bar(10, 20, 200);
  const QColor rest(220, 220, 220);
  const auto filled = [&](qreal scale, const QRectF& cell, double fraction) {
    QImage image = canvas(111, 21, scale);
    QPainter painter(&image);
    paintBar(painter, cell, fraction, bar, rest);
    painter.end();
    const int blue = pixelsOf(image, bar, Qt::Horizontal);
    EXPECT_EQ(
        blue + pixelsOf(image, rest, Qt::Horizontal) + pixelsOf(image, Qt::white, Qt::Horizontal),
        image.width())
        << "a smeared edge at " << fraction << ", scale " << scale;
    return blue;
  };
  const QRectF cell(1, 1, 108, 18);
  for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
    const int all = filled(scale, cell, 1);
    EXPECT_NEAR(all, 100 * scale, 1);
    EXPECT_EQ(filled(scale, cell, 7), all);
    for (const double nothing : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
      EXPECT_EQ(filled(scale, cell, nothing), 0);
    EXPECT_EQ(filled(scale, cell, 0.000001), 1);
    EXPECT_EQ(filled(scale, cell, 0.999999), all - 1);
    EXPECT_NEAR(filled(scale, cell, 0.5), all / 2.0, 1);
  }
  for (const QRectF& tiny : {QRectF(0, 0, 8, 20), QRectF(0, 7, 20, 6)})
    EXPECT_EQ(filled(1, tiny, 1), 0);
}

TEST(StyleTest, LinesCoverWholeDevicePixels) {
  for (const auto& [scale, thickness] :
       {std::pair(1.0, 1), {1.25, 1}, {1.5, 1}, {2.0, 2}, {3.0, 3}}) {
    QImage image = canvas(20, 20, scale);
    QPainter painter(&image);
    paintEdges(painter, QRectF(3, 3, 14, 7), Qt::BottomEdge, Qt::black);
    painter.end();
    EXPECT_EQ(pixelsOf(image, Qt::black, Qt::Vertical), thickness) << scale;
    EXPECT_EQ(pixelsOf(image, Qt::white, Qt::Vertical), image.height() - thickness) << scale;
  }
}

TEST(StyleTest, ControlsInARowAreOfOneHeightAndAMenuWidensItsButton) {
  Style style;
  QLineEdit edit;
  QComboBox combo;
  QComboBox editable;
  editable.setEditable(true);
  QSpinBox spin;
  QPushButton button(u"OK"_s);
  edit.setStyle(&style);
  for (QWidget* widget : std::initializer_list<QWidget*>{&combo, &editable, &spin, &button}) {
    widget->setStyle(&style);
    EXPECT_EQ(widget->sizeHint().height(), edit.sizeHint().height())
        << widget->metaObject()->className();
  }
  QMenu menu;
  for (const auto shape : {Qt::ToolButtonIconOnly, Qt::ToolButtonTextBesideIcon}) {
    QToolButton opener;
    opener.setStyle(&style);
    opener.setText(u"Listen und mehr"_s);
    opener.setToolButtonStyle(shape);
    opener.setPopupMode(QToolButton::InstantPopup);
    const int plain = opener.sizeHint().width();
    opener.setMenu(&menu);
    EXPECT_GT(opener.sizeHint().width(), plain) << shape;
  }
}

TEST(StyleTest, ThePartsOfAScrollBarFillItAtEveryPosition) {
  const struct {
    int maximum, page, at;
    bool isVertical;
    int slider;  // the expected position of the slider
  } cases[] = {{100, 10, 0, true, 0},
               {100, 10, 100, false, 200 - 28},
               {1, 1000, 1, true, 1},
               {INT_MAX, 1, INT_MAX / 2, true, 86}};
  const Style style;
  for (const auto& [maximum, page, at, isVertical, slider] : cases) {
    QStyleOptionSlider bar;
    bar.rect = isVertical ? QRect(3, 5, 12, 200) : QRect(3, 5, 200, 12);
    bar.orientation = isVertical ? Qt::Vertical : Qt::Horizontal;
    bar.maximum = maximum;
    bar.pageStep = page;
    bar.sliderPosition = bar.sliderValue = at;
    const auto part = [&, isVertical = isVertical](QStyle::SubControl which) {
      const QRect rect = style.subControlRect(QStyle::CC_ScrollBar, &bar, which, nullptr);
      EXPECT_TRUE(bar.rect.contains(rect) || rect.isEmpty());
      return isVertical ? std::pair(rect.y() - 5, rect.height())
                        : std::pair(rect.x() - 3, rect.width());
    };
    const auto [position, length] = part(QStyle::SC_ScrollBarSlider);
    EXPECT_NEAR(position, slider, 1) << maximum;
    EXPECT_GE(length, 28) << maximum;
    const int pages =
        part(QStyle::SC_ScrollBarSubPage).second + part(QStyle::SC_ScrollBarAddPage).second;
    EXPECT_EQ(pages + length, 200) << maximum;
  }
}

}  // namespace
}  // namespace ombrelian::ui
