#include "lists/ListStatus.h"

#include "support/Translate.h"
#include "tree/ScanTotals.h"

namespace ombrelian {

Text statusCount(std::int64_t count) { return xFormatFileSize(0, count, false, false); }

Text fileCountText(std::int64_t count) { return TL(9100, u"%1 Datei(en)", {statusCount(count)}); }

Text folderCountText(std::int64_t count) { return TL(9101, u"%1 Ordner", {statusCount(count)}); }

Text selectedFilesText(std::int64_t count, TextView size) {
  return TL(9102, u"%1 ausgewählte Datei(en) mit %2", {statusCount(count), size});
}

Text selectedFoldersText(std::int64_t count, TextView size) {
  return TL(9103, u"%1 ausgewählte Ordner mit %2", {statusCount(count), size});
}

std::int64_t sumOfSizes(const Grid& grid, const std::vector<Grid::RowIndex>& rows) {
  const Column& size = grid.column(u"size");
  std::int64_t sum = 0;
  for (const Grid::RowIndex row : rows)
    sum = addSizes(sum, grid.number(row, size));
  return sum;
}

}  // namespace ombrelian
