#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace ombrelian::ui {

/// Whether the desktop wants dark windows. The desktop portal decides; if there is none, or if it
/// has no preference, the lightness of the platform's palette decides. It never waits: `isDark`
/// returns what is known so far, and `changed` is emitted if the answer of the portal differs.
/// Construct it before the program sets its own palette, which would hide the platform's.
class DesktopScheme : public QObject {
  Q_OBJECT

 public:
  /// Uses the session bus, if there is one.
  explicit DesktopScheme(QObject* parent = nullptr);
  /// Uses `bus`, which may be unconnected.
  explicit DesktopScheme(const QDBusConnection& bus, QObject* parent = nullptr);

  bool isDark() const { return isDark_; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// Emitted when `isDark` has changed.
  void changed();

 private:
  Q_SLOT void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);
  Q_SLOT void readPlatform();
  void listen(QDBusConnection bus);
  void ask(const QDBusConnection& bus);
  void takeValue(const QVariant& value);
  void update();

  std::optional<bool> portalIsDark_;  ///< empty if there is no portal or no preference
  bool platformIsDark_ = false;
  bool isDark_ = false;
  bool platformIsDue_ = false;  ///< whether `readPlatform` is queued
};

/// Reads the value of the portal's "color-scheme", in however many variants it is wrapped: 1 is
/// dark, 2 is light, and everything else is no preference.
std::optional<bool> darkFromPortal(QVariant value);

}  // namespace ombrelian::ui
