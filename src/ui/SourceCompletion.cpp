#include "ui/SourceCompletion.h"

#include <QAbstractItemView>
#include <QLineEdit>

namespace ombrelian::ui {
namespace {

constexpr qsizetype kMostEarlier = 6;
constexpr qsizetype kMostFolders = 60;

/// The folder part of a typed path, with its final separator; empty: the text has none.
QString folderOf(const QString& text) { return text.left(text.lastIndexOf(u'/') + 1); }

}  // namespace

SourceCompletion::SourceCompletion(QComboBox& box)
    : QObject(&box),
      box_(box),
      folders_(new QFileSystemModel(this)),
      offered_(new QStringListModel(this)),
      completer_(new QCompleter(offered_, this)) {
  folders_->setFilter(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
  folders_->setOption(QFileSystemModel::DontWatchForChanges);
  folders_->setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
  completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  box_.setCompleter(completer_);
  connect(box_.lineEdit(), &QLineEdit::textEdited, this, &SourceCompletion::offer);
  connect(folders_, &QFileSystemModel::directoryLoaded, this, &SourceCompletion::folderRead);
}

QStringList SourceCompletion::offers(const QString& text) const {
  QStringList found;
  if (text.isEmpty()) return found;
  for (int i = 0; i < box_.count() && found.size() < kMostEarlier; ++i) {
    const QString& earlier = box_.itemText(i);
    if (earlier != text && earlier.contains(text, Qt::CaseInsensitive)) found += earlier;
  }
  const QString folder = folderOf(text);
  if (folder.isEmpty()) return found;
  const QString begin = text.mid(folder.size());
  const QModelIndex parent = folders_->index(folder);
  for (int row = 0; row < folders_->rowCount(parent) && found.size() < kMostFolders; ++row) {
    const QString name = folders_->index(row, 0, parent).data().toString();
    const bool isHidden = name.startsWith(u'.') && !begin.startsWith(u'.');
    if (name == begin || isHidden || !name.startsWith(begin, Qt::CaseInsensitive)) continue;
    if (!found.contains(folder + name)) found += folder + name;
  }
  return found;
}

/// Changes what is offered; the field shows it after each key.
void SourceCompletion::offer(const QString& text) {
  const QString folder = folderOf(text);
  if (!folder.isEmpty()) folders_->setRootPath(folder);  // starts to read the folder
  const QStringList found = offers(text);
  if (found != offered_->stringList()) offered_->setStringList(found);
}

/// Offers the subfolders when they are known, if the user is still in the field.
void SourceCompletion::folderRead(const QString& folder) {
  const QString text = box_.currentText();
  const QString typed = folderOf(text);
  const bool isMeant = typed == folder || typed == folder + u'/';
  if (!isMeant || !box_.lineEdit()->hasFocus() || !box_.lineEdit()->isModified()) return;
  offer(text);
  completer_->complete();
}

}  // namespace ombrelian::ui
