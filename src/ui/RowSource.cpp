#include "ui/RowSource.h"

#include <algorithm>

#include "format/Attributes.h"
#include "format/Mask.h"
#include "format/ToolTips.h"
#include "fs/PathText.h"
#include "fs/Renaming.h"
#include "fs/z_Filesystem.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

/// The path of an object `name` in the same folder as `path`.
Text beside(const Text& path, const Text& name) {
  Text other(xGetPath(path));
  return appendName(other, name);
}

/// Shows a share that the mask rounds to zero as less than the smallest number of the mask: "<1%".
void markSmall(Text& share) {
  const auto last = share.find_last_of(u'0');
  if (last == Text::npos || share.find_first_of(u"123456789") != Text::npos) return;
  share[last] = u'1';
  share.insert(0, 1, u'<');
}

/// Whether a share is above zero; the value itself has two decimals only.
bool hasShare(const RowSource& rows, std::size_t row, const Column& share) {
  const CellSource& cells = rows.cells();
  const CellSource::RowIndex at = rows.cellRow(row);
  if (cells.real(at, share) > 0) return true;
  const Columns all = rows.columns();
  return std::any_of(all.begin(), all.end(), [&](const Column& other) {
    return other.key == u"size" && cells.number(at, other) > 0;
  });
}

}  // namespace

Text RowSource::shown(std::size_t row, const Column& column) const {
  Text text;
  format().appendShown(cells(), cellRow(row), column, text);
  if (column.kind == CellKind::Percent && hasShare(*this, row, column)) markSmall(text);
  return text;
}

Text RowSource::toolTip(std::size_t row, const Column& column) const {
  if (!cells().hasValue(cellRow(row), column)) return {};
  switch (column.kind) {
    case CellKind::Size:
      return FormatToolTipText_Size(cells().number(cellRow(row), column));
    case CellKind::Attributes:
      return FormatToolTipText_Attribute(shown(row, column));
    case CellKind::Percent:
      return formatNumber(u"##0.00", cells().real(cellRow(row), column)) + u" %";
    case CellKind::PlainText:
    case CellKind::Choice:
      return shown(row, column);
    default:
      return {};
  }
}

bool RowSource::isNameTaken(std::size_t row, const Text& name) const {
  const Text other = beside(path(row), name);
  return xExistFile_W(other) && !isAnotherFolder(path(row), other);
}

std::optional<RowSource::Id> RowSource::find(const QString& text, std::size_t from, bool backward) {
  const std::size_t rows = count();
  for (std::size_t step = 1; step <= rows; ++step) {
    const std::size_t row = (from + (backward ? rows - step : step)) % rows;
    if (holds(row, text)) return id(row);
  }
  return std::nullopt;
}

MatchCount RowSource::countMatches(const QString& text, int milliseconds) {
  MatchCounter counter(milliseconds);
  for (std::size_t row = 0; row < count() && counter.hasTime(); ++row)
    counter.add(holds(row, text));
  return counter.result();
}

GridRows::GridRows(Grid& grid, const Options& options, ListId list)
    : grid_(grid), options_(options), list_(list) {
  GridRows::applySettings();
}

void GridRows::applySettings() {
  format_ = CellFormat(grid_.columns(), listSizes(options_, list_), options_.DateFormat);
}

bool GridRows::holds(std::size_t row, const QString& text) const {
  const auto visible = visibleColumns(columns(), listLayout(options_, list_));
  return std::any_of(visible.begin(), visible.end(), [&](const Column* column) {
    return toQString(shown(row, *column)).contains(text, Qt::CaseInsensitive);
  });
}

const Column* GridRows::column(TextView key) const {
  const Columns all = columns();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Column& one) { return one.key == key; });
  return found == all.end() ? nullptr : &*found;
}

Text GridRows::textOf(std::size_t row, TextView key) const {
  const Column* const found = column(key);
  return found == nullptr ? Text() : Text(grid_.text(row, *found));
}

/// Joins the name of a file and the path of its folder; the names of junctions and folders are
/// already paths.
Text GridRows::path(std::size_t row) const {
  const RowKind kind = listRow(list_).rows;
  if (kind == RowKind::Junction) return textOf(row, u"junction");
  if (kind == RowKind::Folder) return textOf(row, u"name");
  if (column(u"path") == nullptr || column(u"name") == nullptr) return {};
  const Text name = textOf(row, u"name");
  Text folder = textOf(row, u"path");
  return appendName(folder, name);
}

}  // namespace ombrelian::ui
