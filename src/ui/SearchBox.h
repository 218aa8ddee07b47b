#pragma once

#include <QLabel>
#include <QLineEdit>

#include "ui/CommandSet.h"
#include "ui/ListView.h"

namespace ombrelian::ui {

/// The line above a list in which a text is searched for in its rows.
class SearchBox : public QWidget {
  Q_OBJECT

 public:
  /// `commands` are the commands of the list. All must outlive the box.
  SearchBox(ListView& list, CommandSet& commands, QWidget* parent);

  /// Shows or hides the box as the options say.
  void applySettings();

  /// Follows the options after the user switched the box on or off. A visible box gets the focus.
  void toggled();

  /// Goes to the next row that has the text, from the current row on and round the end.
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
