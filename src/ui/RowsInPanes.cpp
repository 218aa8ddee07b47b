#include "ui/RowsInPanes.h"

namespace ombrelian::ui {

void RowsInPanes::change(const std::function<void()>& change) {
  // The selected rows are the deleted ones, and updating a large selection row by row would be
  // slow.
  panes_.pane(changing_).list().clearSelection();
  const auto changeTree = [&] {
    panes_.pane(ListId::Folders).model().rearrange([&] {
      change();
      panes_.folders().nodesWent();
    });
  };
  if (changing_ == ListId::Folders) {
    changeTree();
  } else {
    panes_.pane(changing_).model().rearrange(changeTree);
  }
}

void RowsInPanes::willReplace(NodeIndex node, NodeIndex twin) { report_.carryExpanded(node, twin); }

}  // namespace ombrelian::ui
