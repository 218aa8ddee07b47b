#include "export/ListSave.h"

#include <algorithm>
#include <optional>

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

/// The cells of a list whose column "path" is written with the name behind it.
class FullPathCells : public CellSource {
 public:
  explicit FullPathCells(const Grid& grid)
      : grid_(grid), path_(grid.column(u"path")), fullPath_(grid.column(u"fullpath")) {}

  TextView text(RowIndex row, const Column& column) const override {
    return grid_.text(row, &column == &path_ ? fullPath_ : column);
  }
  double real(RowIndex row, const Column& column) const override { return grid_.real(row, column); }
  std::int64_t number(RowIndex row, const Column& column) const override {
    return grid_.number(row, column);
  }

 private:
  const Grid& grid_;
  const Column& path_;
  const Column& fullPath_;
};

bool contains(const std::vector<const Column*>& columns, const Column* column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}

}  // namespace

ListToSave listToSave(const Options& options, ListId id, FlatList& list, ReportSource source) {
  if (const auto origin = list.origin()) source = {origin->path, origin->readAt};
  return {listTitle(options, id), list.grid(),       listLayout(options, id),
          listSizes(options, id), std::move(source), id == ListId::Files};
}

Failure saveList(const ListToSave& list, const Options& options, ReportFormat format,
                 TextView target, TextView delimiter, UserInterface& ui) {
  return GuardedOr(
      u"frmSaveFiles", u"SAVE",
      [&] {
        const CellFormat cells(list.grid.columns(), sizesIn(format, list.sizes),
                               options.DateFormat);
        std::optional<FullPathCells> fullPaths;
        if (list.writesFullPaths) fullPaths.emplace(list.grid);
        const CellSource& values =
            fullPaths ? static_cast<const CellSource&>(*fullPaths) : list.grid;
        ReportList report = {list.title, kFlatShape, values, cells,
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
