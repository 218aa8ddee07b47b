#include "ui/DesktopScheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QWindow>

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
QVariant wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

TEST(DesktopSchemeTest, ReadsTheWordOfThePortalHoweverItIsWrapped) {
  EXPECT_EQ(darkFromPortal(1U), std::optional(true));
  EXPECT_EQ(darkFromPortal(wrapped(wrapped(2U))), std::optional(false));
  for (const QVariant& nothing : {QVariant(0U), wrapped(3U), QVariant(), wrapped(u"dark"_s)})
    EXPECT_EQ(darkFromPortal(nothing), std::nullopt) << qPrintable(nothing.toString());
}

/// Gives the application the palette of a light or a dark platform for the time of a test.
class PlatformPalette {
 public:
  explicit PlatformPalette(bool isDark) : saved_(QApplication::palette()) {
    QApplication::setPalette(QPalette(isDark ? QColor(30, 30, 30) : QColor(240, 240, 240)));
  }
  ~PlatformPalette() { QApplication::setPalette(saved_); }
  PlatformPalette(const PlatformPalette&) = delete;
  PlatformPalette& operator=(const PlatformPalette&) = delete;

 private:
  QPalette saved_;
};

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
  QEvent event(QEvent::ThemeChange);  // the platform of the tests is light by itself
  for (QWindow& window : windows)
    QCoreApplication::sendEvent(&window, &event);
  ASSERT_TRUE(changed.count() == 1 || changed.wait(1000));
  EXPECT_FALSE(scheme.isDark());
  EXPECT_EQ(QApplication::palette(), own);
  QTest::qWait(10);
  EXPECT_EQ(changed.count(), 1);
}

/// A portal that answers "Read" as the real one does, or with an error.
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
