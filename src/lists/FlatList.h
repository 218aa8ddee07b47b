#pragma once

#include <optional>
#include <vector>

#include "lists/Grid.h"
#include "support/Date.h"

namespace ombrelian {

/// Where the rows of a list come from, if not from the sources of the tree.
struct ListOrigin {
  Text path;        // empty: no folder of its own
  Date readAt = 0;  // local time
};

/// What every list but the folder tree answers.
class FlatList {
 public:
  virtual ~FlatList() = default;

  virtual Grid& grid() = 0;

  /// What the status line says of the list; with `selected` rows their number and size too.
  virtual Text status(const std::vector<Grid::RowIndex>& selected) const = 0;

  /// Empty: the rows come from the sources of the tree.
  virtual std::optional<ListOrigin> origin() const { return std::nullopt; }
};

}  // namespace ombrelian
