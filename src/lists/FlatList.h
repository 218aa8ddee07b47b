#pragma once

#include <optional>
#include <vector>

#include "lists/Grid.h"
#include "support/Date.h"

namespace ombrelian {

/// Origin of the rows of a list if they are not from the sources of the tree.
struct ListOrigin {
  Text path;        // folder of the rows; empty: none
  Date readAt = 0;  // local time
};

/// Functions of every list except the folder tree.
class FlatList {
 public:
  virtual ~FlatList() = default;

  virtual Grid& grid() = 0;

  /// Text of the status line for the list; with `selected` rows it includes their number and size.
  virtual Text status(const std::vector<Grid::RowIndex>& selected) const = 0;

  /// Origin of the rows; empty: the sources of the tree.
  virtual std::optional<ListOrigin> origin() const { return std::nullopt; }
};

}  // namespace ombrelian
