#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <functional>

#include "export/ReportWriter.h"
#include "settings/z_INI.h"
#include "ui/SaveChoices.h"
#include "ui/SaveProgress.h"

namespace ombrelian::ui {

/// What the question for a file begins with.
struct FileQuestion {
  QString folder;
  QString name;    // with its extension; empty: none is proposed
  QString filter;  // "HTML (*.html)"
  QString extension;
  bool readOnly = false;  // other files can neither be renamed nor deleted where it is asked
};

/// Asks how a list is to be saved and where, and saves it: the folder report, or any other list.
/// It stays open where a save failed, so that another name or format can be chosen.
class SaveDialog : public QDialog {
  Q_OBJECT

 public:
  /// Writes the report as `target` (absolute), by the settings as they are then.
  using Save = std::function<Failure(ReportFormat format, const Text& target, UserInterface& ui)>;

  /// Answers with an absolute path; empty: the user wants none. Whoever answers has asked whether
  /// a file of that name may be replaced.
  using ChooseFile = std::function<QString(QWidget* parent, const FileQuestion& question)>;

  /// `hasSelectedRow`: something can be chosen to be saved alone; of a tree only. What `choices`
  /// refers to and `settings` must outlive the dialog.
  SaveDialog(const SaveChoices& choices, bool hasSelectedRow, Save save, IniStore& settings,
             QWidget* parent = nullptr);

  /// In place of the desktop's own dialog.
  void setChooseFile(ChooseFile chooseFile) { chooseFile_ = std::move(chooseFile); }

  /// Nothing but the report can be changed from here.
  void setReadOnly() { isReadOnly_ = true; }

  bool isSaving() const { return isSaving_; }

  /// The file that was saved; empty: none.
  const Text& target() const { return target_; }
  bool wasCancelled() const { return progress_->wasCancelled(); }

  /// Asks for a file and saves; closes if that went well.
  void accept() override;

  /// Ends a save that is under way, and closes otherwise.
  void reject() override;

  /// Closing stores what is chosen and where the dialog stands.
  void done(int result) override;

 private:
  QLayout* makeFormats();
  QLayout* makeTreeControls(bool hasSelectedRow);
  QWidget* makeLevels();
  QLayout* makeCheckBoxes();
  QWidget* makeButtons();
  void showChoices();
  void takeChoices();
  void cboFormat_Click();
  void cboDelimiter_Click();
  ReportFormat chosenFormat() const;
  QString askForFile();
  Failure save(const Text& target);
  void DisableControls(bool disable);

  const SaveChoices choices_;
  const Save save_;
  IniStore& settings_;
  ChooseFile chooseFile_;
  Text target_;
  bool isSaving_ = false;
  bool isReadOnly_ = false;

  QWidget* const controls_;
  SaveProgress* const progress_;
  QComboBox* cboFormat_ = nullptr;
  QLabel* lblDelimiter_ = nullptr;
  QComboBox* cboDelimiter_ = nullptr;
  QLineEdit* txtDelimiters_ = nullptr;
  QButtonGroup* optWasSpeichern_ = nullptr;  // the next four are null but for a tree
  QButtonGroup* optLevels_ = nullptr;
  QLineEdit* txtLevels_ = nullptr;
  QCheckBox* chkShowFolderIndent_ = nullptr;
  QCheckBox* chkAddDividingLine_ = nullptr;
  QCheckBox* chkOpenFile_ = nullptr;
  QPushButton* OKButton_ = nullptr;
  QPushButton* CancelButton_ = nullptr;
};

}  // namespace ombrelian::ui
