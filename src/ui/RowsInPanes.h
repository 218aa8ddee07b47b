#pragma once

#include "lists/FolderReport.h"
#include "scan/RowsOnShow.h"
#include "ui/Panes.h"

namespace ombrelian::ui {

/// The rows that the window shows while the tree changes, and with it the rows of one list.
class RowsInPanes : public RowsOnShow {
 public:
  /// `panes` and `report` must outlive this object. `changing`: the list whose rows are removed.
  RowsInPanes(Panes& panes, FolderReport& report, ListId changing = ListId::Folders)
      : panes_(panes), report_(report), changing_(changing) {}

  void change(const std::function<void()>& change) override;
  void willReplace(NodeIndex node, NodeIndex twin) override;

 private:
  Panes& panes_;
  FolderReport& report_;
  const ListId changing_;
};

}  // namespace ombrelian::ui
