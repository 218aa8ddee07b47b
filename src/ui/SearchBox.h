#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include "ui/CommandSet.h"
#include "ui/ListView.h"

namespace ombrelian::ui {

/// The line above a list for searching a text in its rows.
class SearchBox : public QWidget {
  Q_OBJECT

 public:
  /// `commands` are the commands of the list. All arguments must outlive the box.
  SearchBox(ListView& list, CommandSet& commands, QWidget* parent);

  /// Shows or hides the box, depending on the options.
  void applySettings();

  /// Shows or hides the box after the user switched it on or off. A visible box gets the focus. A
  /// box with a text, or without the focus, gets the focus instead of being hidden.
  void toggled();

  /// Shows the box with this text and searches for it.
  void searchFor(const QString& text);

  /// Moves to the next row that has the text, from the current row on; after the end it continues
  /// at the other end.
  void search(bool backward);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void close();
  void searchTyped();
  void showMatches(const QString& text, bool hasWrapped);

  ListView& list_;
  CommandSet& commands_;
  QLineEdit* text_;
  QLabel* result_;
  QTimer typed_;  // runs from the last key to the search
};

}  // namespace ombrelian::ui
