#pragma once

#include <vector>

#include "fs/Owners.h"
#include "platform/FolderWalk.h"
#include "scan/ScanState.h"

namespace ombrelian {

/// Reads one source from the disk in a single pass: counts every file, makes a node for every
/// folder and feeds the lists. It has its own stack, so that the depth has no limit.
class Walker {
 public:
  /// `lists` is used instead of the lists of `state`; null in a run of several sources.
  Walker(const ScanState& state, DerivedLists* lists);

  /// Walks the folder `path` (ends in a separator), fills `node` and returns the totals of the
  /// subtree. After a cancel, the files of unfinished folders are not in the result, but they are
  /// in ScanContext::Total.
  ScanTotals Report_ScanFolders(TextView path, NodeIndex node);

 private:
  /// One folder on the path from the source to the folder that is being read.
  struct Frame {
    NodeIndex node;
    ScanTotals own;          // direct content
    ScanTotals result;       // totals of the finished subfolders
    std::size_t pathLength;  // length of path_ without this folder's name
    bool isOpen;             // there is a level of walk_ for it
    platform::ErrorCode unreadable = platform::kSuccess;  // why an entry of it has no facts
  };

  void walk();
  void enterSource(NodeIndex node);
  bool isCancelled();
  void showProgress(std::uint64_t interval);

  void cutOffFrames();
  void visit(const platform::FindData& entry);
  bool isLeftOut(const platform::FindData& entry);
  void visitFile(const platform::FindData& entry);
  void countSize(const platform::FindData& entry, std::int64_t size, std::int32_t links);
  void feedFile(const platform::FindData& entry, std::int64_t size, std::int32_t links);
  void reportUnreadable();

  void visitFolder(const platform::FindData& entry);
  NodeIndex addFolderNode(const platform::FindData& entry);
  void setOwner(const platform::FindData& entry, NodeIndex node);
  bool enterFolder(const platform::FindData& entry, NodeIndex node);
  void readJunction(const platform::FindData& entry, NodeIndex node);
  void countJunction();
  void feedUnentered(const platform::FindData& entry);
  void feedJunction(TextView path, TextView target, std::uint32_t tag);
  Text entryPath();

  void markError(NodeIndex node, platform::ErrorCode error);
  void finishFolder();
  void addPseudoFolder(const Frame& frame);
  void leaveFolder();
  void countError(const Text& text, TextView path);

  const Options& options_;
  FolderTree& tree_;
  ScanContext& context_;
  Log& log_;
  UserInterface& ui_;
  mCompare& filters_;
  DerivedLists* const lists_;
  const OwnerTexts owners_;
  const Text filesName_;  // "Dateien", the name of pseudo folders

  platform::FolderWalk walk_;
  std::vector<Frame> frames_;
  Text path_;                    // path of the innermost frame, ends in a separator
  std::int64_t errorLines_ = 0;  // errors of the source so far
  std::uint64_t lastProgressTick_ = 0;
  unsigned entriesUntilProgress_ = 0;
};

}  // namespace ombrelian
