#include "ui/WindowKeys.h"

#include <QApplication>
#include <QToolButton>
#include <algorithm>

namespace ombrelian::ui {
namespace {

/// Commands whose keys act on the list that was used last. Other keys of lists, such as Del, act
/// only while the list has the focus.
constexpr CommandId kListCommands[] = {CommandId::Save, CommandId::Search, CommandId::Rescan,
                                       CommandId::Refresh, CommandId::FitColumns};

}  // namespace

bool WindowKeys::press(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_F6:
      goRound((event.modifiers() & Qt::ShiftModifier) != 0);
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return event.modifiers() == Qt::NoModifier && pressButton();
    default:
      return doListCommand(QKeySequence(event.keyCombination()));
  }
}

/// Presses the button that has the focus.
bool WindowKeys::pressButton() const {
  auto* const button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  if (button == nullptr) return false;
  auto* const tool = qobject_cast<QToolButton*>(button);
  const QAction* const action = tool == nullptr ? nullptr : tool->defaultAction();
  if (action != nullptr && action->menu() != nullptr) {
    tool->showMenu();
  } else {
    button->click();
  }
  return true;
}

bool WindowKeys::doListCommand(const QKeySequence& key) {
  CommandSet& commands = panes_.pane(area_.focusedList()).commands();
  const auto* const id =
      std::find_if(std::begin(kListCommands), std::end(kListCommands), [&](CommandId candidate) {
        return commands.has(candidate) && commands.action(candidate)->shortcut() == key;
      });
  if (id == std::end(kListCommands)) return false;
  commands.action(*id)->trigger();
  return true;
}

/// Moves the focus from the source box to the tree, to the list on the right and round again.
void WindowKeys::goRound(bool backward) {
  std::vector<QWidget*> stops = {&sources_};
  if (area_.isLeftVisible()) stops.push_back(&panes_.pane(ListId::Folders).list());
  if (area_.isRightVisible()) stops.push_back(&panes_.pane(area_.rightList()).list());
  const QWidget* const focus = QApplication::focusWidget();
  const auto current = std::find_if(stops.begin(), stops.end(), [focus](const QWidget* stop) {
    return stop == focus || stop->isAncestorOf(focus);
  });
  const auto count = std::ptrdiff_t(stops.size());
  const auto from = current == stops.end() ? count - 1 : current - stops.begin();
  stops[std::size_t((from + (backward ? count - 1 : 1)) % count)]->setFocus(Qt::TabFocusReason);
}

}  // namespace ombrelian::ui
