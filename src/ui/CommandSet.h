#pragma once

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "frame/CommandTable.h"

namespace ombrelian::ui {

/// The commands of one bar as actions, and the tool bar and menus made of them. A command that is
/// bound to a setting changes that before `triggered` tells of it.
class CommandSet : public QObject {
  Q_OBJECT

 public:
  /// `view` is the list that the bar belongs to; none: the main bar. Shortcuts work while the focus
  /// is in `scope`, those of the main bar in the whole window.
  CommandSet(Bar bar, std::optional<ListId> view, Options& options, QWidget* scope);

  /// Asserts that the bar has the command.
  QAction* action(int id) const;

  bool has(int id) const { return actions_.contains(id); }

  /// A command that stands on no bar, such as those of context menus.
  QAction* addAction(int id);

  /// The bar itself. `place` may give a widget for a command that is more than a button; null: a
  /// button.
  QToolBar* makeToolBar(const std::function<QWidget*(int id, QToolBar*)>& place);

  /// The commands that stand in the menu of `popup`, or with 0 all that stand on the bar.
  void fillMenu(QMenu& menu, int popup);

  /// The menu of a popup command; filled by fillMenu unless the caller changes it.
  QMenu* menu(int popup) const;

  /// Shows the state of every command as the options are.
  void update();

  /// Takes all commands away or gives back those that work, but for `exceptions`.
  void setBusy(bool busy, std::initializer_list<int> exceptions = {});

  /// Takes the commands away that change the disk, for as long as the set lives.
  void setReadOnly();

  /// Shows texts in the language in force, and on the tool bar as the options want.
  void applyLook();

 Q_SIGNALS:
  void triggered(int id);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool works(const Command& command) const;
  QAction* make(const Command& command);
  QAction* makeEdit(const Command& command, QWidget* parent);
  void trigger(int id, bool checked);
  void addItem(QMenu& menu, const BarItem& item);
  CommandBinding binding(int id) const;
  QList<QKeySequence> shortcuts(const Command& command) const;

  const Bar bar_;
  const std::optional<ListId> view_;
  Options& options_;
  QWidget* const scope_;
  std::vector<BarItem> items_;  // of the bar, as far as this list has them
  bool isReadOnly_ = false;
  QToolBar* toolBar_ = nullptr;
  std::map<int, QAction*> actions_;
  std::map<int, QMenu*> menus_;
};

}  // namespace ombrelian::ui
