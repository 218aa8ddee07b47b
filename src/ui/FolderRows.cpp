#include "ui/FolderRows.h"

#include "export/ReportList.h"
#include "lists/FolderSort.h"
#include "platform/Volumes.h"
#include "scan/Rename.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

bool isName(const Column& column) { return column.id == FolderColumnId::Name; }

}  // namespace

FolderRows::FolderRows(FolderTree& tree, FolderReport& report, const Options& options)
    : tree_(tree), report_(report), options_(options), shown_(report) {
  treeChanged();
}

Columns FolderRows::columns() const { return FolderReport::columns(); }

std::size_t FolderRows::rowOf(Id id) const {
  return id < tree_.nodeCount() ? shown_.rowOf(id) : kNoRow;
}

void FolderRows::treeChanged() {
  sortColumn_ = &FolderReport::columns()[FolderColumnId::Size - 1];
  sortedDescending_ = true;
  nodesWent();
}

void FolderRows::nodesWent() {
  report_.forgetFreeNodes();
  drives_.clear();
  for (NodeIndex root = tree_.firstRoot(); root != kNoNode; root = tree_[root].nextSibling) {
    if (platform::IsDriveRoot(tree_[root].name())) drives_.insert(root);
  }
  shown_.rebuild();
}

void FolderRows::sort(const Column& column, bool descending) {
  sortFolders(tree_, report_, column, descending);
  sortColumn_ = &column;
  sortedDescending_ = descending;
  shown_.rebuild();
}

RowLook FolderRows::look(std::size_t row) const {
  const FolderNode& node = tree_[shown_.node(row)];
  RowLook look;
  look.level = int(node.level);
  look.canExpand = node.hasChildren();
  look.isExpanded = look.canExpand && shown_.isExpanded(row);
  look.isError = node.has(FolderNode::IsError);
  look.icon = !node.has(FolderNode::IsFolder)      ? "files-group"
              : look.isError                       ? "folder-error"
              : node.has(FolderNode::IsJunction)   ? "folder-link"
              : drives_.contains(shown_.node(row)) ? "drive-local"
              : look.isExpanded                    ? "folder-open"
                                                   : "folder";
  return look;
}

Text FolderRows::rootCaption(NodeIndex root) const {
  Text caption(tree_[root].name());
  if (options_.FolderShowDriveLabel == 1) {
    const Text label = driveLabelOf(caption);
    if (!label.empty()) caption.append(u" (").append(label).append(u")");
  }
  if (const Date created = tree_.facts(root).created;
      options_.FolderShowCreateDate == 1 && created != 0) {
    const Text pattern = options_.DateFormat.empty() ? defaultDateFormat() : options_.DateFormat;
    caption.append(u" (").append(DatePattern(pattern).format(created)).append(u")");
  }
  return caption;
}

Text FolderRows::shown(std::size_t row, const Column& column) const {
  const NodeIndex node = shown_.node(row);
  if (!isName(column)) return RowSource::shown(row, column);
  Text name = tree_[node].parent == kNoNode ? rootCaption(node) : Text(tree_[node].name());
  if (tree_[node].has(FolderNode::IsIncomplete)) {
    name.append(u" \u2013 ").append(TL(9705, u"unvollständig"));
  }
  return name;
}

Text FolderRows::toolTip(std::size_t row, const Column& column) const {
  if (!isName(column)) return RowSource::toolTip(row, column);
  const NodeIndex index = shown_.node(row);
  const FolderNode& node = tree_[index];
  if (!tree_.errorText(index).empty() && !node.has(FolderNode::IsJunction))
    return Text(tree_.errorText(index));
  if (!node.has(FolderNode::IsJunction)) return path(row);
  return TL(2224, u"Junction Zielordner").append(u":\r\n").append(tree_.junctionTarget(index));
}

Text FolderRows::path(std::size_t row) const {
  NodeIndex node = shown_.node(row);
  if (!tree_[node].has(FolderNode::IsFolder)) node = tree_[node].parent;
  return Report_GetFullpathOfNode(tree_, node, false, false);
}

bool FolderRows::canRename(std::size_t row, const Column& column) const {
  const FolderNode& node = tree_[shown_.node(row)];
  return isName(column) && node.has(FolderNode::IsFolder) && node.parent != kNoNode;
}

Text FolderRows::rename(std::size_t row, const Text& name) {
  Text error = renameFolder(tree_, path(row), name);
  nodesWent();
  return error;
}

bool FolderRows::nameHas(NodeIndex node, const QString& text) const {
  return toQStringView(tree_[node].name()).contains(text, Qt::CaseInsensitive);
}

bool FolderRows::holds(std::size_t row, const QString& text) const {
  return nameHas(shown_.node(row), text);
}

MatchCount FolderRows::countMatches(const QString& text, int milliseconds) {
  MatchCounter counter(milliseconds);
  for (NodeIndex root = tree_.firstRoot(); root != kNoNode; root = tree_[root].nextSibling) {
    for (NodeIndex node = root; node != kNoNode && counter.hasTime();
         node = nextInSubtree(tree_, node, root))
      counter.add(nameHas(node, text));
  }
  return counter.result();
}

/// Searches the whole tree, not only the rows that are shown.
std::optional<RowSource::Id> FolderRows::find(const QString& text, std::size_t from,
                                              bool backward) {
  std::vector<NodeIndex> all;
  std::size_t start = 0;
  const NodeIndex current = from < count() ? shown_.node(from) : kNoNode;
  for (NodeIndex root = tree_.firstRoot(); root != kNoNode; root = tree_[root].nextSibling) {
    for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree_, node, root)) {
      if (node == current) start = all.size();
      all.push_back(node);
    }
  }
  for (std::size_t step = 1; step <= all.size(); ++step) {
    const std::size_t at = (start + (backward ? all.size() - step : step)) % all.size();
    if (!nameHas(all[at], text)) continue;
    if (shown_.rowOf(all[at]) == ShownFolders::kNoRow) shown_.markAbove(all[at]);
    return all[at];
  }
  return std::nullopt;
}

}  // namespace ombrelian::ui
