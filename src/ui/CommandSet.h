#pragma once

#include <QAction>
#include <QActionGroup>
#include <QLineEdit>
#include <QMenu>
#include <QToolBar>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "frame/CommandTable.h"

namespace ombrelian::ui {

/// The commands of one bar as actions, and the tool bar and menus with these actions. A command
/// that is bound to a setting changes that setting before it emits `triggered`.
class CommandSet : public QObject {
  Q_OBJECT

 public:
  /// Makes the widget for a command that is more than a button; null: the command gets a button.
  using PlaceWidget = std::function<QWidget*(CommandId id, QToolBar*)>;

  /// `list` is the list that the bar belongs to; none: the bar concerns the whole window. Shortcuts
  /// work while the focus is in `scope`, those of the main bar in the whole window.
  CommandSet(Bar bar, std::optional<ListId> list, Options& options, QWidget* scope);

  /// The action of a command; asserts that the bar has the command.
  QAction* action(CommandId id) const { return actions_.at(id); }

  bool has(CommandId id) const { return actions_.contains(id); }

  /// Sets the function that says whether the list has what a command needs. update() calls it.
  void setGiven(std::function<bool(CommandNeed)> isGiven);

  /// Adds a command that is on no bar, such as those of context menus.
  QAction* addAction(CommandId id) { return make(commandOf(id)); }

  /// Builds the tool bar of these commands.
  QToolBar* makeToolBar(const PlaceWidget& place);

  /// Adds the commands of the menu of `popup`, or all commands of the bar if it is None.
  void fillMenu(QMenu& menu, CommandId popup);

  /// The menu of a popup command; fillMenu fills it unless the caller changes it.
  QMenu* menu(CommandId popup) const { return menus_.at(popup); }

  /// The places in the options that store the state of a command.
  CommandState state(CommandId id) const { return commandState(options_, list_, id); }

  /// Updates the state of every command from the options.
  void update();

  /// Disables all commands except those that work while something runs, or enables them again.
  void setBusy(bool busy);

  /// Disables the commands that change the disk permanently.
  void setReadOnly();

  /// Updates the texts to the current language, and the tool bar to the options.
  void applyLook();

 Q_SIGNALS:
  void triggered(CommandId id);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool isOn(const Command& command) const;
  QAction* make(const Command& command);
  void joinChoices(const BarItem& item);
  void typed(const CommandState& bound, const QString& text);
  void showHint(QLineEdit& field, CommandId id) const;
  QAction* makeEdit(const Command& command, QWidget* parent);
  void trigger(CommandId id, bool checked);
  void switchByText(CommandId toggle, bool on);
  void addItem(QMenu& menu, const BarItem& item);
  QString toolTip(const Command& command, const QAction& action) const;
  void showTexts(QAction& action, CommandId id) const;

  const Bar bar_;
  const std::optional<ListId> list_;
  Options& options_;
  QWidget* const scope_;
  std::vector<BarItem> items_;  // commands of the bar that this list has
  std::function<bool(CommandNeed)> isGiven_ = [](CommandNeed) { return true; };
  bool isReadOnly_ = false;
  bool isBusy_ = false;
  QToolBar* toolBar_ = nullptr;
  std::map<CommandId, QAction*> actions_;
  std::map<CommandId, QMenu*> menus_;
  std::map<std::pair<CommandId, const void*>, QActionGroup*> choices_;  // by menu and setting
};

}  // namespace ombrelian::ui
