#include "ui/Icons.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <set>

#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

/// The palette of the application comes back after each test.
class IconsTest : public ::testing::Test {
 protected:
  IconsTest() { icon("app"); }  // loads the resource that is listed below
  ~IconsTest() override { QApplication::setPalette(saved_); }

  static QStringList names() {
    QStringList names;
    for (const QFileInfo& file : QDir(QStringLiteral(":/icons")).entryInfoList())
      names << file.completeBaseName();
    return names;
  }

  static QImage picture(const QString& name, int side, QIcon::Mode mode = QIcon::Normal) {
    return icon(name.toLatin1().constData())
        .pixmap(QSize(side, side), 1, mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
  }

 private:
  QPalette saved_ = QApplication::palette();
};

int inkedPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += qAlpha(image.pixel(x, y)) > 100;
  return count;
}

bool touchesEdge(const QImage& image) {
  for (int i = 0; i < image.width(); ++i)
    for (const QPoint at :
         {QPoint(i, 0), QPoint(i, image.height() - 1), QPoint(0, i), QPoint(image.width() - 1, i)})
      if (qAlpha(image.pixel(at)) > 200) return true;
  return false;
}

/// The colours of nearly opaque pixels.
std::set<QRgb> opaqueColors(const QImage& image) {
  std::set<QRgb> colors;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) == 255) colors.insert(image.pixel(x, y));
  return colors;
}

TEST_F(IconsTest, EveryFileDrawsWithinItsSquareAndWithTheCommonColoursAlone) {
  const QRegularExpression colors(QStringLiteral("(?:stroke|fill)=\"([^\"]+)\""));
  const QStringList common{QStringLiteral("none"), QStringLiteral("currentColor"),
                           QStringLiteral("#3a7bd5"), QStringLiteral("#d13b4a"),
                           QStringLiteral("#c98a00")};
  ASSERT_GT(names().size(), 80);
  for (const QString& name : names()) {
    const QImage image = picture(name, 48);
    EXPECT_GT(inkedPixels(image), 40) << qPrintable(name);
    EXPECT_FALSE(touchesEdge(image)) << qPrintable(name);
    if (name == u"app") continue;
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto matches = colors.globalMatch(QString::fromUtf8(file.readAll()));
    while (matches.hasNext())
      EXPECT_TRUE(common.contains(matches.next().captured(1))) << qPrintable(name);
  }
}

TEST_F(IconsTest, NoTwoLookTheSame) {
  const QStringList all = names();
  for (int i = 0; i < all.size(); ++i)
    for (int k = i + 1; k < all.size(); ++k)
      EXPECT_NE(picture(all[i], 16), picture(all[k], 16))
          << qPrintable(all[i]) << " " << qPrintable(all[k]);
}

TEST_F(IconsTest, EachModeHasTheColoursOfThePaletteInForce) {
  for (const bool isDark : {false, true})
    for (int number = 0; number < kThemes; ++number) {
      const Theme theme = makeTheme(number, isDark);
      applyTheme(theme);
      const QRgb accent = theme.palette.color(QPalette::Link).rgb();
      const QRgb faint = theme.palette.color(QPalette::Disabled, QPalette::WindowText).rgb();
      EXPECT_EQ(opaqueColors(picture(QStringLiteral("rename"), 64)).count(accent), 1U) << number;
      EXPECT_EQ(opaqueColors(picture(QStringLiteral("rename"), 64, QIcon::Disabled)),
                std::set<QRgb>{faint})
          << number;
    }
}

TEST_F(IconsTest, ASolidSelectionTakesTheAccentAway) {
  constexpr int kHighContrast = 9;
  for (const bool isDark : {false, true}) {
    const Theme theme = makeTheme(kHighContrast, isDark);
    applyTheme(theme);
    EXPECT_EQ(opaqueColors(picture(QStringLiteral("rename"), 64, QIcon::Selected)),
              std::set<QRgb>{theme.palette.color(QPalette::HighlightedText).rgb()});
  }
}

/// A scale, and a place whose device pixels are not whole at that scale.
TEST_F(IconsTest, IsPaintedOnWholeDevicePixelsAtAnyScale) {
  for (const qreal scale : {1.0, 1.25, 1.5, 2.0})
    for (const int at : {0, 3, 5}) {
      const QPixmap exact = icon("save").pixmap(QSize(16, 16), scale);
      const int side = qRound(16 * scale);
      ASSERT_EQ(exact.size(), QSize(side, side));

      QImage canvas(96, 96, QImage::Format_ARGB32_Premultiplied);
      canvas.fill(Qt::transparent);
      canvas.setDevicePixelRatio(scale);
      QPainter painter(&canvas);
      icon("save").paint(&painter, QRect(at, at, 16, 16));
      painter.end();

      canvas.setDevicePixelRatio(1);
      QImage expected = exact.toImage();
      expected.setDevicePixelRatio(1);
      const int corner = qRound(at * scale + (16 * scale - side) / 2);
      EXPECT_EQ(canvas.copy(corner, corner, side, side), expected) << scale << " " << at;
    }
}

}  // namespace
}  // namespace ombrelian::ui
