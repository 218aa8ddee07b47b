#include "scan/Rescan.h"

#include "scan/RunScope.h"
#include "support/Guard.h"
#include "tree/TreeEdit.h"
#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"frmMain";

}  // namespace

Rescan::Rescan(const ScanState& state, RowsOnShow* rows) : state_(state), rows_(orNobody(rows)) {}

NodeIndex Rescan::Report_Rescan(NodeIndex selected) {
  return GuardedOr(
      kModule, u"Report_Rescan",
      [&]() -> NodeIndex {
        FolderTree& tree = state_.tree;
        if (tree.empty() || selected == kNoNode) return kNoNode;
        NodeIndex folder = selected;
        if (!tree[folder].has(FolderNode::IsFolder)) folder = tree[folder].parent;
        const FolderNode& node = tree[folder];
        if (node.has(FolderNode::IsError)) return kNoNode;
        if (node.has(FolderNode::IsJunction) && !entersJunction(folder)) return kNoNode;
        const RunScope scope(state_);
        read(folder, false);
        Report_Folder_Sort_All(tree);
        return folder;
      },
      [&](const Error& error) {
        logFault(state_, error);
        return kNoNode;
      });
}

/// Whether a scan that came to the junction would enter it.
bool Rescan::entersJunction(NodeIndex junction) const {
  const Text path = Report_GetFullpathOfNode(state_.tree, junction, false, false);
  return state_.options.ScanHardlinks != 0 &&
         platform::CheckReparseFolder(path) == platform::kSuccess;
}

void Rescan::readRest(NodeIndex folder) { read(folder, true); }

void Rescan::read(NodeIndex folder, bool isRest) {
  FolderTree& tree = state_.tree;
  state_.context.SuppressDerivedLists = true;
  const SourceFacts& facts = tree.facts(sourceOf(tree, folder));
  state_.context.run = facts.run;
  state_.filters.startRun();
  state_.filters.setWalkFilters(facts.filters);
  const Text path = Report_GetFullpathOfNode(tree, folder, false, true);
  state_.context.IgnoresCancel = isRest;
  ScanRun(state_, &rows_).readAgain(path, folder, isRest);
  state_.context.IgnoresCancel = false;
}

Text Report_RemoveFolders(FolderTree& tree, NodeIndex selected, RowsOnShow* rows) {
  return GuardedOr(
      kModule, u"Report_RemoveFolders",
      [&]() -> Text {
        if (tree.empty() || selected == kNoNode) return {};
        const NodeIndex source = sourceOf(tree, selected);
        Text path(tree[source].name());
        orNobody(rows).change([&] { takeOutFolders(tree, {source}); });
        return path;
      },
      nothing<Text>);
}

}  // namespace ombrelian
