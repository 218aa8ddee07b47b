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

/// Proposals for the dialog for choosing a file.
struct FileQuestion {
  QString folder;
  QString name;    // name with its extension; empty if none is proposed
  QString filter;  // "HTML (*.html)"
  QString extension;
  bool readOnly = false;  // whether other files can neither be renamed nor deleted there
};

/// The dialog that asks how and where to save the folder report or another list, and saves it. If
/// that fails, it stays open, so that the user can choose another name or format.
class SaveDialog : public QDialog {
  Q_OBJECT

 public:
  /// Writes the report to `target`, an absolute path, with the settings at that time.
  using Save = std::function<Failure(ReportFormat format, const Text& target, UserInterface& ui)>;

  /// Returns an absolute path, or an empty one if the user cancels. It has already asked whether an
  /// existing file may be replaced.
  using ChooseFile = std::function<QString(QWidget* parent, const FileQuestion& question)>;

  /// `hasSelectedRow`: a row of a tree is selected and can be saved alone. The options that
  /// `choices` refers to, and `settings`, must outlive the dialog.
  SaveDialog(const SaveChoices& choices, bool hasSelectedRow, Save save, IniStore& settings,
             QWidget* parent = nullptr);

  /// Sets the name of the list, which the title shows and which is the first proposal for a file.
  void setListName(const Text& name);

  /// Replaces the desktop's dialog for choosing a file.
  void setChooseFile(ChooseFile chooseFile) { chooseFile_ = std::move(chooseFile); }

  /// Lets the user neither rename nor delete files while choosing one.
  void setReadOnly() { isReadOnly_ = true; }

  bool isSaving() const { return isSaving_; }

  /// The file that was saved; empty if none was.
  const Text& target() const { return target_; }
  bool wasCancelled() const { return progress_->wasCancelled(); }
  std::uint64_t cutCells() const { return progress_->cutCells(); }

  /// Asks for a file and saves. Closes the dialog if that succeeded.
  void accept() override;

  /// Cancels a save that is running; otherwise closes the dialog.
  void reject() override;

  /// Stores the choices and the position of the dialog, and closes it.
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
  void followEnding(const Text& target);
  Failure save(const Text& target);
  void DisableControls(bool disable);

  const SaveChoices choices_;
  const Save save_;
  IniStore& settings_;
  ChooseFile chooseFile_;
  Text target_;
  Text listName_;
  bool isSaving_ = false;
  bool isReadOnly_ = false;

  QWidget* const controls_;
  SaveProgress* const progress_;
  QComboBox* cboFormat_ = nullptr;
  QLabel* lblDelimiter_ = nullptr;
  QComboBox* cboDelimiter_ = nullptr;
  QLineEdit* txtDelimiters_ = nullptr;
  QButtonGroup* optWasSpeichern_ =
      nullptr;  // this and the next three are null if the list is not a tree
  QButtonGroup* optLevels_ = nullptr;
  QLineEdit* txtLevels_ = nullptr;
  QCheckBox* chkShowFolderIndent_ = nullptr;
  QCheckBox* chkAddDividingLine_ = nullptr;
  QCheckBox* chkOpenFile_ = nullptr;
  QPushButton* OKButton_ = nullptr;
  QPushButton* CancelButton_ = nullptr;
};

}  // namespace ombrelian::ui
