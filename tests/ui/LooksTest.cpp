// Tests of painting: icons, the style, the designs, and the detection of a dark desktop.

#include <gmock/gmock.h>

#include <QApplication>
#include <QComboBox>
#include <QDBusVirtualObject>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardPaths>
#include <QStyleOptionSlider>
#include <QTest>
#include <QToolButton>
#include <QToolTip>
#include <QWindow>
#include <climits>
#include <map>
#include <set>

#include "ui/DesktopScheme.h"
#include "ui/Icons.h"
#include "ui/Style.h"
#include "ui/StylePaint.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;

/// Restores the palette of the application at the end of a test. The first palette of the test can
/// be that of a light or of a dark platform.
class PlatformPalette {
 public:
  PlatformPalette() : saved_(QApplication::palette()) {}
  explicit PlatformPalette(bool isDark) : PlatformPalette() {
    QApplication::setPalette(QPalette(isDark ? QColor(30, 30, 30) : QColor(240, 240, 240)));
  }
  ~PlatformPalette() { QApplication::setPalette(saved_); }

 private:
  const QPalette saved_;
};

QImage picture(const QString& name, int side, QIcon::Mode mode = QIcon::Normal) {
  return icon(name.toLatin1().constData())
      .pixmap(QSize(side, side), 1, mode)
      .toImage()
      .convertToFormat(QImage::Format_ARGB32);
}

/// The colours of pixels that are opaque.
std::map<QRgb, int> opaqueColors(const QImage& image) {
  std::map<QRgb, int> colors;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) == 255) ++colors[image.pixel(x, y)];
  return colors;
}

TEST(IconsTest, EveryFileDrawsItsOwnPictureWithTheCommonColoursAlone) {
  icon("app");  // loads the resource in the list below
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

TEST(IconsTest, EachModeHasTheColoursOfThePaletteInForce) {
  const PlatformPalette restored;
  constexpr int kHighContrast = 9;  // a solid selection without an accent
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

TEST(IconsTest, IsPaintedOnWholeDevicePixelsAtAnyScale) {
  for (const qreal scale : {1.0, 1.25, 1.5, 2.0})
    for (const int at : {0, 3, 5}) {  // at some scales these are not whole device pixels
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

QImage canvas(int width, int height, qreal scale) {
  QImage image(qRound(width * scale), qRound(height * scale), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  return image;
}

/// Number of pixels in the middle row or column that have exactly the colour `color`.
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
  QToolButton opener;
  opener.setStyle(&style);
  opener.setText(u"Listen und mehr"_s);
  opener.setPopupMode(QToolButton::InstantPopup);
  const int plain = opener.sizeHint().width();
  opener.setMenu(&menu);
  EXPECT_GT(opener.sizeHint().width(), plain);
}

TEST(StyleTest, ThePartsOfAScrollBarFillItAtEveryPosition) {
  const struct {
    int maximum, page, at;
    bool isVertical;
    int slider;  // expected position of the slider
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

constexpr int kDefault = 7;

TEST(ThemesTest, ContrastIsThatOfTheWebGuidelines) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.478, 0.001);
  EXPECT_NEAR(contrast(Qt::blue, Qt::white), 8.592, 0.001);
}

struct Pair {
  const char* what;
  QColor front;
  QColor back;
  double least;
};

/// The colours of a design that touch each other, and the contrast that they need.
std::vector<Pair> pairsOf(const QPalette& palette) {
  using P = QPalette;
  const auto color = [&](P::ColorRole role, P::ColorGroup group = P::Active) {
    return palette.color(group, role);
  };
  std::vector<Pair> pairs{
      {"window text", color(P::WindowText), color(P::Window), 4.5},
      {"button text", color(P::ButtonText), color(P::Button), 4.5},
      {"tool tip", color(P::ToolTipText), color(P::ToolTipBase), 4.5},
      {"selection", color(P::HighlightedText), color(P::Highlight), 4.5},
      {"inactive selection", color(P::HighlightedText, P::Inactive),
       color(P::Highlight, P::Inactive), 4.5},
      {"default button", color(P::Base), color(P::Link), 4.5},
      {"link on the window", color(P::Link), color(P::Window), 4.5},
      {"hint", color(P::PlaceholderText), color(P::Base), 3},
      {"disabled button", color(P::ButtonText, P::Disabled), color(P::Button), 2.2},
      {"disabled", color(P::WindowText, P::Disabled), color(P::Window), 2.2},
      {"disabled selection", color(P::HighlightedText, P::Disabled),
       color(P::Highlight, P::Disabled), 2.2},
      {"text on a bar", color(P::Text), barColor(palette), 4.5},
      {"text beside a bar", color(P::Text), barBackground(palette), 4.5},
      {"a bar", barColor(palette), barBackground(palette), 1.2},
      {"a bar on a row", barColor(palette), color(P::Base), 1.3},
      {"a selected row", color(P::Highlight), color(P::Base), 1.15},
      {"a control's outline", color(P::Dark), color(P::Window), 1.4},
      {"grid lines", color(P::Mid), color(P::Base), 1.15},
  };
  for (const QColor& band : {color(P::Base), color(P::AlternateBase)}) {
    pairs.push_back({"text", color(P::Text), band, 4.5});
    pairs.push_back({"error", color(P::BrightText), band, 4.5});
    pairs.push_back({"link", color(P::Link), band, 4.5});
    pairs.push_back({"disabled row", color(P::Text, P::Disabled), band, 2.2});
  }
  if (color(P::HighlightedText) == color(P::Text))  // a selection that does not change the text
    pairs.push_back({"selected error", color(P::BrightText), color(P::Highlight), 4.5});
  return pairs;
}

TEST(ThemesTest, EverythingCanBeReadInTenDesignsOfWhichSomeFollowTheDesktop) {
  std::set<std::pair<QRgb, QRgb>> looks;
  int kinds[3] = {};  // always light, as the desktop, always dark
  for (int number = 0; number < kThemes; ++number) {
    ++kinds[makeTheme(number, false).isDark + makeTheme(number, true).isDark];
    for (const bool isDark : {false, true}) {
      const QPalette palette = makeTheme(number, isDark).palette;
      looks.insert({palette.color(QPalette::Window).rgb(), palette.color(QPalette::Link).rgb()});
      for (const Pair& pair : pairsOf(palette))
        EXPECT_GE(contrast(pair.front, pair.back), pair.least)
            << "design " << number << (isDark ? ", dark: " : ", light: ") << pair.what;
    }
  }
  EXPECT_THAT(kinds, ::testing::ElementsAre(2, 6, 2));
  EXPECT_EQ(looks.size(), std::size_t(2 * kThemes - 4));
  EXPECT_TRUE(makeTheme(kDefault, true).isDark);
  for (const int unknown : {-1, kThemes, 255})
    EXPECT_EQ(makeTheme(unknown, true).palette, makeTheme(kDefault, true).palette) << unknown;
}

TEST(ThemesTest, ADesignReachesEveryWidgetEvenWhereTheDesktopColouredSome) {
  const PlatformPalette restored;
  QApplication::setPalette(QPalette(Qt::red), "QMenu");
  const QPalette palette = makeTheme(6, false).palette;
  applyTheme(makeTheme(6, false));
  EXPECT_EQ(QMenu().palette().color(QPalette::Window), palette.color(QPalette::Window));
  EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), palette.color(QPalette::ToolTipBase));
  applyTheme(makeTheme(kDefault, false));
}

QVariant wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

TEST(DesktopSchemeTest, ReadsTheWordOfThePortalHoweverItIsWrapped) {
  EXPECT_EQ(darkFromPortal(1U), std::optional(true));
  EXPECT_EQ(darkFromPortal(wrapped(wrapped(2U))), std::optional(false));
  for (const QVariant& nothing : {QVariant(0U), wrapped(3U), QVariant(), wrapped(u"dark"_s)})
    EXPECT_EQ(darkFromPortal(nothing), std::nullopt) << qPrintable(nothing.toString());
}

TEST(DesktopSchemeTest, WithoutABusThePaletteOfThePlatformDecidesAndIsFollowed) {
  const QDBusConnection none(u"no such bus"_s);
  const PlatformPalette light(false);
  EXPECT_FALSE(DesktopScheme(none).isDark());
  const PlatformPalette dark(true);
  DesktopScheme scheme(none);
  EXPECT_TRUE(scheme.isDark());
  QSignalSpy changed(&scheme, &DesktopScheme::changed);
  const QPalette own = QApplication::palette();

  QWindow windows[2];
  QEvent event(QEvent::ThemeChange);  // the platform of the tests is light at first
  for (QWindow& window : windows)
    QCoreApplication::sendEvent(&window, &event);
  ASSERT_TRUE(changed.count() == 1 || changed.wait(1000));
  EXPECT_FALSE(scheme.isDark());
  EXPECT_EQ(QApplication::palette(), own);
  QTest::qWait(10);
  EXPECT_EQ(changed.count(), 1);
}

/// A portal that answers "Read" like the real one, or with an error.
class FakePortal : public QDBusVirtualObject {
 public:
  static inline const QString kPath = u"/org/freedesktop/portal/desktop"_s;
  static inline const QString kInterface = u"org.freedesktop.portal.Settings"_s;
  static inline const QString kGroup = u"org.freedesktop.appearance"_s;
  static inline const QString kKey = u"color-scheme"_s;

  QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != kInterface || message.member() != u"Read" ||
        message.arguments() != QVariantList{kGroup, kKey})
      return false;
    ++asked;
    connection.send(answer.isValid() ? message.createReply(wrapped(wrapped(answer)))
                                     : message.createErrorReply(QDBusError::Failed, {}));
    return true;
  }

  QVariant answer;
  int asked = 0;
};

/// Starts a private bus with a fake portal.
class PortalTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (QStandardPaths::findExecutable(u"dbus-daemon"_s).isEmpty())
      GTEST_SKIP() << "no dbus-daemon";
    daemon_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    ASSERT_TRUE(daemon_.waitForReadyRead(10000));
    const QString address = QString::fromUtf8(daemon_.readLine().trimmed());
    server_ = QDBusConnection::connectToBus(address, u"server"_s);
    client_ = QDBusConnection::connectToBus(address, u"client"_s);
    ASSERT_TRUE(server_.registerVirtualObject(FakePortal::kPath, &portal_));
    ASSERT_TRUE(server_.registerService(u"org.freedesktop.portal.Desktop"_s));
  }

  void TearDown() override {
    QDBusConnection::disconnectFromBus(u"server"_s);
    QDBusConnection::disconnectFromBus(u"client"_s);
    daemon_.kill();
    daemon_.waitForFinished();
  }

  void tell(const QString& key, uint value) {
    QDBusMessage signal =
        QDBusMessage::createSignal(FakePortal::kPath, FakePortal::kInterface, u"SettingChanged"_s);
    signal << FakePortal::kGroup << key << wrapped(value);
    server_.send(signal);
  }

  FakePortal portal_;
  QProcess daemon_;
  QDBusConnection server_{u"none"_s};
  QDBusConnection client_{u"none"_s};
};

TEST_F(PortalTest, TheAnswerOfThePortalWinsAndIsFollowed) {
  const PlatformPalette light(false);
  portal_.answer = 1U;
  DesktopScheme scheme(client_);
  QSignalSpy changed(&scheme, &DesktopScheme::changed);
  EXPECT_FALSE(scheme.isDark()) << "nothing is waited for";
  ASSERT_TRUE(changed.wait(5000));
  EXPECT_TRUE(scheme.isDark());
  tell(u"accent-color"_s, 2);
  tell(FakePortal::kKey, 1);
  tell(FakePortal::kKey, 2);
  ASSERT_TRUE(changed.wait(5000));
  EXPECT_FALSE(scheme.isDark());
  EXPECT_EQ(changed.count(), 2);

  const PlatformPalette dark(true);
  for (const QVariant& noPreference : {QVariant(0U), QVariant()}) {
    portal_.answer = noPreference;
    portal_.asked = 0;
    DesktopScheme other(client_);
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal_.asked == 1; }));
    QTest::qWait(50);
    EXPECT_TRUE(other.isDark());
  }
}

}  // namespace
}  // namespace ombrelian::ui
