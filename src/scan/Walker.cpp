#include "scan/Walker.h"

#include <unordered_set>

#include "fs/Links.h"
#include "fs/z_Filesystem.h"
#include "platform/Process.h"
#include "platform/Time.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::FindData;

constexpr std::uint64_t kProgressIntervalMs = 1000;
constexpr std::uint64_t kSilentProgressIntervalMs = 100;
constexpr std::int64_t kMostErrorLines = 1000;  // lines of the log for one source
constexpr unsigned kEntriesBetweenClocks = 64;  // entries between two reads of the clock if silent

}  // namespace

Walker::Walker(const ScanState& state, DerivedLists* lists)
    : options_(state.options),
      tree_(state.tree),
      context_(state.context),
      log_(state.log),
      ui_(state.ui),
      filters_(state.filters),
      lists_(lists),
      filesName_(TL(3514, u"Dateien")),
      walk_(state.context.helpers, platform::WalkReach::Tree, state.filters.folderFilter()) {}

ScanTotals Walker::Report_ScanFolders(TextView path, NodeIndex node) {
  path_ = path;
  frames_.clear();
  errorLines_ = 0;
  enterSource(node);
  walk();
  if (errorLines_ > kMostErrorLines) {
    log_.LogProtokoll(TL(9880, u"Weitere Fehler in dieser Quelle, ohne eigene Zeile: %1",
                         {toText(errorLines_ - kMostErrorLines)}),
                      true);
  }
  return frames_.front().result;
}

void Walker::enterSource(NodeIndex node) {
  frames_.push_back({node, {}, {}, path_.size(), true});
  const ErrorCode error = walk_.openSource(path_);
  if (error == platform::kSuccess) return;
  frames_.back().isOpen = false;
  markError(node, error);
}

/// Walks the source. At the end only the frame of the source remains, with its complete result.
void Walker::walk() {
  bool cancelled = false;
  for (;;) {
    const bool wasCancelled = cancelled;
    const FindData* const entry = frames_.back().isOpen && !cancelled ? walk_.nextEntry() : nullptr;
    if (entry != nullptr && !(cancelled = isCancelled())) {
      if (!isLeftOut(*entry)) visit(*entry);
      continue;
    }
    cancelled = cancelled || walk_.hasGivenUp();
    if (cancelled && !wasCancelled) cutOffFrames();
    if (!cancelled) finishFolder();
    if (frames_.back().isOpen) walk_.goOut();
    if (frames_.size() == 1) return;
    leaveFolder();
  }
}

/// Marks the folders whose listing the user stopped or whose file system does not answer. Their
/// direct files are in no sum, so other names of these files must count.
void Walker::cutOffFrames() {
  // A folder that could not be opened has its error already.
  if (walk_.hasGivenUp() && frames_.back().isOpen) {
    markError(frames_.back().node, platform::kTimeout);
  }
  std::unordered_set<NodeIndex> nodes;
  for (const Frame& frame : frames_) {
    cutOff(tree_[frame.node]);
    nodes.insert(frame.node);
  }
  tree_.HardlinkSeen().removeFolders([&](NodeIndex folder) { return nodes.contains(folder); });
}

void Walker::visit(const FindData& entry) {
  if (entry.statError != platform::kSuccess) frames_.back().unreadable = entry.statError;
  if (entry.isFolder()) {
    visitFolder(entry);
  } else {
    visitFile(entry);
  }
}

/// Shows the progress and handles user input. True: the user cancelled.
bool Walker::isCancelled() {
  if (platform::StopSignal() != 0) return true;
  if (context_.SilentMode) {
    if (entriesUntilProgress_-- == 0) {
      entriesUntilProgress_ = kEntriesBetweenClocks;
      showProgress(kSilentProgressIntervalMs);
    }
    return false;
  }
  showProgress(kProgressIntervalMs);
  if (ui_.GetInputState()) ui_.yield();
  return context_.ScanCancelState == kScanCancelRequested && !context_.IgnoresCancel;
}

void Walker::showProgress(std::uint64_t interval) {
  const std::uint64_t now = platform::GetTickCount();
  if (now <= lastProgressTick_ + interval) return;
  ui_.scanProgress(path_, context_.Total.Files, context_.Total.Folders, context_.Total.Size);
  if (!context_.SilentMode) ui_.yield();
  lastProgressTick_ = platform::GetTickCount();
}

/// Whether the user's filters exclude the entry, which is then not counted at all.
bool Walker::isLeftOut(const FindData& entry) {
  const bool isFolder = entry.isFolder();
  if (isFolder ? !filters_.filtersFolders() : !filters_.filtersFiles()) return false;
  const TextView name = walk_.name();
  const std::size_t length = path_.size();
  path_ += name;
  const bool isOut = isFolder ? filters_.CheckFolderFilter(name, path_)
                              : filters_.Check_FolderList_FileFilter(name, path_);
  path_.resize(length);
  return isOut;
}

void Walker::visitFile(const FindData& entry) {
  ScanTotals& own = frames_.back().own;
  ++own.Files;
  ++context_.Total.Files;
  if (entry.dwReserved0 == platform::kTagMountPoint) {
    // Another file is mounted on it: a junction without a size.
    countJunction();
    return feedUnentered(entry);
  }
  const std::int64_t size = xGetFileSizeByWFD_W(entry);
  const std::int32_t links = context_.ReadHardlinkCounts ? hardlinkCount(entry) : 0;
  if (links > 0) {
    ++own.Hardlinks;
    ++context_.Total.Hardlinks;
  }
  countSize(entry, size, links);
  if (lists_ != nullptr) feedFile(entry, size, links);
}

void Walker::countSize(const FindData& entry, std::int64_t size, std::int32_t links) {
  if (options_.AddHardlinksOnlyOnce != 0 && links > 0) {
    HardlinkNames& seen = tree_.HardlinkSeen();
    if (!seen.add(context_.run, entry.identity, frames_.back().node, size)) return;
  }
  std::int64_t& own = frames_.back().own.Size;
  own = addSizes(own, size);
  context_.Total.Size = addSizes(context_.Total.Size, size);
}

void Walker::feedFile(const FindData& entry, std::int64_t size, std::int32_t links) {
  TextView owner;
  if (options_.CreateListOwner == 1 && context_.KeepsOwners) owner = owners_.of(true, entry);
  lists_->feedFile({walk_.name(), path_, entry, size, links, owner});
}

Text Walker::entryPath() {
  Text path = path_;
  return path += walk_.name();
}

/// Reports once that entries of the innermost folder count, but that nothing is known of them.
void Walker::reportUnreadable() {
  Text text = xGetErrorText(false, frames_.back().unreadable);
  countError(text, path_);
  tree_.setErrorText(frames_.back().node, std::move(text));
}

void Walker::visitFolder(const FindData& entry) {
  const bool isJunction = entry.isReparse();
  const bool isWanted = !isJunction || options_.ScanHardlinks == 1;
  if (isJunction) countJunction();
  if (!isWanted && options_.NoHardlinks != 0) return feedUnentered(entry);
  ++frames_.back().own.Folders;
  ++context_.Total.Folders;
  const NodeIndex node = addFolderNode(entry);
  if (isWanted && enterFolder(entry, node)) return;
  tree_[node].junctions = 1;
  if (lists_ != nullptr) feedJunction(entryPath(), tree_.junctionTarget(node), entry.dwReserved0);
}

NodeIndex Walker::addFolderNode(const FindData& entry) {
  const NodeIndex node = tree_.addChild(frames_.back().node, walk_.name(), true);
  tree_.setIdentity(node, entry.identity);
  if (options_.ShowFolderOwner != 0 || options_.CreateListOwner != 0) setOwner(entry, node);
  if (entry.isReparse()) readJunction(entry, node);
  return node;
}

void Walker::setOwner(const FindData& entry, NodeIndex node) {
  const TextView owner = owners_.of(context_.KeepsOwners, entry);
  tree_[node].owner = tree_.ownerNumber(owner);
  tree_[node].set(FolderNode::HasOwner);
  if (lists_ != nullptr && options_.CreateListOwner == 1) lists_->feedFolder(owner);
}

void Walker::readJunction(const FindData& entry, NodeIndex node) {
  tree_[node].set(FolderNode::IsJunction);
  if (entry.dwReserved0 == platform::kTagMountPoint) tree_[node].set(FolderNode::IsMountPoint);
  ErrorCode error = platform::kSuccess;
  tree_.setJunctionTarget(node, walk_.reparseTarget(entryPath(), error));
  // The folder itself could be read. Its row shows why the target is missing, and no error is
  // counted.
  if (error != platform::kSuccess) tree_.setErrorText(node, xGetErrorText(false, error));
}

void Walker::countJunction() {
  ++frames_.back().own.Junctions;
  ++context_.Total.Junctions;
}

/// Lists a junction that has no node. Its target is read only for the list.
void Walker::feedUnentered(const FindData& entry) {
  if (lists_ == nullptr || options_.CreateListJunction != 1) return;
  const Text path = entryPath();
  ErrorCode error = platform::kSuccess;
  feedJunction(path, walk_.reparseTarget(path, error), entry.dwReserved0);
}

void Walker::feedJunction(TextView path, TextView target, std::uint32_t tag) {
  if (options_.CreateListJunction == 1) lists_->feedJunction({path, target, tag});
}

/// Adds a frame for the folder of the current entry. False: the folder is a junction that cannot be
/// entered, because it leads to one of its own ancestors or to a file system without files.
bool Walker::enterFolder(const FindData& entry, NodeIndex node) {
  const std::size_t pathLength = path_.size();
  path_ += walk_.name();
  path_ += platform::kNativeSeparator;
  const ErrorCode error = walk_.goIn();
  if (entry.isReparse() && (error == platform::kLinkLoop || error == platform::kNotSupported)) {
    path_.resize(pathLength);
    return false;
  }
  FolderNode& folder = tree_[node];
  folder.dateModified = entry.ftLastWriteTime;
  folder.dateCreate = entry.ftCreationTime;
  folder.dateAccess = entry.ftLastAccessTime;
  folder.attributes = entry.dwFileAttributes;
  frames_.push_back({node, {}, {}, pathLength, error == platform::kSuccess});
  // A folder that was removed during the walk counts as empty.
  if (error != platform::kSuccess && !platform::isMissing(error)) markError(node, error);
  return true;
}

void Walker::countError(const Text& text, TextView path) {
  ++frames_.back().own.Errors;
  ++context_.Total.Errors;
  if (++errorLines_ > kMostErrorLines) return;  // nobody can fill the log with a folder of his own
  Text line = u"ERROR: ";
  line.append(text).append(u" (").append(path).append(u")");
  log_.LogProtokoll(line, true);
}

void Walker::markError(NodeIndex node, ErrorCode error) {
  Text text = xGetErrorText(false, error);
  tree_[node].set(FolderNode::IsError);
  countError(text, path_);
  tree_.setErrorText(node, std::move(text));
}

/// Ends a folder that was read completely: adds its direct content to the totals of its subfolders.
void Walker::finishFolder() {
  if (frames_.back().isOpen && walk_.listError() != platform::kSuccess) {
    markError(frames_.back().node, walk_.listError());
  } else if (frames_.back().unreadable != platform::kSuccess) {
    reportUnreadable();
  }
  Frame& frame = frames_.back();
  frame.result += frame.own;
  tree_[frame.node].subfolders = frame.own.Folders;
  if (lists_ != nullptr) lists_->feedFolderEnd(path_, frame.own);
  if (frame.own.Files > 0 && tree_[frame.node].firstChild != kNoNode) addPseudoFolder(frame);
}

/// Adds a row for the direct files of a folder that also has subfolders.
void Walker::addPseudoFolder(const Frame& frame) {
  const NodeIndex pseudo = tree_.addChild(frame.node, filesName_, false);
  Report_SetNodeSizeAndFilecount(tree_[pseudo], frame.own.Size, frame.own.Files);
  tree_[pseudo].hardlinks = frame.own.Hardlinks;
}

/// Writes the totals of the innermost folder to its node and adds them to the folder above.
void Walker::leaveFolder() {
  const Frame child = frames_.back();
  FolderNode& node = tree_[child.node];
  if (lists_ != nullptr && node.has(FolderNode::IsJunction)) {
    feedJunction(
        TextView(path_).substr(0, path_.size() - 1), tree_.junctionTarget(child.node),
        node.has(FolderNode::IsMountPoint) ? platform::kTagMountPoint : platform::kTagSymbolicLink);
  }
  frames_.pop_back();
  path_.resize(child.pathLength);
  Report_SetNodeSizeAndFilecount(node, child.result.Size, child.result.Files);
  node.folders = child.result.Folders;
  node.hardlinks = child.result.Hardlinks;
  node.junctions = child.result.Junctions;
  node.errors = child.result.Errors;
  frames_.back().result += child.result;
}

}  // namespace ombrelian
