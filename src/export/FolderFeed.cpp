#include "export/FolderFeed.h"

#include "fs/PathText.h"
#include "tree/TreeOrder.h"

namespace ombrelian {

namespace {

class CountingSink : public ReportSink {
 public:
  bool beginSource(const ReportSource&) override { return true; }
  bool row(const ReportRow&) override { return ++rows > 0; }
  void endSource() override {}

  std::uint64_t rows = 0;
};

}  // namespace

std::uint64_t FolderFeed::rowCount() const {
  if (limit_.kind == LevelLimit::Kind::All && !single_) return report_.tree().nodeCount();
  CountingSink sink;
  feed(sink);
  return sink.rows;
}

void FolderFeed::feed(ReportSink& sink) const {
  Walk walk{sink};
  NodeIndex source = start_;
  while (source != kNoNode && giveSource(walk, source))
    source = single_ ? kNoNode : report_.tree()[source].nextSibling;
}

/// Gives one source with its rows; false: the sink wants no more.
bool FolderFeed::giveSource(Walk& walk, NodeIndex source) const {
  const Text name = startName(source);
  const FolderTree& tree = report_.tree();
  const NodeIndex root = sourceOf(tree, source);
  if (!walk.sink.beginSource({name, tree.facts(root).created, notesOn(tree, root)})) return false;
  const bool goesOn = giveRow(walk, source, name, true) && giveChildren(walk, source, name);
  walk.sink.endSource();
  return goesOn;
}

bool FolderFeed::giveRow(Walk& walk, NodeIndex node, TextView name, bool isStart) const {
  return walk.sink.row({node, ++walk.number, name, report_.tree()[node].level, isStart});
}

/// Name of the row `node` if a save begins with it: the path of a source, else the full path.
Text FolderFeed::startName(NodeIndex node) const {
  const FolderTree& tree = report_.tree();
  if (tree[node].level == 0) return Text(tree[node].name());
  return Report_GetFullpathOfNode(tree, node, false, false);
}

bool FolderFeed::isWritten(const FolderNode& node) const {
  if (limit_.kind != LevelLimit::Kind::Number) return true;
  if (limit_.levels == 0) return !node.has(FolderNode::IsFolder);
  return std::int64_t(node.level) <= limit_.levels;
}

/// Whether there are rows below `start`. With a limit of 0 there is only the row of its direct
/// files.
bool FolderFeed::isStartFollowed(NodeIndex start) const {
  const FolderNode& row = report_.tree()[start];
  if (limit_.kind == LevelLimit::Kind::Number && limit_.levels == 0) return row.hasChildren();
  return isFollowed(start);
}

bool FolderFeed::isFollowed(NodeIndex node) const {
  const FolderNode& row = report_.tree()[node];
  if (!row.hasChildren()) return false;
  switch (limit_.kind) {
    case LevelLimit::Kind::All:
      return true;
    case LevelLimit::Kind::Number:
      return std::int64_t(row.level) < limit_.levels;
    case LevelLimit::Kind::Expanded:
      return report_.isExpanded(node);
  }
  return false;
}

/// Gives the rows below `start`, whose path is `path`.
bool FolderFeed::giveChildren(Walk& walk, NodeIndex start, Text path) const {
  const FolderTree& tree = report_.tree();
  if (!isStartFollowed(start)) return true;
  std::vector<std::size_t> lengths;  // length of the path above each visited level
  Text name;
  NodeIndex node = tree[start].firstChild;
  while (node != kNoNode) {
    const FolderNode& row = tree[node];
    name = path;
    if (row.has(FolderNode::IsFolder)) {
      appendName(name, row.name());
    } else {
      appendName(name, u"[").append(row.name()).append(u"]");
    }
    if (isWritten(row) && !giveRow(walk, node, name, false)) return false;
    if (row.has(FolderNode::IsFolder) && isFollowed(node)) {
      lengths.push_back(path.size());
      path = name;
      node = row.firstChild;
      continue;
    }
    while (tree[node].nextSibling == kNoNode && !lengths.empty()) {
      path.resize(lengths.back());
      lengths.pop_back();
      node = tree[node].parent;
    }
    node = tree[node].nextSibling;
  }
  return true;
}

}  // namespace ombrelian
