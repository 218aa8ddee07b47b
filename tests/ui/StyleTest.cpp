#include "ui/Style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <climits>

#include "ui/Icons.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

QImage canvas(int width, int height, qreal scale) {
  QImage image(qRound(width * scale), qRound(height * scale), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  return image;
}

/// How many pixels of the row `y` (device pixels) have exactly `color`.
int pixelsOf(const QImage& image, int y, const QColor& color) {
  int count = 0;
  for (int x = 0; x < image.width(); ++x)
    count += image.pixelColor(x, y) == color;
  return count;
}

TEST(StyleTest, ABarIsSharpAndTellsNothingFromLittleAndMuchFromAll) {
  const QColor bar(10, 20, 200);
  const QColor rest(220, 220, 220);
  for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
    const auto filled = [&](double fraction) {
      QImage image = canvas(111, 21, scale);
      QPainter painter(&image);
      paintBar(painter, QRectF(1, 1, 108, 18), fraction, bar, rest);
      painter.end();
      const int middle = image.height() / 2;
      const int blue = pixelsOf(image, middle, bar);
      EXPECT_EQ(blue + pixelsOf(image, middle, rest) + pixelsOf(image, middle, Qt::white),
                image.width())
          << "a smeared edge at " << fraction << ", scale " << scale;
      return blue;
    };
    const int all = filled(1);
    EXPECT_NEAR(all, 100 * scale, 1);
    EXPECT_EQ(filled(7), all);
    EXPECT_EQ(filled(0), 0);
    EXPECT_EQ(filled(-1), 0);
    EXPECT_EQ(filled(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(filled(0.000001), 1);
    EXPECT_EQ(filled(0.999999), all - 1);
    EXPECT_NEAR(filled(0.5), all / 2.0, 1);
  }
}

TEST(StyleTest, NoBarFitsIntoATinyCell) {
  QImage image = canvas(20, 20, 1);
  const QImage before = image;
  QPainter painter(&image);
  paintBar(painter, QRectF(0, 0, 8, 20), 1, Qt::black, Qt::gray);
  paintBar(painter, QRectF(0, 0, 20, 6), 1, Qt::black, Qt::gray);
  painter.end();
  EXPECT_EQ(image, before);
}

TEST(StyleTest, LinesCoverWholeDevicePixels) {
  struct Case {
    qreal scale;
    int thickness;  // device pixels
  };
  for (const Case& line : {Case{1, 1}, Case{1.25, 1}, Case{1.5, 1}, Case{2, 2}, Case{3, 3}}) {
    QImage image = canvas(20, 20, line.scale);
    QPainter painter(&image);
    paintEdges(painter, QRectF(3, 3, 7, 7), Qt::BottomEdge, Qt::black);
    painter.end();
    const int x = qRound(6 * line.scale);
    int black = 0;
    int white = 0;
    for (int y = 0; y < image.height(); ++y) {
      black += image.pixelColor(x, y) == QColor(Qt::black);
      white += image.pixelColor(x, y) == QColor(Qt::white);
    }
    EXPECT_EQ(black, line.thickness) << line.scale;
    EXPECT_EQ(black + white, image.height()) << line.scale;
  }
}

TEST(StyleTest, ControlsInARowAreOfOneHeight) {
  Style style;
  QLineEdit edit;
  QComboBox combo;
  QComboBox editable;
  editable.setEditable(true);
  QSpinBox spin;
  QPushButton button(QStringLiteral("OK"));
  for (QWidget* widget : std::initializer_list<QWidget*>{&edit, &combo, &editable, &spin, &button})
    widget->setStyle(&style);
  for (const QWidget* widget :
       std::initializer_list<const QWidget*>{&combo, &editable, &spin, &button})
    EXPECT_EQ(widget->sizeHint().height(), edit.sizeHint().height())
        << widget->metaObject()->className();
}

struct Scrolled {
  int maximum;
  int page;
  int at;
  Qt::Orientation orientation;
};

TEST(StyleTest, ThePartsOfAScrollBarFillItAtEveryPosition) {
  const Style style;
  for (const Scrolled& scrolled :
       {Scrolled{100, 10, 0, Qt::Vertical}, Scrolled{100, 10, 100, Qt::Horizontal},
        Scrolled{1, 1000, 1, Qt::Vertical}, Scrolled{INT_MAX, 1, INT_MAX / 2, Qt::Vertical},
        Scrolled{INT_MAX, INT_MAX, INT_MAX, Qt::Horizontal}, Scrolled{0, 10, 0, Qt::Vertical}}) {
    QStyleOptionSlider bar;
    const bool isVertical = scrolled.orientation == Qt::Vertical;
    bar.rect = isVertical ? QRect(0, 0, 12, 200) : QRect(0, 0, 200, 12);
    bar.orientation = scrolled.orientation;
    bar.maximum = scrolled.maximum;
    bar.pageStep = scrolled.page;
    bar.sliderPosition = bar.sliderValue = scrolled.at;
    const auto length = [&](QStyle::SubControl part) {
      const QRect rect = style.subControlRect(QStyle::CC_ScrollBar, &bar, part, nullptr);
      EXPECT_TRUE(bar.rect.contains(rect) || rect.isEmpty());
      return isVertical ? rect.height() : rect.width();
    };
    EXPECT_GE(length(QStyle::SC_ScrollBarSlider), 28) << scrolled.maximum;
    EXPECT_EQ(length(QStyle::SC_ScrollBarSubPage) + length(QStyle::SC_ScrollBarSlider) +
                  length(QStyle::SC_ScrollBarAddPage),
              200)
        << scrolled.maximum;
  }
}

TEST(StyleTest, AButtonWithAMenuHasRoomForItsLabelAndTheChevron) {
  Style style;
  QMenu menu;
  for (const auto shape : {Qt::ToolButtonIconOnly, Qt::ToolButtonTextBesideIcon,
                           Qt::ToolButtonTextUnderIcon, Qt::ToolButtonTextOnly}) {
    QToolButton button;
    button.setStyle(&style);
    button.setIcon(icon("lists"));
    button.setText(QStringLiteral("Listen und mehr"));
    button.setToolButtonStyle(shape);
    button.setPopupMode(QToolButton::InstantPopup);
    const int plain = button.sizeHint().width();
    button.setMenu(&menu);
    EXPECT_GT(button.sizeHint().width(), plain) << shape;
  }
}

TEST(StyleTest, ABarWithoutAnEndMovesUntilTheEndIsKnown) {
  Style style;
  QProgressBar bar;
  bar.setStyle(&style);
  bar.setRange(0, 0);
  bar.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar));
  const auto isMoving = [&] { return !bar.findChildren<QTimer*>().isEmpty(); };
  const QImage before = bar.grab().toImage();
  EXPECT_TRUE(QTest::qWaitFor([&] { return bar.grab().toImage() != before; }));
  EXPECT_EQ(bar.findChildren<QTimer*>().size(), 1);
  bar.setRange(0, 10);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !isMoving(); }));
}

/// A tree of two rows below one, the second of them selected, under a design.
class TreeTest : public ::testing::TestWithParam<int> {
 protected:
  TreeTest() : theme_(makeTheme(GetParam(), false)) {
    tree.setStyle(&style_);
    tree.setPalette(theme_.palette);
    tree.setAllColumnsShowFocus(true);
    tree.setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree.setColumnCount(2);
    auto* root = new QTreeWidgetItem(&tree, {QStringLiteral("a"), QStringLiteral("b")});
    for (int i = 0; i < 2; ++i)
      new QTreeWidgetItem(root, {QString(), QString()});
    root->setExpanded(true);
    tree.resize(300, 200);
    tree.show();
    tree.activateWindow();
    tree.setFocus();
    QApplication::setActiveWindow(&tree);
    QCoreApplication::processEvents();
    root->child(0)->setSelected(true);
    tree.selectionModel()->setCurrentIndex(tree.model()->index(1, 0, tree.model()->index(0, 0)),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }

  /// The colour at `x` of the viewport, `dy` below the top of child `row`.
  QColor at(int row, int x, int dy) {
    const QRect rect = tree.visualRect(tree.model()->index(row, 0, tree.model()->index(0, 0)));
    return tree.viewport()->grab().toImage().pixelColor(x, rect.top() + dy);
  }

  QTreeWidget tree;

 private:
  Style style_;
  const Theme theme_;
};

TEST_P(TreeTest, TheCurrentRowStandsOutAmongSelectedOnesOverItsWholeWidth) {
  ASSERT_TRUE(tree.hasFocus());
  for (const int x : {1, 10, 60, 250})
    EXPECT_NE(at(0, x, 0), at(1, x, 0)) << x;
  EXPECT_NE(at(0, 1, 8), at(1, 1, 8)) << "the mark";
  for (const int x : {10, 60, 250})
    EXPECT_EQ(at(0, x, 8), at(1, x, 8)) << x;
}

INSTANTIATE_TEST_SUITE_P(SoftAndSolidSelection, TreeTest, ::testing::Values(7, 9));

}  // namespace
}  // namespace ombrelian::ui
