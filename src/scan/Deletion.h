#pragma once

#include "fs/Deleting.h"
#include "lists/FileList.h"
#include "platform/Removal.h"
#include "scan/RowsOnShow.h"
#include "scan/ScanState.h"
#include "scan/Survey.h"
#include "tree/TreeEdit.h"

namespace ombrelian {

/// Deletes the objects that the user chose in the tree or a list, to the recycle bin or
/// permanently. It asks one question that names the objects, writes a line of the log for each
/// object, and keeps all numbers correct. An object that cannot be deleted stays in its list and in
/// all sums, and does not stop the others.
///
/// Rows are chosen by the ids of their grid, or by their nodes. Every procedure returns whether
/// anything was deleted.
class Deletion {
 public:
  /// References to `state` and `rows` are kept; `rows` may be null. With `recycle` objects are
  /// moved to the bin and are never deleted permanently instead.
  Deletion(const ScanState& state, RowsOnShow* rows, bool recycle);

  using Ids = std::vector<std::uint32_t>;

  /// Deletes folders of the tree. A folder below another chosen one is deleted with it; rows of
  /// direct files are ignored. The numbers of all folders above are lowered in every source that
  /// contains them. A folder that could only be deleted in part is read again.
  bool DeleteFolders(const std::vector<NodeIndex>& selected);
  bool Report_DeleteFolder(NodeIndex node) { return DeleteFolders({node}); }

  /// Deletes files of the shown folder and corrects the tree.
  bool List_Files_DeleteFiles(FileList& files, const Ids& selected);

  /// Deletes files of a top list or of the list of hardlinks, and corrects the tree.
  bool List_TOP_DeleteFiles(Grid& list, const Ids& selected);
  bool List_Hardlinks_DeleteFiles(Grid& list, const Ids& selected);

 private:
  struct Target {
    Target(platform::ShownObject shown, std::uint32_t row, std::int64_t bytes = 0)
        : object(std::move(shown)), id(row), file{bytes, false, {}} {}

    platform::ShownObject object;
    std::uint32_t id;           // id of the row, or the node
    GoneFile file;              // what the tree loses with it, if it is a file
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
  void takeOffFiles(const Targets& gone);
  void logGone(const Text& path);
  void fail(FailedObject object, const Text& line);
  void tell(FailedObject object);
  void tellFailures();
  bool goesOn(TextView path, std::uint64_t done);

  const ScanState state_;
  RowsOnShow& rows_;
  const bool recycles_;
  std::vector<FailedObject> failures_;  // the first failures, for the message to the user
  std::int64_t failureCount_ = 0;
  std::uint64_t all_ = 0;         // number of objects to delete; 0 while they are counted
  std::uint64_t doneBefore_ = 0;  // number of objects of the finished targets
  std::uint64_t lastProgressTick_ = 0;
  bool wasStopped_ = false;  // the user stopped the deletion; the other targets remain
};

/// A folder of the tree as an object to delete. Its path may contain links in the part of the
/// source, and links that the walk entered.
platform::ShownObject shownObject(const FolderTree& tree, NodeIndex node);

}  // namespace ombrelian
