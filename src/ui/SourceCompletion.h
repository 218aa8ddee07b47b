#pragma once

#include <QComboBox>
#include <QCompleter>
#include <QStringListModel>

namespace ombrelian::ui {

/// Offers paths below the field for the source while the user types: the entries of the box that
/// have the typed text, then the subfolders of the typed folder. Nothing is completed in the field
/// itself, so that Return scans what was typed.
class SourceCompletion : public QObject {
  Q_OBJECT

 public:
  explicit SourceCompletion(QComboBox& box);

  /// The paths that are offered now.
  QStringList offered() const { return offered_->stringList(); }

 private:
  void offer(const QString& text);
  void readFolder(const QString& folder);

  QComboBox& box_;
  QStringListModel* offered_;
  QString folder_;      // the folder whose subfolders are known; ends in a separator
  QStringList inside_;  // names of these subfolders
};

}  // namespace ombrelian::ui
