#include "ui/DesktopScheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QPalette>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QWindow>

namespace ombrelian::ui {
namespace {

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");

QVariant wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

TEST(DesktopSchemeTest, ReadsTheWordOfThePortalHoweverItIsWrapped) {
  EXPECT_EQ(darkFromPortal(1U), std::optional(true));
  EXPECT_EQ(darkFromPortal(wrapped(1U)), std::optional(true));
  EXPECT_EQ(darkFromPortal(wrapped(wrapped(2U))), std::optional(false));
  for (const QVariant& nothing : {QVariant(0U), wrapped(3U), QVariant(), QVariant(QString()),
                                  wrapped(QStringLiteral("dark"))})
    EXPECT_EQ(darkFromPortal(nothing), std::nullopt) << qPrintable(nothing.toString());
}

/// A palette as a platform might give it, for the time of a test.
class PlatformPalette {
 public:
  explicit PlatformPalette(QColor window) : saved_(QApplication::palette()) {
    QApplication::setPalette(QPalette(window));
  }
  ~PlatformPalette() { QApplication::setPalette(saved_); }
  PlatformPalette(const PlatformPalette&) = delete;
  PlatformPalette& operator=(const PlatformPalette&) = delete;

 private:
  QPalette saved_;
};

TEST(DesktopSchemeTest, WithoutABusThePaletteOfThePlatformDecides) {
  const QDBusConnection none(QStringLiteral("no such bus"));
  {
    const PlatformPalette dark(QColor(30, 30, 30));
    EXPECT_TRUE(DesktopScheme(none).isDark());
  }
  const PlatformPalette light(QColor(240, 240, 240));
  EXPECT_FALSE(DesktopScheme(none).isDark());
}

TEST(DesktopSchemeTest, ANewThemeOfThePlatformIsSeenBelowAnOwnPalette) {
  const PlatformPalette dark(QColor(30, 30, 30));
  DesktopScheme scheme(QDBusConnection(QStringLiteral("no such bus")));
  QSignalSpy changed(&scheme, &DesktopScheme::changed);
  const QPalette own = QApplication::palette();

  QWindow window;
  QWindow other;
  QEvent event(QEvent::ThemeChange);  // the platform of the tests is light by itself
  QCoreApplication::sendEvent(&window, &event);
  QCoreApplication::sendEvent(&other, &event);
  ASSERT_TRUE(changed.count() == 1 || changed.wait(1000));
  EXPECT_FALSE(scheme.isDark());
  EXPECT_EQ(QApplication::palette(), own);
  QTest::qWait(10);
  EXPECT_EQ(changed.count(), 1);
}

/// A portal that answers "Read" as the real one does, or with an error.
class FakePortal : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != kInterface || message.member() != u"Read") return false;
    if (message.arguments() !=
        QVariantList{QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")})
      return false;
    ++asked;
    connection.send(answer.isValid() ? message.createReply(wrapped(wrapped(answer)))
                                     : message.createErrorReply(QDBusError::Failed, {}));
    return true;
  }

  QVariant answer;
  int asked = 0;
};

/// A bus of its own with a portal on it.
class PortalTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
      GTEST_SKIP() << "no dbus-daemon";
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
    ASSERT_TRUE(daemon_.waitForReadyRead(10000));
    const QString address = QString::fromUtf8(daemon_.readLine().trimmed());
    server_ = QDBusConnection::connectToBus(address, QStringLiteral("portal of the tests"));
    client_ = QDBusConnection::connectToBus(address, QStringLiteral("client of the tests"));
    ASSERT_TRUE(server_.registerVirtualObject(kPath, &portal));
    ASSERT_TRUE(server_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
  }

  void TearDown() override {
    QDBusConnection::disconnectFromBus(QStringLiteral("portal of the tests"));
    QDBusConnection::disconnectFromBus(QStringLiteral("client of the tests"));
    daemon_.kill();
    daemon_.waitForFinished();
  }

  void tell(const QString& key, uint value) {
    QDBusMessage signal =
        QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.freedesktop.appearance") << key << wrapped(value);
    server_.send(signal);
  }

  QDBusConnection client() const { return client_; }

  FakePortal portal;

 private:
  QProcess daemon_;
  QDBusConnection server_{QStringLiteral("none")};
  QDBusConnection client_{QStringLiteral("none")};
};

TEST_F(PortalTest, TheAnswerOfThePortalWinsAndIsFollowed) {
  const PlatformPalette light(QColor(240, 240, 240));
  portal.answer = 1U;
  DesktopScheme scheme(client());
  QSignalSpy changed(&scheme, &DesktopScheme::changed);
  EXPECT_FALSE(scheme.isDark()) << "nothing is waited for";
  ASSERT_TRUE(changed.wait(5000));
  EXPECT_TRUE(scheme.isDark());

  tell(QStringLiteral("accent-color"), 2);
  tell(QStringLiteral("color-scheme"), 1);
  tell(QStringLiteral("color-scheme"), 2);
  ASSERT_TRUE(changed.wait(5000));
  EXPECT_FALSE(scheme.isDark());
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(PortalTest, APortalWithoutAPreferenceLeavesThePlatformToDecide) {
  const PlatformPalette dark(QColor(30, 30, 30));
  for (const QVariant& answer : {QVariant(0U), QVariant()}) {
    portal.answer = answer;
    portal.asked = 0;
    DesktopScheme scheme(client());
    QSignalSpy changed(&scheme, &DesktopScheme::changed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal.asked == 1; }));
    QTest::qWait(50);
    EXPECT_TRUE(scheme.isDark());
    EXPECT_EQ(changed.count(), 0);
  }
}

}  // namespace
}  // namespace ombrelian::ui
