#pragma once

#include <unordered_map>

#include "platform/FindData.h"
#include "settings/WalkFilters.h"
#include "support/Date.h"
#include "support/Text.h"
#include "tree/HardlinkNames.h"
#include "tree/NamePool.h"
#include "tree/NodeIndex.h"
#include "tree/ScanTotals.h"
#include "tree/SegmentedArray.h"

namespace ombrelian {
/// One folder, or the pseudo folder for the direct files of its parent. Rare values are stored
/// outside the nodes (FolderTree::errorText and others). Derived values (the size in other units,
/// the percentage) are computed when they are needed.
///
///   0  links        parent, first child, last child, next sibling   4 x 4
///  16  name         pointer, length, level                          8 + 4 + 4
///  32  size                                                         8
///  40  dates        modified, created, accessed                     3 x 8
///  64  counts       files ... errors                                6 x 4
///  88  attributes, owner, flags, device                             4 x 4
/// 104  inode                                                        8
struct FolderNode {
  enum Flag : std::uint32_t {
    IsFolder = 1,        // not set: the pseudo folder for the direct files of its parent
    IsError = 2,         // its listing failed, completely or in part
    IsJunction = 4,      // a reparse folder
    IsMountPoint = 8,    // with IsJunction: a mount point; IsJunction alone: a link
    HasOwner = 16,       // the owner was read
    IsFree = 32,         // not in the tree; the place is free for another folder
    IsCutOff = 64,       // its listing was stopped
    IsIncomplete = 128,  // it or a folder below was cut off
  };

  NodeIndex parent = kNoNode;
  NodeIndex firstChild = kNoNode;
  NodeIndex lastChild = kNoNode;
  NodeIndex nextSibling = kNoNode;

  const char16_t* nameUnits = nullptr;  // points into the tree's pool
  std::uint32_t nameLength = 0;
  std::uint32_t level = 0;  // depth; a root has 0

  std::int64_t size = 0;  // bytes of the whole subtree

  FileTime dateModified = 0;  // 0: none; not set on a junction that was not entered
  FileTime dateCreate = 0;
  FileTime dateAccess = 0;

  std::int32_t files = 0;       // files of the whole subtree; so are the counts below
  std::int32_t folders = 0;     // number without the folder itself
  std::int32_t subfolders = 0;  // direct subfolders that have nodes
  std::int32_t hardlinks = 0;
  std::int32_t junctions = 0;
  std::int32_t errors = 0;

  std::uint32_t attributes = 0;
  std::uint32_t owner = 0;  // number of an owner text of the tree, if HasOwner
  std::uint32_t flags = 0;
  std::uint32_t device = 0;  // number of a device of the tree
  std::uint64_t inode = 0;   // 0: unknown, as for pseudo folders

  bool hasChildren() const { return firstChild != kNoNode; }
  TextView name() const { return {nameUnits, nameLength}; }
  bool has(Flag flag) const { return (flags & flag) != 0; }
  void set(Flag flag) { flags |= flag; }
  void set(Flag flag, bool on) { flags = on ? flags | flag : flags & ~std::uint32_t(flag); }
};
static_assert(sizeof(FolderNode) <= 112, "a million folders should fit 112 MB");

/// What is known of a source besides its folder.
struct SourceFacts {
  Date created = 0;            // time when its scan began; 0: none
  HardlinkNames::Run run = 0;  // the run that scanned it
  WalkFilters filters;         // what its scan left out
  bool isLink = false;         // the source itself is a link; a deletion removes the link
  Text realPath;               // the source without links on the way; empty: the same as its name
};

/// The forest of all scanned sources. It owns its nodes and all their texts.
class FolderTree {
 public:
  FolderNode& operator[](NodeIndex index) { return nodes_[index]; }
  const FolderNode& operator[](NodeIndex index) const { return nodes_[index]; }

  /// First and last source; kNoNode if there is none. Sources are linked as siblings.
  NodeIndex firstRoot() const { return firstRoot_; }
  NodeIndex lastRoot() const { return lastRoot_; }
  bool empty() const { return firstRoot_ == kNoNode; }

  /// Number of places for nodes, used or free; every NodeIndex is smaller.
  std::uint32_t nodeCount() const { return nodes_.size(); }

  /// Greatest level in the tree; 0 when it is empty.
  std::uint32_t MaxFolderDepth() const { return maxFolderDepth_; }

  /// Adds a source after the last one. `path` has no trailing separator, unless it is a root.
  NodeIndex addRoot(TextView path);

  /// Adds a folder after the last child of `parent`; a pseudo folder if `isFolder` is false.
  NodeIndex addChild(NodeIndex parent, TextView name, bool isFolder);

  void rename(NodeIndex node, TextView name);

  /// Removes nodes and their subtrees from the tree. All names, and all references to these nodes,
  /// are invalid afterwards.
  void remove(const std::vector<NodeIndex>& nodes);

  /// Makes a node like `node` that is not in the tree. It can be filled while the tree does not
  /// change.
  NodeIndex addTwin(NodeIndex node);

  /// Replaces the values and the subtree of `node` with those of its twin. The name of `node` does
  /// not change, and the twin is removed. Names that were returned before are invalid afterwards.
  void adopt(NodeIndex node, NodeIndex twin);

  /// Identity of a folder on this machine; index 0: unknown.
  platform::FileIdentity identity(NodeIndex node) const;
  void setIdentity(NodeIndex node, const platform::FileIdentity& identity);

  /// Text of an owner number, and the number of an owner text.
  const Text& ownerText(std::uint32_t owner) const { return owners_[owner]; }
  std::uint32_t ownerCount() const { return std::uint32_t(owners_.size()); }
  std::uint32_t ownerNumber(TextView text);

  /// System text of a failed listing; empty if the listing did not fail.
  TextView errorText(NodeIndex node) const { return find(errorTexts_, node); }
  void setErrorText(NodeIndex node, Text text);

  /// Target of a reparse folder; empty for other folders.
  TextView junctionTarget(NodeIndex node) const { return find(junctionTargets_, node); }
  void setJunctionTarget(NodeIndex node, Text target);

  SourceFacts& facts(NodeIndex root) { return facts_[root]; }
  const SourceFacts& facts(NodeIndex root) const;

  /// The names that the scans counted once; empty unless they did.
  HardlinkNames& HardlinkSeen() { return hardlinkNames_; }

  /// Number of a new run of scans.
  HardlinkNames::Run addRun() { return ++runs_; }

  void clear();

  /// Sorts the children of `parent` by `before`; equal children keep their order.
  template <class Before>
  void sortChildren(NodeIndex parent, Before before);

  /// Puts the children of `parent` into the order of `order`, which contains each of them once.
  /// kNoNode means the sources.
  void orderChildren(NodeIndex parent, const std::vector<NodeIndex>& order);

 private:
  using Texts = std::unordered_map<NodeIndex, Text>;

  NodeIndex addNode(TextView name);
  static TextView find(const Texts& texts, NodeIndex node);
  void unlink(std::vector<NodeIndex> nodes);
  void release(NodeIndex top);
  void compactNames();

  SegmentedArray<FolderNode> nodes_;
  NamePool names_;
  NodeIndex firstRoot_ = kNoNode;
  NodeIndex lastRoot_ = kNoNode;
  std::uint32_t maxFolderDepth_ = 0;
  NodeIndex firstFree_ = kNoNode;  // free places are linked as siblings
  std::size_t freedUnits_ = 0;     // number of units of names_ that are not used any more
  std::vector<std::uint64_t> devices_;
  std::vector<Text> owners_;
  std::unordered_map<Text, std::uint32_t> ownerNumbers_;
  Texts errorTexts_;
  Texts junctionTargets_;
  std::unordered_map<NodeIndex, SourceFacts> facts_;  // by source
  HardlinkNames hardlinkNames_;
  HardlinkNames::Run runs_ = 0;
  std::vector<NodeIndex> order_;  // order of one sort; kept to reuse its memory
};

template <class Before>
void FolderTree::sortChildren(NodeIndex parent, Before before) {
  const FolderNode& node = nodes_[parent];
  if (node.firstChild == node.lastChild) return;
  order_.clear();
  for (NodeIndex child = node.firstChild; child != kNoNode; child = nodes_[child].nextSibling) {
    order_.push_back(child);
  }
  std::stable_sort(order_.begin(), order_.end(),
                   [&](NodeIndex a, NodeIndex b) { return before(nodes_[a], nodes_[b]); });
  orderChildren(parent, order_);
}

}  // namespace ombrelian
