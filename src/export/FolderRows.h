#pragma once

#include <functional>
#include <optional>

#include "core/tree/FolderTree.h"
#include "lists/FolderReport.h"

namespace ombrelian {

/// How deep a save or a print goes. Levels are absolute: a source is level 0.
struct LevelLimit {
  enum class Kind { All, Number, Expanded };

  Kind kind = Kind::All;
  std::int32_t levels = 0;  // of Number: the deepest level that has rows; 0: sources only
};

/// The rows of a save below one start row, in the order in which they are written. Both the
/// measuring of widths and every writer go over them this way.
class FolderRows {
 public:
  /// Called for each row with its node and the name that it has in a report; false ends the walk.
  using Visitor = std::function<bool(NodeIndex node, const Text& name)>;

  FolderRows(const FolderReport& report, LevelLimit limit) : report_(report), limit_(limit) {}

  /// What the row `node` is called when a save begins with it: a source's own path, else the full
  /// path.
  Text startName(NodeIndex node) const;

  /// The children of `start` and what is below; false if the visitor ended the walk.
  bool visitChildren(NodeIndex start, const Visitor& visit) const;

 private:
  bool isWritten(const FolderNode& node) const;
  bool isStartFollowed(NodeIndex start) const;
  bool isFollowed(NodeIndex node) const;

  const FolderReport& report_;
  const LevelLimit limit_;
};

}  // namespace ombrelian
