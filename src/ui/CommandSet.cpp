#include "ui/CommandSet.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QWidgetAction>
#include <algorithm>

#include "support/Translate.h"
#include "ui/Icons.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr int kSmallIcon = 16;
constexpr int kLargeIcon = 24;

/// Commands whose picture does not say enough, so that they get their caption beside it.
bool isWordy(const Command& command) {
  constexpr int kWordy[] = {463, 478, 450, 398, 359, 361, 400, 401, 402, 403, 404, 405, 406, 407};
  return std::find(std::begin(kWordy), std::end(kWordy), command.id) != std::end(kWordy);
}

}  // namespace

CommandSet::CommandSet(Bar bar, std::optional<ListId> view, Options& options, QWidget* scope)
    : QObject(scope), bar_(bar), view_(view), options_(options), scope_(scope) {
  for (const BarItem& item : barItems(bar)) {
    if (!view || hasCommand(*view, item.id)) items_.push_back(item);
  }
  for (const BarItem& item : items_) {
    const Command& command = *findCommand(item.id);
    if (command.kind == CommandKind::Popup) {
      menus_[command.id] = new QMenu(scope);
      menus_[command.id]->setToolTipsVisible(true);
      menus_[command.id]->installEventFilter(this);
    }
    if (command.kind != CommandKind::Edit) make(command);
  }
  for (const auto& [popup, menu] : menus_)
    fillMenu(*menu, popup);
  applyLook();
  update();
}

QAction* CommandSet::action(int id) const { return actions_.at(id); }

QMenu* CommandSet::menu(int popup) const { return menus_.at(popup); }

QAction* CommandSet::addAction(int id) { return make(*findCommand(id)); }

CommandBinding CommandSet::binding(int id) const {
  const ListId view = view_.value_or(ListId::Folders);
  return commandBinding(options_, view_ ? &view : nullptr, id);
}

QList<QKeySequence> CommandSet::shortcuts(const Command& command) const {
  if (*command.shortcut == '\0') return {};
  return {QKeySequence(QString::fromLatin1(command.shortcut), QKeySequence::PortableText)};
}

/// Whether the command can do anything while nothing else is going on.
bool CommandSet::works(const Command& command) const {
  return *command.waitsFor == '\0' && !(isReadOnly_ && command.changesDisk);
}

QAction* CommandSet::make(const Command& command) {
  auto* const action = new QAction(this);
  action->setEnabled(works(command));
  actions_[command.id] = action;
  action->setData(command.id);
  if (*command.icon != '\0') action->setIcon(icon(command.icon));
  action->setCheckable(command.kind == CommandKind::Toggle || command.kind == CommandKind::Choice);
  action->setIconVisibleInMenu(!action->isCheckable());
  action->setShortcuts(shortcuts(command));
  action->setShortcutContext(view_ ? Qt::WidgetWithChildrenShortcut : Qt::WindowShortcut);
  if (command.kind == CommandKind::Popup) action->setMenu(menus_.at(command.id));
  scope_->addAction(action);
  connect(action, &QAction::triggered, this,
          [this, id = command.id](bool checked) { trigger(id, checked); });
  return action;
}

/// A menu stays open while toggles in it are clicked.
bool CommandSet::eventFilter(QObject* object, QEvent* event) {
  auto* const menu = qobject_cast<QMenu*>(object);
  if (menu == nullptr || event->type() != QEvent::MouseButtonRelease) return false;
  QAction* const action = menu->activeAction();
  if (action == nullptr || !action->isCheckable() || !action->isEnabled()) return false;
  action->trigger();
  return true;
}

void CommandSet::trigger(int id, bool checked) {
  const CommandBinding bound = binding(id);
  if (bound.flag != nullptr) {
    const bool isChoice = findCommand(id)->kind == CommandKind::Choice;
    if (isChoice || checked) {
      *bound.flag = bound.value;
    } else {
      *bound.flag = 0;
    }
  }
  update();
  Q_EMIT triggered(id);
}

void CommandSet::update() {
  for (const auto& [id, action] : actions_) {
    const Command& command = *findCommand(id);
    const CommandBinding bound = binding(id);
    if (bound.flag != nullptr && action->isCheckable()) action->setChecked(bound.isChecked());
    if (!works(command)) action->setEnabled(false);
  }
}

void CommandSet::setBusy(bool busy, std::initializer_list<int> exceptions) {
  for (const auto& [id, action] : actions_) {
    const bool isException =
        std::find(exceptions.begin(), exceptions.end(), id) != exceptions.end();
    action->setEnabled(works(*findCommand(id)) && (!busy || isException));
  }
}

void CommandSet::setReadOnly() {
  isReadOnly_ = true;
  update();
  applyLook();
}

void CommandSet::applyLook() {
  for (const auto& [id, action] : actions_) {
    const Command& command = *findCommand(id);
    QString caption = toQString(commandCaption(command, options_));
    if (id >= 1030 && id <= 1039) caption = toQString(themeName(id - 1030));
    action->setText(caption.replace(u'&', QStringLiteral("&&")));
    QString tip = toQString(commandTip(command, bar_));
    if (tip.isEmpty()) tip = toQString(commandCaption(command, options_));
    if (!works(command)) {
      const bool waits = *command.waitsFor != '\0';
      const Text reason = waits ? TL(9543, u"kommt noch") : TL(9640, u"nur Lesen");
      tip += QStringLiteral(" (") + toQString(reason) + u')';
    }
    const QKeySequence key = action->shortcut();
    if (!key.isEmpty()) tip += QStringLiteral(" (") + key.toString(QKeySequence::NativeText) + u')';
    action->setToolTip(tip);
    action->setStatusTip(QString());
  }
  for (const auto& [popup, menu] : menus_)
    menu->setTitle(actions_.at(popup)->text());
  if (toolBar_ == nullptr) return;
  const int size = options_.BigIcons == 1 ? kLargeIcon : kSmallIcon;
  toolBar_->setIconSize({size, size});
  for (QToolButton* const button : toolBar_->findChildren<QToolButton*>()) {
    const QAction* const action = button->defaultAction();
    if (action == nullptr) continue;
    const bool words = options_.SymbolText == 1 && isWordy(*findCommand(action->data().toInt()));
    button->setToolButtonStyle(words ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
  }
}

QToolBar* CommandSet::makeToolBar(const std::function<QWidget*(int id, QToolBar*)>& place) {
  toolBar_ = new QToolBar(scope_);
  toolBar_->setMovable(false);
  toolBar_->setContextMenuPolicy(Qt::PreventContextMenu);
  for (const BarItem& item : items_) {
    if (item.popup != 0) continue;
    if (item.beginsGroup) toolBar_->addSeparator();
    if (QWidget* const widget = place ? place(item.id, toolBar_) : nullptr) {
      toolBar_->addWidget(widget);
      continue;
    }
    if (!actions_.contains(item.id)) continue;
    toolBar_->addAction(actions_.at(item.id));
    auto* const button =
        qobject_cast<QToolButton*>(toolBar_->widgetForAction(actions_.at(item.id)));
    if (button == nullptr) continue;
    button->setAccessibleName(actions_.at(item.id)->text());
    button->setFocusPolicy(Qt::TabFocus);
    if (menus_.contains(item.id)) button->setPopupMode(QToolButton::InstantPopup);
  }
  applyLook();
  return toolBar_;
}

void CommandSet::fillMenu(QMenu& menu, int popup) {
  for (const BarItem& item : items_) {
    if (item.popup == popup) addItem(menu, item);
  }
}

void CommandSet::addItem(QMenu& menu, const BarItem& item) {
  if (item.beginsGroup) menu.addSeparator();
  const Command& command = *findCommand(item.id);
  if (command.kind != CommandKind::Edit) {
    menu.addAction(actions_.at(item.id));
  } else if (binding(item.id).text != nullptr || binding(item.id).number != nullptr) {
    menu.addAction(makeEdit(command, &menu));
  }
}

/// A line of a menu with a label and a field; the setting changes as it is typed.
QAction* CommandSet::makeEdit(const Command& command, QWidget* parent) {
  auto* const action = new QWidgetAction(parent);
  auto* const line = new QWidget(parent);
  auto* const layout = new QHBoxLayout(line);
  layout->setContentsMargins(34, 1, 10, 3);
  const QString caption = toQString(commandCaption(command, options_));
  auto* const field = new QLineEdit(line);
  field->setAccessibleName(caption);
  field->setToolTip(toQString(commandTip(command, bar_)));
  const CommandBinding bound = binding(command.id);
  if (bound.number != nullptr) {
    layout->addWidget(new QLabel(caption, line));
    field->setValidator(new QIntValidator(0, 999'999'999, field));
    field->setMaximumWidth(90);
    layout->addStretch();
  } else {
    field->setMinimumWidth(260);
    field->setPlaceholderText(toQString(TL(9544, u"durch Kommas getrennt")));
  }
  layout->addWidget(field);
  const auto show = [field, bound] {
    field->setText(bound.number != nullptr ? QString::number(*bound.number)
                                           : toQString(*bound.text));
  };
  show();
  if (auto* const menu = qobject_cast<QMenu*>(parent))
    connect(menu, &QMenu::aboutToShow, field, show);
  connect(field, &QLineEdit::textEdited, this, [this, bound, id = command.id](const QString& text) {
    if (bound.number != nullptr) {
      *bound.number = text.toInt();
    } else {
      *bound.text = toText(text);
    }
    applyLook();
    Q_EMIT triggered(id);
  });
  action->setDefaultWidget(line);
  return action;
}

}  // namespace ombrelian::ui
