#pragma once

#include "lists/FileList.h"
#include "platform/Removal.h"
#include "scan/RowsOnShow.h"
#include "scan/ScanState.h"
#include "scan/Survey.h"

namespace ombrelian {

/// Deletes what the user chose in the tree or a list, to the recycle bin or for good: one question
/// that tells what goes, a line of the log for each object, and numbers that stay true. What fails
/// stays in its list and in all sums, and never stops the others.
///
/// Rows are chosen by the ids of their grid, or their nodes. Every procedure returns whether
/// anything went.
class Deletion {
 public:
  /// `state` and `rows` are kept; `rows` may be null. With `recycle` objects move to the bin, and
  /// are never deleted for good instead.
  Deletion(const ScanState& state, RowsOnShow* rows, bool recycle);

  using Ids = std::vector<std::uint32_t>;

  /// Folders of the tree. One below another chosen one goes with that; rows of direct files are
  /// left alone. All folders above have their numbers lowered, in every source that shows them; of
  /// what could go in part alone the rest is read anew.
  bool DeleteFolders(const std::vector<NodeIndex>& selected);
  bool Report_DeleteFolder(NodeIndex node) { return DeleteFolders({node}); }

  /// Files of the shown folder; the tree follows.
  bool List_Files_DeleteFiles(FileList& files, const Ids& selected);

  /// Files of a top list or of the hardlinks; the tree goes on showing the last scan.
  bool List_TOP_DeleteFiles(Grid& list, const Ids& selected);
  bool List_Hardlinks_DeleteFiles(Grid& list, const Ids& selected);

 private:
  struct Target {
    Target(platform::ShownObject shown, std::uint32_t row, std::int64_t bytes = 0)
        : object(std::move(shown)), id(row), size(bytes) {}

    platform::ShownObject object;
    std::uint32_t id;           // id of the row, or the node
    std::int64_t size;          // bytes of a file
    bool isHardlink = false;    // has further names
    std::uint64_t objects = 1;  // the object and all objects below it
  };
  using Targets = std::vector<Target>;

  template <class Work>
  bool run(Work work);
  bool deleteFolders(Targets& targets, TextView question);
  bool deleteFolder(const platform::ShownObject& folder, bool& isTouched);
  Targets targetsOf(const Grid& list, const Ids& selected) const;
  static Ids idsOf(const Targets& targets);
  Targets deleteFiles(Targets targets);
  bool deleteFound(Grid& list, const Ids& selected);
  bool isConfirmed(Targets& targets, TextView question);
  bool survey(Targets& targets, Survey& survey);
  std::vector<Text> details(const Targets& targets, const Survey& survey) const;
  bool Delete_Files(const platform::ShownObject& file);
  void correctTree(const Targets& gone, const Targets& touched);
  void takeOffFolder(TextView folder, const Targets& gone);
  void logGone(const Text& path);
  void fail(const Text& line);
  void tellFailures();
  bool goesOn(TextView path, std::uint64_t done);

  const ScanState state_;
  RowsOnShow& rows_;
  const bool recycles_;
  std::vector<Text> failures_;  // the first of them, for the user
  std::int64_t failureCount_ = 0;
  std::uint64_t all_ = 0;         // objects to go; 0 while they are counted
  std::uint64_t doneBefore_ = 0;  // objects of the finished targets
  std::uint64_t lastProgressTick_ = 0;
  bool wasStopped_ = false;  // the user ended it; the other targets stayed
};

/// A folder of the tree as an object to delete: links may lie on the way to its source, and where
/// the walk entered one.
platform::ShownObject shownObject(const FolderTree& tree, NodeIndex node);

}  // namespace ombrelian
