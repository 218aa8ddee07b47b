#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace ombrelian::ui {

/// Whether the desktop wants dark windows. The desktop portal is asked; where there is none, or it
/// has no preference, the lightness of the palette that the platform gives decides. Never waits:
/// `isDark` tells what is known so far, and `changed` follows when the portal has said otherwise.
/// Make it before an own palette is set, which would hide the platform's.
class DesktopScheme : public QObject {
  Q_OBJECT

 public:
  /// Asks over the session bus, if there is one.
  explicit DesktopScheme(QObject* parent = nullptr);
  /// Asks over `bus`, which may be unconnected.
  explicit DesktopScheme(const QDBusConnection& bus, QObject* parent = nullptr);

  bool isDark() const { return isDark_; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// `isDark` has another value.
  void changed();

 private:
  Q_SLOT void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);
  Q_SLOT void readPlatform();
  void listen(QDBusConnection bus);
  void ask(const QDBusConnection& bus);
  void takeValue(const QVariant& value);
  void update();

  std::optional<bool> portalIsDark_;  ///< empty: no portal, or no preference
  bool platformIsDark_ = false;
  bool isDark_ = false;
  bool platformIsDue_ = false;  ///< `readPlatform` will run
};

/// What a "color-scheme" of the portal says, in however many variants it is wrapped: 1 dark,
/// 2 light; empty for all else.
std::optional<bool> darkFromPortal(QVariant value);

}  // namespace ombrelian::ui
