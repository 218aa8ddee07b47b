#include "export/ListSave.h"

#include <algorithm>

#include "support/Guard.h"

namespace ombrelian {
namespace {

/// Gives all rows of a grid as the rows of one source.
class GridFeed : public ReportFeed {
 public:
  GridFeed(const Grid& grid, const ReportSource& source) : grid_(grid), source_(source) {}

  std::uint64_t rowCount() const override { return grid_.rowCount(); }

  void feed(ReportSink& sink) const override {
    if (!sink.beginSource(source_)) return;
    bool goesOn = true;
    for (Grid::RowIndex row = 0; row < grid_.rowCount() && goesOn; ++row)
      goesOn = sink.row({.index = row, .number = row + 1});
    sink.endSource();
  }

 private:
  const Grid& grid_;
  const ReportSource& source_;
};

bool contains(const std::vector<const Column*>& columns, const Column* column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}

}  // namespace

ListToSave listToSave(const Options& options, ListId id, FlatList& list, ReportSource source) {
  if (const auto origin = list.origin()) source = {origin->path, origin->readAt};
  return {listTitle(options, id), list.grid(), listLayout(options, id), listSizes(options, id),
          std::move(source)};
}

Failure saveList(const ListToSave& list, const Options& options, ReportFormat format,
                 TextView target, TextView delimiter, UserInterface& ui) {
  return GuardedOr(
      u"frmSaveFiles", u"SAVE",
      [&] {
        const CellFormat cells(list.grid.columns(), sizesIn(format, list.sizes),
                               options.DateFormat);
        ReportList report = {list.title, kFlatShape, list.grid, cells,
                             visibleColumnsAndNumber(list.grid.columns(), list.layout)};
        if (contains(report.columns, list.grid.sortColumn())) {
          report.sortColumn = list.grid.sortColumn();
          report.sortedDescending = list.grid.sortedDescending();
        }
        const SaveSettings settings = {Text(delimiter), false, options.SaveFiles.DividingLine == 1};
        return saveReport(format, target, report, settings, GridFeed(list.grid, list.source), ui);
      },
      failureOf, {target});
}

}  // namespace ombrelian
