#include "core/tree/FolderTree.h"

namespace ombrelian {

NodeIndex FolderTree::addNode(TextView name) {
  const NodeIndex index = nodes_.add();
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
  nodes_[node].nameUnits = names_.keep(name).data();
  nodes_[node].nameLength = std::uint32_t(name.size());
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

Date FolderTree::created(NodeIndex root) const {
  const auto hit = created_.find(root);
  return hit == created_.end() ? 0 : hit->second;
}

void FolderTree::setCreated(NodeIndex root, Date date) { created_[root] = date; }

void FolderTree::orderChildren(NodeIndex parent, const std::vector<NodeIndex>& order) {
  for (std::size_t i = 0; i + 1 < order.size(); ++i)
    nodes_[order[i]].nextSibling = order[i + 1];
  nodes_[order.back()].nextSibling = kNoNode;
  (parent == kNoNode ? firstRoot_ : nodes_[parent].firstChild) = order.front();
  (parent == kNoNode ? lastRoot_ : nodes_[parent].lastChild) = order.back();
}

void FolderTree::clear() { *this = FolderTree(); }

}  // namespace ombrelian
