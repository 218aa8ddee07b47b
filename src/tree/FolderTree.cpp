#include "tree/FolderTree.h"

#include <algorithm>

#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

/// Number of unused units of names below which it is not useful to free them.
constexpr std::size_t kFewUnits = std::size_t(1) << 20;

}  // namespace

NodeIndex FolderTree::addNode(TextView name) {
  NodeIndex index = firstFree_;
  if (index == kNoNode) {
    index = nodes_.add();
  } else {
    firstFree_ = nodes_[index].nextSibling;
    nodes_[index] = FolderNode();
  }
  FolderNode& node = nodes_[index];
  node.nameUnits = names_.keep(name).data();
  node.nameLength = std::uint32_t(name.size());
  return index;
}

NodeIndex FolderTree::addRoot(TextView path) {
  const NodeIndex root = addNode(path);
  nodes_[root].set(FolderNode::IsFolder);
  if (lastRoot_ == kNoNode) {
    firstRoot_ = root;
  } else {
    nodes_[lastRoot_].nextSibling = root;
  }
  lastRoot_ = root;
  return root;
}

NodeIndex FolderTree::addChild(NodeIndex parent, TextView name, bool isFolder) {
  const NodeIndex child = addNode(name);
  FolderNode& above = nodes_[parent];
  FolderNode& node = nodes_[child];
  node.parent = parent;
  node.level = above.level + 1;
  if (isFolder) {
    node.set(FolderNode::IsFolder);
    maxFolderDepth_ = std::max(maxFolderDepth_, node.level);
  }
  if (above.lastChild == kNoNode) {
    above.firstChild = child;
  } else {
    nodes_[above.lastChild].nextSibling = child;
  }
  above.lastChild = child;
  return child;
}

void FolderTree::rename(NodeIndex node, TextView name) {
  freedUnits_ += nodes_[node].nameLength;
  nodes_[node].nameUnits = names_.keep(name).data();
  nodes_[node].nameLength = std::uint32_t(name.size());
}

void FolderTree::remove(const std::vector<NodeIndex>& nodes) {
  unlink(nodes);
  for (const NodeIndex node : nodes)
    release(node);
  compactNames();
  if (empty()) clear();
}

/// Removes nodes from the chains of their siblings, each chain in one pass.
void FolderTree::unlink(std::vector<NodeIndex> nodes) {
  std::sort(nodes.begin(), nodes.end());
  const auto parentOf = [this](NodeIndex node) { return nodes_[node].parent; };
  std::vector<NodeIndex> parents(nodes.size());
  std::transform(nodes.begin(), nodes.end(), parents.begin(), parentOf);
  std::sort(parents.begin(), parents.end());
  parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
  for (const NodeIndex parent : parents) {
    NodeIndex& first = parent == kNoNode ? firstRoot_ : nodes_[parent].firstChild;
    NodeIndex& last = parent == kNoNode ? lastRoot_ : nodes_[parent].lastChild;
    NodeIndex node = first;
    first = last = kNoNode;
    for (; node != kNoNode; node = nodes_[node].nextSibling) {
      if (std::binary_search(nodes.begin(), nodes.end(), node)) continue;
      (last == kNoNode ? first : nodes_[last].nextSibling) = node;
      last = node;
    }
    if (last != kNoNode) nodes_[last].nextSibling = kNoNode;
  }
}

/// Frees the places of a subtree that was removed from the tree.
void FolderTree::release(NodeIndex top) {
  std::vector<NodeIndex> subtree;
  for (NodeIndex node = top; node != kNoNode; node = nextInSubtree(*this, node, top))
    subtree.push_back(node);
  for (const NodeIndex node : subtree) {
    errorTexts_.erase(node);
    junctionTargets_.erase(node);
    facts_.erase(node);
    freedUnits_ += nodes_[node].nameLength;
    nodes_[node] = FolderNode();
    nodes_[node].set(FolderNode::IsFree);
    nodes_[node].nextSibling = firstFree_;
    firstFree_ = node;
  }
}

/// Frees the memory of unused names when they are half of all names.
void FolderTree::compactNames() {
  if (freedUnits_ < kFewUnits || freedUnits_ * 2 < names_.units()) return;
  NamePool names;
  for (NodeIndex node = 0; node < nodes_.size(); ++node) {
    if (!nodes_[node].has(FolderNode::IsFree))
      nodes_[node].nameUnits = names.keep(nodes_[node].name()).data();
  }
  names_ = std::move(names);
  freedUnits_ = 0;
}

NodeIndex FolderTree::addTwin(NodeIndex node) {
  const Text name(nodes_[node].name());
  const NodeIndex twin = addNode(name);
  nodes_[twin].level = nodes_[node].level;
  nodes_[twin].set(FolderNode::IsFolder);
  for (const auto flag : {FolderNode::IsJunction, FolderNode::IsMountPoint}) {
    if (nodes_[node].has(flag)) nodes_[twin].set(flag);
  }
  return twin;
}

void FolderTree::adopt(NodeIndex node, NodeIndex twin) {
  std::vector<NodeIndex> below;
  for (NodeIndex child = nodes_[node].firstChild; child != kNoNode;
       child = nodes_[child].nextSibling)
    below.push_back(child);
  nodes_[node].firstChild = nodes_[node].lastChild = kNoNode;
  for (const NodeIndex child : below)
    release(child);
  const FolderNode old = nodes_[node];
  FolderNode fresh = nodes_[twin];
  fresh.parent = old.parent;
  fresh.nextSibling = old.nextSibling;
  fresh.nameUnits = old.nameUnits;
  fresh.nameLength = old.nameLength;
  nodes_[node] = fresh;
  for (NodeIndex child = fresh.firstChild; child != kNoNode; child = nodes_[child].nextSibling)
    nodes_[child].parent = node;
  errorTexts_.erase(node);
  if (const auto text = errorTexts_.extract(twin); !text.empty()) errorTexts_[node] = text.mapped();
  nodes_[twin].firstChild = nodes_[twin].lastChild = kNoNode;
  hardlinkNames_.moveFolder(twin, node);
  release(twin);
  compactNames();
}

platform::FileIdentity FolderTree::identity(NodeIndex node) const {
  const FolderNode& folder = nodes_[node];
  if (folder.inode == 0) return {};
  return {devices_[folder.device], folder.inode};
}

void FolderTree::setIdentity(NodeIndex node, const platform::FileIdentity& identity) {
  nodes_[node].inode = identity.index;
  if (identity.index == 0) return;
  if (devices_.empty() || devices_[nodes_[node].device] != identity.device) {
    const auto known = std::find(devices_.begin(), devices_.end(), identity.device);
    nodes_[node].device = std::uint32_t(known - devices_.begin());
    if (known == devices_.end()) devices_.push_back(identity.device);
  }
}

std::uint32_t FolderTree::ownerNumber(TextView text) {
  const auto [entry, isNew] = ownerNumbers_.try_emplace(Text(text), owners_.size());
  if (isNew) owners_.emplace_back(text);
  return entry->second;
}

TextView FolderTree::find(const Texts& texts, NodeIndex node) {
  const auto hit = texts.find(node);
  return hit == texts.end() ? TextView() : TextView(hit->second);
}

void FolderTree::setErrorText(NodeIndex node, Text text) { errorTexts_[node] = std::move(text); }

void FolderTree::setJunctionTarget(NodeIndex node, Text target) {
  junctionTargets_[node] = std::move(target);
}

const SourceFacts& FolderTree::facts(NodeIndex root) const {
  static const SourceFacts none;
  const auto hit = facts_.find(root);
  return hit == facts_.end() ? none : hit->second;
}

void FolderTree::orderChildren(NodeIndex parent, const std::vector<NodeIndex>& order) {
  for (std::size_t i = 0; i + 1 < order.size(); ++i)
    nodes_[order[i]].nextSibling = order[i + 1];
  nodes_[order.back()].nextSibling = kNoNode;
  (parent == kNoNode ? firstRoot_ : nodes_[parent].firstChild) = order.front();
  (parent == kNoNode ? lastRoot_ : nodes_[parent].lastChild) = order.back();
}

void FolderTree::clear() { *this = FolderTree(); }

}  // namespace ombrelian
