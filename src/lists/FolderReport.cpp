#include "lists/FolderReport.h"

#include <unordered_map>

#include "lists/ListTable.h"
#include "platform/Time.h"

namespace ombrelian {
namespace {

using Id = FolderColumnId;

constexpr TextView kCountMask = u"*###,##0*;;;";

constexpr Column kColumns[] = {
    {Id::Name, 3571, u"Name", u"name", CellKind::PlainText},
    {Id::Size, 3583, u"Größe", u"size", CellKind::Size},
    {Id::Percent, 3698, u"Prozent", u"percent", CellKind::Percent},
    {Id::Files, 3573, u"Dateien", u"files", CellKind::Count, kCountMask},
    {Id::Folders, 3574, u"Ordner", u"folders", CellKind::Count, kCountMask},
    {Id::Subfolders, 3863, u"Unterordner", u"subfolders", CellKind::Count, kCountMask},
    {Id::Attributes, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {Id::Modified, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {Id::Created, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {Id::Accessed, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {Id::Hardlinks, 3790, u"Hardlinks", u"hardlinks", CellKind::Count, kCountMask},
    {Id::Junctions, 3791, u"Junctions", u"junctions", CellKind::Count, kCountMask},
    {Id::Owner, 3801, u"Besitzer", u"owner", CellKind::PlainText},
    {Id::Errors, 3792, u"Fehler", u"error", CellKind::Count, kCountMask},
    {Id::Depth, 2223, u"Ordnerebene", u"folderdepth", CellKind::Number},
    {Id::Target, 3738, u"Zielordner", u"junctiontarget", CellKind::PlainText},
};

std::int64_t countOf(int id, const FolderNode& node) {
  switch (id) {
    case Id::Files:
      return node.files;
    case Id::Folders:
      return node.folders;
    case Id::Subfolders:
      return node.subfolders;
    case Id::Hardlinks:
      return node.hardlinks;
    case Id::Junctions:
      return node.junctions;
    case Id::Errors:
      return node.errors;
    default:
      return node.level;
  }
}

FileTime fileTime(int id, const FolderNode& node) {
  switch (id) {
    case Id::Modified:
      return node.dateModified;
    case Id::Created:
      return node.dateCreate;
    default:
      return node.dateAccess;
  }
}

}  // namespace

FolderReport::FolderReport(const FolderTree& tree, const Options& options)
    : tree_(tree), options_(options) {
  applySettings();
}

void FolderReport::applySettings() {
  format_ = CellFormat(kColumns, listSizes(options_, ListId::Folders), options_.DateFormat);
}

Columns FolderReport::columns() { return kColumns; }

std::vector<const FolderColumn*> FolderReport::visibleColumns() const {
  return ombrelian::visibleColumns(kColumns, listLayout(options_, ListId::Folders));
}

std::vector<const FolderColumn*> FolderReport::reportColumns() const {
  return visibleColumnsAndNumber(kColumns, listLayout(options_, ListId::Folders));
}

std::int64_t FolderReport::number(RowIndex row, const Column& column) const {
  const FolderNode& node = tree_[NodeIndex(row)];
  if (column.kind == CellKind::Size) return node.size;
  if (column.kind == CellKind::Attributes) return node.attributes;
  return countOf(column.id, node);
}

double FolderReport::percent(NodeIndex index) const {
  const FolderNode& node = tree_[index];
  return node.parent == kNoNode ? 100 : percentOf(node.size, tree_[node.parent].size);
}

double FolderReport::real(RowIndex row, const Column& column) const {
  if (column.kind == CellKind::Percent) return percent(NodeIndex(row));
  DateParts parts;
  if (!platform::FileTimeToLocalSystemTime(fileTime(column.id, tree_[NodeIndex(row)]), parts)) {
    return 0;
  }
  return toDate(parts);
}

TextView FolderReport::text(RowIndex row, const Column& column) const {
  const FolderNode& node = tree_[NodeIndex(row)];
  switch (column.id) {
    case Id::Name:
      return node.name();
    case Id::Owner:
      return node.has(FolderNode::HasOwner) ? TextView(tree_.ownerText(node.owner)) : TextView();
    default:
      return tree_.junctionTarget(NodeIndex(row));
  }
}

void FolderReport::forgetNodes() {
  expanded_.clear();
  selected_ = kNoNode;
}

void FolderReport::forgetFreeNodes() {
  if (tree_.empty()) return forgetNodes();
  const auto isFree = [this](NodeIndex node) { return tree_[node].has(FolderNode::IsFree); };
  for (NodeIndex node = 0; node < expanded_.size(); ++node)
    expanded_[node] = expanded_[node] && !isFree(node);
  if (selected_ != kNoNode && isFree(selected_)) selected_ = kNoNode;
}

void FolderReport::carryExpanded(NodeIndex node, NodeIndex twin) {
  std::vector<std::pair<NodeIndex, NodeIndex>> waiting = {{node, twin}};
  while (!waiting.empty()) {
    const auto [from, to] = waiting.back();
    waiting.pop_back();
    setExpanded(to, true);
    std::unordered_map<TextView, NodeIndex> expanded;
    for (NodeIndex child = tree_[from].firstChild; child != kNoNode;
         child = tree_[child].nextSibling) {
      if (isExpanded(child)) expanded.emplace(tree_[child].name(), child);
    }
    if (expanded.empty()) continue;
    for (NodeIndex child = tree_[to].firstChild; child != kNoNode;
         child = tree_[child].nextSibling) {
      const auto known = expanded.find(tree_[child].name());
      if (known != expanded.end()) waiting.emplace_back(known->second, child);
    }
  }
}

void FolderReport::setExpanded(NodeIndex node, bool expanded) {
  if (node >= expanded_.size()) expanded_.resize(std::size_t(node) + 1);
  expanded_[node] = expanded;
}

}  // namespace ombrelian
