#pragma once

#include <functional>

#include "tree/FolderTree.h"

namespace ombrelian {

/// A view of the tree and the lists, which is notified when rows are removed or replaced. A run
/// without a window needs no view.
class RowsOnShow {
 public:
  virtual ~RowsOnShow() = default;

  /// Calls `change`, which removes nodes from the tree or rows from a list; references to them are
  /// invalid afterwards.
  virtual void change(const std::function<void()>& change) { change(); }

  /// `twin` and its subtree are about to replace `node` and its subtree.
  virtual void willReplace(NodeIndex /*node*/, NodeIndex /*twin*/) {}
};

/// The view, or a view that does nothing if `rows` is null.
inline RowsOnShow& orNobody(RowsOnShow* rows) {
  static RowsOnShow nobody;  // has no state
  return rows == nullptr ? nobody : *rows;
}

}  // namespace ombrelian
