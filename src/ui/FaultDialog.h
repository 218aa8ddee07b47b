#pragma once

#include <QDialog>

#include "support/Text.h"

class QPlainTextEdit;

namespace ombrelian::ui {

/// Shows a report about an error of the program. The user can save it, mail it, and end the
/// program.
class FaultDialog : public QDialog {
  Q_OBJECT

 public:
  /// `introduction` says what happened.
  FaultDialog(const Text& introduction, const Text& report, QWidget* parent = nullptr);

 private:
  void cmdEmail_Click();
  void cmdSpeichern_Click();

  const Text report_;
  QPlainTextEdit* txtInfo_;
};

/// What an error in the middle of the work calls for.
Text faultIntroduction();

/// The address for a mail with the report, encoded as mail programs expect it.
std::string mailAddress(const Text& address);

}  // namespace ombrelian::ui
