#include "ui/Icons.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <map>
#include <set>

#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
/// Restores the palette of the application after each test.
class IconsTest : public ::testing::Test {
 protected:
  ~IconsTest() override { QApplication::setPalette(saved_); }

  static QImage picture(const QString& name, int side, QIcon::Mode mode = QIcon::Normal) {
    return icon(name.toLatin1().constData())
        .pixmap(QSize(side, side), 1, mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
  }

 private:
  QPalette saved_ = QApplication::palette();
};

/// The colours of pixels that are opaque.
std::map<QRgb, int> opaqueColors(const QImage& image) {
  std::map<QRgb, int> colors;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) == 255) ++colors[image.pixel(x, y)];
  return colors;
}

TEST_F(IconsTest, EveryFileDrawsItsOwnPictureWithTheCommonColoursAlone) {
  icon("app");  // loads the resource that is listed below
  const QRegularExpression colors(u"(?:stroke|fill)=\"([^\"]+)\""_s);
  const QStringList common{u"none"_s, u"currentColor"_s, u"#3a7bd5"_s, u"#d13b4a"_s, u"#c98a00"_s};
  std::set<QByteArray> pictures;
  const QFileInfoList files = QDir(u":/icons"_s).entryInfoList();
  ASSERT_GT(files.size(), 80);
  for (const QFileInfo& info : files) {
    const QImage image = picture(info.completeBaseName(), 16);
    EXPECT_TRUE(pictures
                    .insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                       image.sizeInBytes()))
                    .second)
        << qPrintable(info.completeBaseName());
    if (info.completeBaseName() == u"app") continue;
    QFile file(info.filePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto matches = colors.globalMatch(QString::fromUtf8(file.readAll()));
    while (matches.hasNext())
      EXPECT_TRUE(common.contains(matches.next().captured(1)))
          << qPrintable(info.completeBaseName());
  }
}

TEST_F(IconsTest, EachModeHasTheColoursOfThePaletteInForce) {
  constexpr int kHighContrast = 9;  // its selection is solid and takes the accent away
  const QString name = u"rename"_s;
  for (const bool isDark : {false, true})
    for (const int number : {0, 7, kHighContrast}) {
      const QPalette palette = makeTheme(number, isDark).palette;
      applyTheme(makeTheme(number, isDark));
      const QRgb accent = palette.color(QPalette::Link).rgb();
      const QRgb faint = palette.color(QPalette::Disabled, QPalette::WindowText).rgb();
      EXPECT_TRUE(opaqueColors(picture(name, 64)).contains(accent)) << number;
      const auto disabled = opaqueColors(picture(name, 64, QIcon::Disabled));
      EXPECT_TRUE(disabled.size() == 1 && disabled.contains(faint)) << number;
      const auto selected = opaqueColors(picture(name, 64, QIcon::Selected));
      EXPECT_EQ(selected.size() == 1, number == kHighContrast) << number;
      EXPECT_EQ(selected.contains(accent), number != kHighContrast) << number;
    }
}

TEST_F(IconsTest, IsPaintedOnWholeDevicePixelsAtAnyScale) {
  for (const qreal scale : {1.0, 1.25, 1.5, 2.0})
    for (const int at : {0, 3, 5}) {  // at some scales these are no whole device pixels
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
