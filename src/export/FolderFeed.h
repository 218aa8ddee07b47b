#pragma once

#include "export/ReportSave.h"
#include "lists/FolderReport.h"

namespace ombrelian {

/// Depth limit of a save or a print. Levels are absolute: a source is level 0.
struct LevelLimit {
  enum class Kind { All, Number, Expanded };

  Kind kind = Kind::All;
  std::int32_t levels = 0;  // for Number: the deepest level with rows; 0: only sources
};

/// Gives the rows of the folder report from a start row on, in the order in which they are written.
/// The name of a row below a source is its full path; pseudo folders have their name in brackets.
class FolderFeed : public ReportFeed {
 public:
  /// A reference to `report` is kept. `start` is the first source if all sources are saved. With
  /// `single` it is a row, and only this row and the rows below it are saved.
  FolderFeed(const FolderReport& report, LevelLimit limit, NodeIndex start, bool single)
      : report_(report), limit_(limit), start_(start), single_(single) {}

  std::uint64_t rowCount() const override;
  void feed(ReportSink& sink) const override;

 private:
  /// State of a walk.
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
