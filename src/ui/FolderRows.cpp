#include "ui/FolderRows.h"

#include "export/ReportList.h"
#include "lists/FolderSort.h"
#include "lists/ListStatus.h"
#include "platform/Volumes.h"
#include "scan/Rename.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

bool isName(const Column& column) { return column.id == FolderColumnId::Name; }

/// Whether something below the folder could not be read or was not read to its end.
bool isPartial(const FolderNode& node) {
  return node.errors > 0 || node.has(FolderNode::IsIncomplete);
}

}  // namespace

FolderRows::FolderRows(FolderTree& tree, FolderReport& report, const Options& options)
    : tree_(tree), report_(report), options_(options), shown_(report) {
  treeChanged();
}

Columns FolderRows::columns() const { return FolderReport::columns(); }

std::size_t FolderRows::rowOf(Id id) const {
  return id < tree_.nodeCount() ? shown_.rowOf(id) : kNoRow;
}

/// A scan sorts the tree by size; another order that the user chose is restored.
void FolderRows::treeChanged() {
  const Column* const bySize = &FolderReport::columns()[FolderColumnId::Size - 1];
  if (sortColumn_ == nullptr) {
    sortColumn_ = bySize;
    sortedDescending_ = true;
  }
  nodesWent();
  if (sortColumn_ != bySize || !sortedDescending_)
    FolderRows::sort(*sortColumn_, sortedDescending_);
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
  look.isCompressed = (node.attributes & platform::kAttributeCompressed) != 0;
  look.icon = iconOf(shown_.node(row), look);
  return look;
}

const char* FolderRows::iconOf(NodeIndex index, const RowLook& look) const {
  const FolderNode& node = tree_[index];
  if (!node.has(FolderNode::IsFolder)) return "files-group";
  if (look.isError) return "folder-error";
  if (node.has(FolderNode::IsMountPoint)) return "folder-mount";
  if (node.has(FolderNode::IsJunction)) return "folder-link";
  if (isPartial(node)) return "folder-warning";
  if (drives_.contains(index)) return "drive-local";
  return look.isExpanded ? "folder-open" : "folder";
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
  Text tip = path(row);
  const auto add = [&tip](TextView line) { tip.append(u"\r\n").append(line); };
  if (node.has(FolderNode::IsJunction))
    add(TL(2224, u"Junction Zielordner") + u": " + Text(tree_.junctionTarget(index)));
  if (!tree_.errorText(index).empty()) {
    add(tree_.errorText(index));
  } else if (node.errors > 0) {
    add(TL(9860, u"Darunter nicht lesbar: %1", {statusCount(node.errors)}));
  }
  if (node.has(FolderNode::IsIncomplete)) add(TL(9705, u"unvollständig"));
  return tip;
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
