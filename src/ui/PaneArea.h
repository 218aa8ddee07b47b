#pragma once

#include <QSplitter>
#include <QStackedWidget>

#include "ui/Panes.h"

namespace ombrelian::ui {

/// The middle of the window: the folder report on the left, one of the other lists on the right,
/// and above that the bar that chooses it.
class PaneArea : public QSplitter {
  Q_OBJECT

 public:
  /// `header` are the commands of the bar. All arguments must outlive the area.
  PaneArea(Panes& panes, CommandSet& header, Session& session, QWidget* parent);

  /// The list on the right side, also while that side is hidden.
  ListId rightList() const { return shownList(session_.options); }

  bool isLeftVisible() const { return session_.options.ShownSides != kRightSide; }
  bool isRightVisible() const { return session_.options.ShownSides != kLeftSide; }

  /// The list that has the keyboard focus, or had it last.
  ListId focusedList() const;

  /// Gives the focus back to the list that had it last, if no other control has taken it; a button
  /// got it only because the list or the source field was disabled.
  void restoreFocus();

  /// Shows what a scan found on the right side, with a selected row: the files of the source, or
  /// the list that was used last.
  void showResults();

  /// Shows a list on the right side and gives it the focus.
  void Change_ButtonHeaderActive(ListId list);
  void showTopLists();

  void showSides(bool left, bool right);

  /// Gives the folder pane the width of its columns, but the other side keeps its smallest width.
  void Report_Resize_Width();

  /// Fits the columns of a list, and for the tree also the width of its pane.
  void fitColumns(ListId list);

  /// Shows as many words on the bar above the right side as fit.
  void fitHeaderBar();

  void loadWidths(const IniStore& settings);
  void storeWidths(IniStore& settings) const;

 Q_SIGNALS:
  /// The user changed the shown list, or showed or hid a side.
  void shownChanged(ListId list);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  /// Values of Options::ShownSides; frozen.
  enum Sides : std::uint8_t { kBothSides = 0, kLeftSide = 1, kRightSide = 2 };

  void makeRightSide();
  void Change_Info_Visibility();
  void keepDivider();

  Panes& panes_;
  CommandSet& header_;
  Session& session_;
  QWidget* right_;
  QStackedWidget* stack_;
  QToolBar* headerBar_ = nullptr;
  ListId lastFocused_ = ListId::Folders;
  ListId lastList_ = ListId::Files;  // the last list on the right side that was not the drives
};

}  // namespace ombrelian::ui
