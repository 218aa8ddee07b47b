#include "ui/Desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>

#include "fs/PathText.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

QUrl urlOf(TextView path) {
  const std::string bytes = toBytes(path);
  const QByteArray encoded =
      QByteArray(bytes.data(), qsizetype(bytes.size())).toPercentEncoding("/");
  return QUrl(QStringLiteral("file://") + QString::fromLatin1(encoded), QUrl::StrictMode);
}

namespace {

/// Calls a method of the common interface of file managers. Returns false if no file manager has
/// it.
bool callFileManager(const QString& method, const std::vector<Text>& paths) {
  QStringList urls;
  for (const Text& path : paths)
    urls.append(QString::fromLatin1(urlOf(path).toEncoded()));
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || urls.isEmpty()) return false;
  QDBusMessage message =
      QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                     QStringLiteral("/org/freedesktop/FileManager1"),
                                     QStringLiteral("org.freedesktop.FileManager1"), method);
  message << urls << QString();
  constexpr int kAnswerMs = 2000;
  return bus.call(message, QDBus::Block, kAnswerMs).type() == QDBusMessage::ReplyMessage;
}

}  // namespace

bool openFile(TextView path) { return QDesktopServices::openUrl(urlOf(path)); }

bool revealInFileManager(const std::vector<Text>& paths) {
  if (paths.empty() || callFileManager(QStringLiteral("ShowItems"), paths)) return true;
  return openFile(xGetPath(paths.front()));
}

bool showProperties(const std::vector<Text>& paths) {
  return paths.empty() || callFileManager(QStringLiteral("ShowItemProperties"), paths);
}

}  // namespace ombrelian::ui
