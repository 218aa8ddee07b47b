#pragma once

#include <QLabel>
#include <QLineEdit>

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

  /// Shows or hides the box after the user switched it on or off. A visible box gets the focus.
  void toggled();

  /// Moves to the next row that has the text, from the current row on; after the end it continues
  /// at the other end.
  void search(bool backward);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  ListView& list_;
  CommandSet& commands_;
  QLineEdit* text_;
  QLabel* result_;
};

}  // namespace ombrelian::ui
