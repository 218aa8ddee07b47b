#include "ui/SourceCompletion.h"

#include <QLineEdit>

#include "platform/FolderWalk.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr std::size_t kMostEntries = 10'000;  // entries of a folder that are looked at
constexpr qsizetype kMostEarlier = 6;
constexpr qsizetype kMostFolders = 60;

/// The folder part of a typed path, with its final separator; empty: the text has none.
QString folderOf(const QString& text) { return text.left(text.lastIndexOf(u'/') + 1); }

}  // namespace

SourceCompletion::SourceCompletion(QComboBox& box)
    : QObject(&box), box_(box), offered_(new QStringListModel(this)) {
  auto* const completer = new QCompleter(offered_, this);
  completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  box_.setCompleter(completer);
  connect(box_.lineEdit(), &QLineEdit::textEdited, this, &SourceCompletion::offer);
}

/// Changes what is offered; the field shows it after each key.
void SourceCompletion::offer(const QString& text) {
  QStringList found;
  for (int i = 0; i < box_.count() && found.size() < kMostEarlier && !text.isEmpty(); ++i) {
    const QString& earlier = box_.itemText(i);
    if (earlier != text && earlier.contains(text, Qt::CaseInsensitive)) found += earlier;
  }
  const QString folder = folderOf(text);
  if (folder != folder_) readFolder(folder);
  const QString begin = text.mid(folder.size());
  for (const QString& name : inside_) {
    if (found.size() >= kMostFolders) break;
    const bool isHidden = name.startsWith(u'.') && !begin.startsWith(u'.');
    if (name == begin || isHidden || !name.startsWith(begin, Qt::CaseInsensitive)) continue;
    if (!found.contains(folder + name)) found += folder + name;
  }
  if (found != offered_->stringList()) offered_->setStringList(found);
}

void SourceCompletion::readFolder(const QString& folder) {
  folder_ = folder;
  inside_.clear();
  if (!folder.startsWith(u'/')) return;
  platform::FolderWalk walk(0, platform::WalkReach::OneFolder);
  if (walk.openSource(toText(folder)) != platform::kSuccess) return;
  std::size_t entries = 0;
  while (const platform::FindData* const entry = walk.nextEntry()) {
    if (++entries > kMostEntries) break;
    if (entry->isFolder()) inside_.append(toQString(walk.name()));
  }
  inside_.sort();
}

}  // namespace ombrelian::ui
