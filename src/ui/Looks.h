#pragma once

#include "ui/DesktopScheme.h"
#include "ui/PaneArea.h"
#include "ui/WindowDialogs.h"

namespace ombrelian::ui {

/// The look of the window: design, font, icons, grid lines, sizes, and the language.
class Looks : public QObject {
  Q_OBJECT

 public:
  /// `main` and `header` are the commands of the two bars. All arguments must outlive this object;
  /// `window` is the parent of dialogs.
  Looks(WindowState& state, WindowDialogs& dialogs, Panes& panes, PaneArea& area, CommandSet& main,
        CommandSet& header, QWidget& window);

  /// Applies all options of the look.
  void applyLook();

  /// Applies the design, with the light or dark scheme of the desktop.
  void ChangeTheme();

  /// Shows the design `theme` until the next call of ChangeTheme().
  void previewTheme(int theme);

  /// Applies the design that was chosen in the menu, and stores it at once.
  void chooseTheme();

  void chooseFont();
  void ChangeFontSize(int step);

  /// Formats the cells of all lists anew, for example after the format of dates changed.
  void applyFormats();

  /// Updates a list after its size settings changed. Without a list, all lists get the size
  /// settings of the main bar.
  void changeSizes(std::optional<ListId> list);

  /// Stores the language for the next start, and offers to start again at once.
  void ChangeLanguage(int language);

 Q_SIGNALS:
  /// The user wants the program to end and to start again.
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
