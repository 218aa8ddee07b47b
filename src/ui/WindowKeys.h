#pragma once

#include <QKeyEvent>

#include "ui/PaneArea.h"
#include "ui/SourceBox.h"

namespace ombrelian::ui {

/// Keys that work wherever the focus is in the window, if the focused control does not use them.
class WindowKeys {
 public:
  /// All arguments must outlive this object.
  WindowKeys(Panes& panes, PaneArea& area, SourceBox& sources)
      : panes_(panes), area_(area), sources_(sources) {}

  /// Acts on a key that was pressed; false: it is none of these keys.
  bool press(const QKeyEvent& event);

 private:
  bool pressButton() const;
  bool doListCommand(const QKeySequence& key);
  void goRound(bool backward);

  Panes& panes_;
  PaneArea& area_;
  SourceBox& sources_;
};

}  // namespace ombrelian::ui
