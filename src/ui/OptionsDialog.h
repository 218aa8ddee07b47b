#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <functional>

#include "settings/Options.h"
#include "settings/z_INI.h"

class QBoxLayout;
class QToolButton;

namespace ombrelian::ui {

/// The dialog for the options that are not in the menus. It writes them into the settings file if
/// the user changed something and pressed OK; the caller makes them take effect.
class OptionsDialog : public QDialog {
  Q_OBJECT

 public:
  /// Registers the shell verb (mode 1) or removes it; returns the text of an error.
  using ShellVerb = std::function<Text(int mode)>;

  /// `settings` must outlive the dialog. `shellVerb` is called at once, to repair what is
  /// registered.
  OptionsDialog(IniStore& settings, ShellVerb shellVerb, QWidget* parent = nullptr);

  void accept() override;

 Q_SIGNALS:
  /// The user looks at a design, which is in force only after accept().
  void themeChosen(int theme);

  /// The user wants to read the page `name` of the help.
  void helpWanted(const QString& name);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeGeneral();
  QWidget* makeDateFormat();
  QWidget* makeThemes();
  QWidget* makePreviews();
  QToolButton* makeHelp(const QString& page, const Text& tip);
  QCheckBox* addCheckBox(QBoxLayout& layout, const char* name, const Text& caption,
                         std::uint8_t Options::*option);
  void OptionenLaden();
  void OptionenSpeichern();
  void showDate();
  void watchChanges();

  IniStore& settings_;
  const ShellVerb shellVerb_;
  Options options_;
  bool OptionenGeaendert_ = false;
  std::vector<std::pair<QCheckBox*, std::uint8_t Options::*>> checkBoxes_;
  std::vector<std::pair<QLineEdit*, Text Options::*>> extensions_;
  QComboBox* cboDate_ = nullptr;
  QLabel* lblDate_ = nullptr;
  QComboBox* cboTheme_ = nullptr;
};

}  // namespace ombrelian::ui
