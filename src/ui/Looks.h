#pragma once

#include "ui/DesktopScheme.h"
#include "ui/PaneArea.h"
#include "ui/WindowDialogs.h"

namespace ombrelian::ui {

/// How everything looks: design, font, icons, grid lines, sizes, and the language.
class Looks : public QObject {
  Q_OBJECT

 public:
  /// `main` and `header` are the commands of the two bars. All must outlive this object; dialogs
  /// belong to `window`.
  Looks(WindowState& state, WindowDialogs& dialogs, Panes& panes, PaneArea& area, CommandSet& main,
        CommandSet& header, QWidget& window);

  /// Takes up everything that the options say of looks.
  void applyLook();

  /// Takes up the design, and whether the desktop is dark.
  void ChangeTheme();

  /// Takes up the design that was chosen in the menu, and stores it at once.
  void chooseTheme();

  void chooseFont();
  void ChangeFontSize(int step);

  /// Shows a list under new size settings; with none all lists get those of the folder report,
  /// which are what the main bar shows.
  void changeSizes(std::optional<ListId> list);

  /// Stores the language for the next start, and offers to start again at once.
  void ChangeLanguage(int language);

 Q_SIGNALS:
  /// The program is to end and to start again.
  void restartWanted();

 private:
  void applyFont();

  WindowState& state_;
  WindowDialogs& dialogs_;
  Panes& panes_;
  PaneArea& area_;
  CommandSet& main_;
  CommandSet& header_;
  QWidget& window_;
  DesktopScheme scheme_;
};

}  // namespace ombrelian::ui
