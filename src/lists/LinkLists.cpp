#include "lists/LinkLists.h"

#include "format/LetterCase.h"
#include "fs/Links.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "lists/ListTable.h"
#include "platform/Locale.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
HardlinkList::HardlinkList(const Options& options, FileTypes& types)
    : options_(options), types_(types), grid_(listRow(ListId::Hardlinks).columns()) {}

void HardlinkList::feed(TextView name, TextView folder, std::int64_t size, std::int32_t links,
                        const platform::FindData& data) {
  const TextView extension = xGetExtension(name);
  const Grid::RowIndex row = grid_.addRow();
  grid_.setIdentity(row, data.identity);
  grid_.set(row, grid_.column(u"name"), name);
  grid_.set(row, grid_.column(u"id"), TextView(hardlinkIdentity(data)));
  grid_.set(row, grid_.column(u"links"), std::int64_t(links));
  grid_.set(row, grid_.column(u"path"), folder);
  grid_.set(row, grid_.column(u"size"), size);
  grid_.set(row, grid_.column(u"ext"), TextView(upperCase(extension)));
  grid_.set(row, grid_.column(u"type"), TextView(types_.typeText(lowerCase(extension))));
  grid_.set(row, grid_.column(u"attr"), std::int64_t(data.dwFileAttributes));
  grid_.set(row, grid_.column(u"datemodified"), xGetFileModifyDateByWFD(data, folder));
  grid_.set(row, grid_.column(u"datecreate"), xGetFileCreateDateByWFD(data, folder));
  grid_.set(row, grid_.column(u"dateaccess"), xGetFileAccessDateByWFD(data, folder));
}

/// The names of one file are together and have one shade.
void HardlinkList::finish() {
  sortAsOpened(grid_, ListId::Hardlinks);
  List_Hardlinks_ShowDups();
}

void HardlinkList::List_Hardlinks_ShowDups() {
  Guarded(u"frmMain", u"List_Hardlinks_ShowDups", [&] {
    if (grid_.rowCount() < 2) return;
    const Column& id = grid_.column(u"id");
    grid_.sort(id, false);
    int band = 0;
    for (Grid::RowIndex row = 0; row < grid_.rowCount(); ++row) {
      if (row > 0 && grid_.text(row, id) != grid_.text(row - 1, id)) band = 1 - band;
      grid_.setBand(row, band);
    }
  });
}

Text HardlinkList::List_Hardlinks_ShowFileStat(const std::vector<Grid::RowIndex>& selected) const {
  Text status = fileCountText(std::int64_t(grid_.rowCount()));
  if (selected.empty()) return status;
  const Text size = FormatSize(listSizes(options_, ListId::Hardlinks), sumOfSizes(grid_, selected),
                               true, false, true);
  return status += u" / " + selectedFilesText(std::int64_t(selected.size()), size);
}

JunctionList::JunctionList() : grid_(listRow(ListId::Junctions).columns()) {}

void JunctionList::feed(TextView path, TextView target, std::uint32_t tag) {
  const Grid::RowIndex row = grid_.addRow();
  grid_.set(row, grid_.column(u"junction"), path);
  grid_.set(row, grid_.column(u"target"), target);
  grid_.set(row, grid_.column(u"type"), std::int64_t(tag == platform::kTagSymbolicLink ? 0 : 1));
}

void JunctionList::finish() { sortAsOpened(grid_, ListId::Junctions); }

Text JunctionList::List_Junctions_ShowStat() const {
  return TL(9107, u"%1 Junction(s)", {statusCount(std::int64_t(grid_.rowCount()))});
}

}  // namespace ombrelian
