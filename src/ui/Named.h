#pragma once

#include <QObject>

namespace ombrelian::ui {

/// Gives a control its fixed name, and returns it.
template <class Control>
Control* named(Control* control, const char* name) {
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

}  // namespace ombrelian::ui
