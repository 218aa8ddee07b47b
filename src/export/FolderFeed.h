#pragma once

#include "export/ReportSave.h"
#include "lists/FolderReport.h"

namespace ombrelian {

/// How deep a save or a print goes. Levels are absolute: a source is level 0.
struct LevelLimit {
  enum class Kind { All, Number, Expanded };

  Kind kind = Kind::All;
  std::int32_t levels = 0;  // for Number the deepest level that has rows; 0: sources only
};

/// The rows of the folder report from a start row on, in the order in which they are written. Rows
/// below a source are called by their full path, pseudo folders with the name in brackets.
class FolderFeed : public ReportFeed {
 public:
  /// Keeps `report` by reference. `start`: the first source, for all of them; or a row to save
  /// with what is below it alone if `single`.
  FolderFeed(const FolderReport& report, LevelLimit limit, NodeIndex start, bool single)
      : report_(report), limit_(limit), start_(start), single_(single) {}

  std::uint64_t rowCount() const override { return report_.tree().nodeCount(); }
  void feed(ReportSink& sink) const override;

 private:
  /// What a walk keeps.
  struct Walk {
    ReportSink& sink;
    std::uint64_t number = 0;  // number of the last row
  };

  Text startName(NodeIndex node) const;
  bool giveRow(Walk& walk, NodeIndex node, TextView name, bool isStart) const;
  bool giveSource(Walk& walk, NodeIndex source) const;
  bool giveChildren(Walk& walk, NodeIndex start, Text path) const;
  bool isWritten(const FolderNode& node) const;
  bool isStartFollowed(NodeIndex start) const;
  bool isFollowed(NodeIndex node) const;

  const FolderReport& report_;
  const LevelLimit limit_;
  const NodeIndex start_;
  const bool single_;
};

}  // namespace ombrelian
