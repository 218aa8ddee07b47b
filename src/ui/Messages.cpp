#include "ui/Messages.h"

#include <QTextDocument>

namespace ombrelian::ui {
namespace {

QMessageBox::Icon iconOf(UserInterface::Severity severity) {
  using Severity = UserInterface::Severity;
  if (severity == Severity::Information) return QMessageBox::Information;
  return severity == Severity::Warning ? QMessageBox::Warning : QMessageBox::Critical;
}

}  // namespace

void showMessage(QWidget* parent, UserInterface::Severity severity, const QString& text) {
  QMessageBox box(iconOf(severity), QStringLiteral("Ombrelian"), text, QMessageBox::Ok, parent);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

bool askQuestion(QWidget* parent, const QString& question, QMessageBox::StandardButton standard) {
  QMessageBox box(QMessageBox::Question, QStringLiteral("Ombrelian"), question,
                  QMessageBox::Yes | QMessageBox::No, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(standard);
  return box.exec() == QMessageBox::Yes;
}

QString plainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace ombrelian::ui
