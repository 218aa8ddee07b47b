#pragma once

#include <QMessageBox>

#include "support/UserInterface.h"

namespace ombrelian::ui {

// Messages whose texts are plain: a file name in them cannot contain mark-up.

/// Shows a message until the user closes it.
void showMessage(QWidget* parent, UserInterface::Severity severity, const QString& text);

/// Asks a question; true: yes. `standard` is the button that Return presses.
bool askQuestion(QWidget* parent, const QString& question,
                 QMessageBox::StandardButton standard = QMessageBox::Yes);

/// `text` as a tool tip that shows it as it is.
QString plainToolTip(const QString& text);

}  // namespace ombrelian::ui
