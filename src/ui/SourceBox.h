#pragma once

#include <QComboBox>

#include "ui/WindowState.h"
namespace ombrelian::ui {

/// The field for the folder to scan, with the drives and the folders that were scanned before.
class SourceBox : public QComboBox {
  Q_OBJECT

 public:
  /// `state` must outlive the box.
  SourceBox(WindowState& state, QWidget* parent);

  /// The path that the user typed or chose.
  Text path() const;

  /// Selects a path, and adds it if it is new.
  void AddNewSearchPath(const Text& path);

  /// Lets the user choose a folder and selects it.
  void browse();

  /// Removes the shown path from the box; a drive stays.
  void Quelle_Entfernen();

  /// Moves the caret into the field and selects its whole text.
  void edit();

  void load();
  void store() const;

 Q_SIGNALS:
  void startWanted();  // Return was pressed

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  WindowState& state_;
};

}  // namespace ombrelian::ui
