#include "export/ReportList.h"

#include "fs/z_Filesystem.h"
#include "platform/Volumes.h"
#include "support/Translate.h"

namespace ombrelian {

void ReportCells::append(CellForm form, const ReportRow& row, const Column& column,
                         Text& out) const {
  if (&column == &kRowNumberColumn) {
    out += toText(std::int64_t(row.number));
    return;
  }
  const std::size_t before = out.size();
  if (form != CellForm::Plain) list_.format.appendShown(list_.cells, row.index, column, out);
  const bool wantsPlain =
      form == CellForm::Plain || (form == CellForm::ShownOrPlain && out.size() == before);
  if (wantsPlain) list_.format.appendPlain(list_.cells, row.index, column, out);
}

Text driveLabelOf(const Text& path) {
  Text ignored;
  return platform::IsDriveRoot(path) ? xGetDriveLabelW(path, ignored) : Text();
}

std::vector<Text> notesOn(const FolderTree& tree, NodeIndex source) {
  std::vector<Text> notes;
  if (tree[source].has(FolderNode::IsIncomplete)) {
    notes.push_back(TL(9704, u"Unvollständig: Das Einlesen wurde abgebrochen."));
  }
  for (const Text& filter : describeFilters(tree.facts(source).filters))
    notes.push_back(filter);
  return notes;
}

Text describeSource(const Text& path, bool labelsDrives) {
  Text described = xRemoveBackslash(path);
  const Text label = labelsDrives ? driveLabelOf(path) : Text();
  return label.empty() ? described : described + u" [" + label + u"]";
}

}  // namespace ombrelian
