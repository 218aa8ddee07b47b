#include "ui/DesktopScheme.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>

namespace ombrelian::ui {
namespace {

constexpr int kPortalTimeoutMs = 2000;

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

/// Returns an unconnected bus if none runs, since opening it would start one or print a warning.
QDBusConnection sessionBusIfAny() {
  const QString runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !QFileInfo::exists(runtimeBus))
    return QDBusConnection(QStringLiteral("none"));
  return QDBusConnection::sessionBus();
}

bool isDarkPalette(const QPalette& palette) {
  return palette.color(QPalette::Window).lightnessF() <
         palette.color(QPalette::WindowText).lightnessF();
}

}  // namespace

std::optional<bool> darkFromPortal(QVariant value) {
  while (value.userType() == qMetaTypeId<QDBusVariant>())
    value = value.value<QDBusVariant>().variant();
  bool isNumber = false;
  const uint scheme = value.toUInt(&isNumber);
  if (!isNumber || (scheme != 1 && scheme != 2)) return std::nullopt;
  return scheme == 1;
}

DesktopScheme::DesktopScheme(QObject* parent) : DesktopScheme(sessionBusIfAny(), parent) {}

DesktopScheme::DesktopScheme(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), platformIsDark_(isDarkPalette(QGuiApplication::palette())) {
  isDark_ = platformIsDark_;
  qGuiApp->installEventFilter(this);
  if (!bus.isConnected()) return;
  listen(bus);
  ask(bus);
}

void DesktopScheme::listen(QDBusConnection bus) {
  // Qt finds the slot only if the type of its argument is registered by name.
  qRegisterMetaType<QDBusVariant>("QDBusVariant");
  bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
              SLOT(takeSetting(QString, QString, QDBusVariant)));
}

void DesktopScheme::ask(const QDBusConnection& bus) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
  call << kGroup << kKey;
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kPortalTimeoutMs), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) takeValue(QVariant::fromValue(reply.value()));
  });
}

void DesktopScheme::takeSetting(const QString& group, const QString& key,
                                const QDBusVariant& value) {
  if (group == kGroup && key == kKey) takeValue(QVariant::fromValue(value));
}

void DesktopScheme::takeValue(const QVariant& value) {
  portalIsDark_ = darkFromPortal(value);
  update();
}

/// The platform reports a new theme to every window instead of the application; only the first of
/// these events is handled.
bool DesktopScheme::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ThemeChange && !platformIsDue_) {
    platformIsDue_ = true;
    QMetaObject::invokeMethod(this, "readPlatform", Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

/// Reads the palette of the platform, which is visible only while the application has no palette of
/// its own.
void DesktopScheme::readPlatform() {
  const QPalette own = QGuiApplication::palette();
  QGuiApplication::setPalette(QPalette());
  platformIsDark_ = isDarkPalette(QGuiApplication::palette());
  QGuiApplication::setPalette(own);
  platformIsDue_ = false;
  update();
}

void DesktopScheme::update() {
  const bool isDark = portalIsDark_.value_or(platformIsDark_);
  if (isDark == isDark_) return;
  isDark_ = isDark;
  Q_EMIT changed();
}

}  // namespace ombrelian::ui
