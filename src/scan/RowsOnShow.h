#pragma once

#include <functional>

#include "tree/FolderTree.h"

namespace ombrelian {

/// A view of the tree and the lists, which hears when rows are removed or replaced. Without a
/// window nobody needs to be.
class RowsOnShow {
 public:
  virtual ~RowsOnShow() = default;

  /// Calls `change`, which takes nodes out of the tree or rows out of a list; what a view holds of
  /// them is good no longer.
  virtual void change(const std::function<void()>& change) { change(); }

  /// `twin` is about to take the place of `node`, with all that lies below either.
  virtual void willReplace(NodeIndex /*node*/, NodeIndex /*twin*/) {}
};

/// Null: nobody shows anything.
inline RowsOnShow& orNobody(RowsOnShow* rows) {
  static RowsOnShow nobody;  // keeps nothing
  return rows == nullptr ? nobody : *rows;
}

}  // namespace ombrelian
