#include "ui/MenuCare.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QToolButton>

#include "ui/Mnemonics.h"

namespace ombrelian::ui {
namespace {

/// While a menu is open, the button below it gets no event when the pointer leaves it.
void clearHoveredButtons() {
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (!widget->testAttribute(Qt::WA_UnderMouse) || qobject_cast<QToolButton*>(widget) == nullptr)
      continue;
    if (widget->rect().contains(widget->mapFromGlobal(QCursor::pos()))) continue;
    widget->setAttribute(Qt::WA_UnderMouse, false);
    widget->update();
  }
}

}  // namespace

bool MenuCare::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::Show && event->type() != QEvent::Hide) return false;
  auto* const menu = qobject_cast<QMenu*>(object);
  if (menu == nullptr) return false;
  if (event->type() == QEvent::Show) {
    giveMenuMnemonics(*menu);
  } else {
    clearHoveredButtons();
  }
  return false;
}

}  // namespace ombrelian::ui
