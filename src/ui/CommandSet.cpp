#include "ui/CommandSet.h"

#include <QActionGroup>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QToolTip>
#include <QWidgetAction>
#include <utility>

#include "filters/FilterText.h"
#include "platform/Locale.h"
#include "support/Translate.h"
#include "ui/Icons.h"
#include "ui/Messages.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kSmallIcon = 16;
constexpr int kLargeIcon = 24;

/// A command that has nothing to do yet is on no bar and in no menu.
bool isImplemented(CommandId id) { return commandOf(id).time != CommandTime::Never; }

}  // namespace

CommandSet::CommandSet(Bar bar, std::optional<ListId> list, Options& options, QWidget* scope)
    : QObject(scope), bar_(bar), list_(list), options_(options), scope_(scope) {
  for (const BarItem& item : barItems(bar)) {
    if (!list || hasCommand(*list, item.id)) items_.push_back(item);
  }
  for (const BarItem& item : items_) {
    const Command& command = commandOf(item.id);
    if (command.kind == CommandKind::Popup) {
      menus_[command.id] = new QMenu(scope);
      menus_[command.id]->setToolTipsVisible(true);
      menus_[command.id]->installEventFilter(this);
    }
    if (command.kind != CommandKind::Edit) make(command);
    if (command.kind == CommandKind::Choice) joinChoices(item);
  }
  for (const auto& [popup, menu] : menus_)
    fillMenu(*menu, popup);
  applyLook();
  update();
}

bool CommandSet::isOn(const Command& command) const {
  if (isReadOnly_ && command.changesDisk) return false;
  switch (command.time) {
    case CommandTime::Idle:
      return !isBusy_ && isGiven_(command.need);
    case CommandTime::Scanning:
      return isBusy_;
    case CommandTime::Always:
      return true;
    default:
      return false;
  }
}

void CommandSet::setGiven(std::function<bool(CommandNeed)> isGiven) {
  isGiven_ = std::move(isGiven);
  update();
}

QAction* CommandSet::make(const Command& command) {
  auto* const action = new QAction(this);
  action->setEnabled(isOn(command));
  actions_[command.id] = action;
  action->setData(int(command.id));
  if (*command.icon != '\0') action->setIcon(icon(command.icon));
  action->setCheckable(command.kind == CommandKind::Toggle || command.kind == CommandKind::Choice);
  action->setIconVisibleInMenu(!action->isCheckable());
  if (*command.shortcut != '\0')
    action->setShortcut(
        QKeySequence(QString::fromLatin1(command.shortcut), QKeySequence::PortableText));
  action->setShortcutContext(list_ ? Qt::WidgetWithChildrenShortcut : Qt::WindowShortcut);
  if (command.kind == CommandKind::Popup) action->setMenu(menus_.at(command.id));
  scope_->addAction(action);
  connect(action, &QAction::triggered, this,
          [this, id = command.id](bool checked) { trigger(id, checked); });
  return action;
}

/// Puts the choices of one menu or bar for one setting together, so that menus show that one of
/// them is in force.
void CommandSet::joinChoices(const BarItem& item) {
  QActionGroup*& group = choices_[{item.popup, state(item.id).flag}];
  if (group == nullptr) group = new QActionGroup(this);
  group->addAction(actions_.at(item.id));
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

void CommandSet::trigger(CommandId id, bool checked) {
  const CommandState kept = state(id);
  const bool isChoice = commandOf(id).kind == CommandKind::Choice;
  if (kept.flag != nullptr) *kept.flag = isChoice || checked ? kept.value : 0;
  if (kept.excludes != nullptr && checked) *kept.excludes = 0;
  update();
  Q_EMIT triggered(id);
}

/// Switches a filter on when the user types a text, and off when the text is empty.
void CommandSet::switchByText(CommandId toggle, bool on) {
  if (toggle == CommandId::None || !has(toggle) || state(toggle).isChecked() == on) return;
  const CommandState kept = state(toggle);
  *kept.flag = on ? kept.value : 0;
  if (on && kept.excludes != nullptr) *kept.excludes = 0;
  update();
}

void CommandSet::update() {
  for (const auto& [id, action] : actions_) {
    const CommandState kept = state(id);
    if (kept.flag != nullptr && action->isCheckable()) action->setChecked(kept.isChecked());
    if (kept.hasMark) {
      action->setCheckable(kept.isMarked);
      action->setChecked(kept.isMarked);
    }
    action->setEnabled(isOn(commandOf(id)));
  }
}

void CommandSet::setBusy(bool busy) {
  isBusy_ = busy;
  update();
  for (const auto& [id, action] : actions_) {
    if (commandOf(id).whileBusy != CommandId::None) showTexts(*action, id);
  }
}

void CommandSet::setReadOnly() {
  isReadOnly_ = true;
  update();
  applyLook();
}

/// The tool tip with the key of the command, and with the reason if the command is off.
QString CommandSet::toolTip(const Command& command, const QAction& action) const {
  Text tip = commandTip(command, bar_);
  if (tip.empty()) tip = commandCaption(command, options_, bar_);
  QString shown = toQString(tip);
  const auto add = [&](const QString& text) { shown += QStringLiteral(" (") + text + u')'; };
  if (isReadOnly_ && command.changesDisk) {
    add(toQString(TL(9640, u"nur Lesen")));
  }
  const QKeySequence key = action.shortcut();
  if (!key.isEmpty()) add(key.toString(QKeySequence::NativeText));
  return shown;
}

void CommandSet::showTexts(QAction& action, CommandId id) const {
  const CommandId other = commandOf(id).whileBusy;
  const Command& command = commandOf(isBusy_ && other != CommandId::None ? other : id);
  QString caption = toQString(commandCaption(command, options_, bar_));
  action.setText(caption.replace(u'&', QStringLiteral("&&")));
  action.setToolTip(toolTip(command, action));
  if (other != CommandId::None) action.setIcon(icon(command.icon));
}

void CommandSet::applyLook() {
  for (const auto& [id, action] : actions_)
    showTexts(*action, id);
  for (const auto& [popup, menu] : menus_)
    menu->setTitle(actions_.at(popup)->text());
  if (toolBar_ == nullptr) return;
  const int size = options_.BigIcons == 1 ? kLargeIcon : kSmallIcon;
  toolBar_->setIconSize({size, size});
  for (QToolButton* const button : toolBar_->findChildren<QToolButton*>()) {
    const QAction* const action = button->defaultAction();
    if (action == nullptr) continue;
    const auto id = CommandId(action->data().toInt());
    const bool words = options_.SymbolText == 1 && commandOf(id).isWordy;
    button->setToolButtonStyle(words ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
  }
}

QToolBar* CommandSet::makeToolBar(const PlaceWidget& place) {
  toolBar_ = new QToolBar(scope_);
  toolBar_->setMovable(false);
  toolBar_->setContextMenuPolicy(Qt::PreventContextMenu);
  bool beginsGroup = false;
  for (const BarItem& item : items_) {
    if (item.popup != CommandId::None) continue;
    beginsGroup = beginsGroup || item.beginsGroup;
    if (!isImplemented(item.id)) continue;
    if (std::exchange(beginsGroup, false)) toolBar_->addSeparator();
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

void CommandSet::fillMenu(QMenu& menu, CommandId popup) {
  bool beginsGroup = false;
  for (const BarItem& item : items_) {
    if (item.popup != popup) continue;
    beginsGroup = beginsGroup || item.beginsGroup;
    if (!isImplemented(item.id)) continue;
    if (std::exchange(beginsGroup, false)) menu.addSeparator();
    addItem(menu, item);
  }
}

void CommandSet::addItem(QMenu& menu, const BarItem& item) {
  const Command& command = commandOf(item.id);
  if (command.kind != CommandKind::Edit) {
    menu.addAction(actions_.at(item.id));
  } else if (state(item.id).text != nullptr || state(item.id).number) {
    menu.addAction(makeEdit(command, &menu));
  }
}

/// Takes over what the user typed into a field.
void CommandSet::typed(const CommandState& bound, const QString& text) {
  if (bound.number) {
    bool isSmall = true;  // a number of more than 64 bits counts as the greatest one
    const std::int64_t number = text.toLongLong(&isSmall);
    bound.number.set(isSmall || text.isEmpty() ? number : bound.number.most);
  } else {
    *bound.text = toText(text);
    switchByText(bound.switchedOn, !text.isEmpty());
  }
}

/// Shows below a field what the user should know of its patterns.
void CommandSet::showHint(QLineEdit& field, CommandId id) const {
  const bool needsAll =
      !list_ && (id == CommandId::OnlyTheseFilesText || id == CommandId::OnlyTheseFoldersText);
  const Text hint = patternHint(toText(field.text()), needsAll, platform::localeTextRules());
  QToolTip::showText(field.mapToGlobal(QPoint(0, field.height())), plainToolTip(toQString(hint)),
                     &field);
}

/// Makes a line of a menu with a label and a field. The setting changes while the user types; when
/// the user leaves the field, it shows what the setting became.
QAction* CommandSet::makeEdit(const Command& command, QWidget* parent) {
  auto* const action = new QWidgetAction(parent);
  auto* const line = new QWidget(parent);
  auto* const layout = new QHBoxLayout(line);
  layout->setContentsMargins(34, 1, 10, 3);
  const QString caption = toQString(commandCaption(command, options_, bar_));
  auto* const field = new QLineEdit(line);
  field->setAccessibleName(caption);
  field->setToolTip(toQString(commandTip(command, bar_)));
  const CommandState bound = state(command.id);
  if (bound.number) {
    layout->addWidget(new QLabel(caption, line));
    field->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,19}")), field));
    field->setMaximumWidth(150);
    layout->addStretch();
  } else {
    field->setMinimumWidth(260);
    field->setPlaceholderText(toQString(TL(9544, u"durch Kommas getrennt")));
  }
  layout->addWidget(field);
  const auto show = [field, bound] {
    if (bound.number) {
      field->setText(QString::number(*bound.number.place));
    } else if (bound.text != nullptr) {
      *bound.text = tidyPatterns(*bound.text);
      field->setText(toQString(*bound.text));
    }
  };
  show();
  if (auto* const menu = qobject_cast<QMenu*>(parent)) {
    connect(menu, &QMenu::aboutToShow, field, show);
    connect(menu, &QMenu::aboutToHide, field, show);
  }
  connect(field, &QLineEdit::editingFinished, this, show);
  connect(field, &QLineEdit::textEdited, this,
          [this, bound, field, id = command.id](const QString& text) {
            typed(bound, text);
            if (bound.text != nullptr) showHint(*field, id);
            update();
            applyLook();
            Q_EMIT triggered(id);
          });
  // The arrow keys of the menu give the focus only to an entry that accepts it.
  line->setFocusPolicy(Qt::StrongFocus);
  line->setFocusProxy(field);
  action->setDefaultWidget(line);
  return action;
}

}  // namespace ombrelian::ui
