#pragma once

#include <QComboBox>
#include <QCompleter>
#include <QFileSystemModel>
#include <QStringListModel>

namespace ombrelian::ui {

/// Offers paths below the field for the source while the user types: the entries of the box that
/// have the typed text, then the subfolders of the typed folder. Nothing is completed in the field
/// itself, so that Return scans what was typed. Folders are read in a thread of Qt, because a drive
/// may not answer.
class SourceCompletion : public QObject {
  Q_OBJECT

 public:
  explicit SourceCompletion(QComboBox& box);

  /// The paths that are offered for a text, as far as its folder was read.
  QStringList offers(const QString& text) const;

 private:
  void offer(const QString& text);
  void folderRead(const QString& folder);

  QComboBox& box_;
  QFileSystemModel* folders_;
  QStringListModel* offered_;
  QCompleter* completer_;
};

}  // namespace ombrelian::ui
