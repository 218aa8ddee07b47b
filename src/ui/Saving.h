#pragma once

#include "export/ReportWriter.h"
#include "ui/Panes.h"

namespace ombrelian::ui {

class SaveDialog;

/// Saves a list as the window shows it.
class Saving : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object; `window` is the parent of dialogs.
  Saving(WindowState& state, Panes& panes, QWidget& window);

  void save(ListId list);

 Q_SIGNALS:
  /// A text that the status line shows for a while.
  void note(const QString& text);

 private:
  void saveFolders();
  Failure saveList(ListId list, ReportFormat format, const Text& target, UserInterface& ui);
  void run(SaveDialog& dialog);

  WindowState& state_;
  Panes& panes_;
  QWidget& window_;
};

}  // namespace ombrelian::ui
