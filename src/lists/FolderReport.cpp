#include "lists/FolderReport.h"

#include "format/Attributes.h"
#include "fs/z_Filesystem.h"
#include "platform/Locale.h"
#include "platform/Time.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using Id = FolderColumnId;

constexpr TextView kCountMask = u"*###,##0*;;;";

constexpr FolderColumn kColumns[] = {
    {Id::Name, 3571, u"Name", u"name", CellKind::PlainText},
    {Id::Size, 3583, u"Größe", u"size", CellKind::Size},
    {Id::Percent, 3698, u"Prozent", u"percent", CellKind::Percent},
    {Id::Files, 3573, u"Dateien", u"files", CellKind::Count},
    {Id::Folders, 3574, u"Ordner", u"folders", CellKind::Count},
    {Id::Subfolders, 3863, u"Unterordner", u"subfolders", CellKind::Count},
    {Id::Attributes, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {Id::Modified, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {Id::Created, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {Id::Accessed, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {Id::Hardlinks, 3790, u"Hardlinks", u"hardlinks", CellKind::Count},
    {Id::Junctions, 3791, u"Junctions", u"junctions", CellKind::Count},
    {Id::Owner, 3801, u"Besitzer", u"owner", CellKind::PlainText},
    {Id::Errors, 3792, u"Fehler", u"error", CellKind::Count},
    {Id::Depth, 2223, u"Ordnerebene", u"folderdepth", CellKind::Number},
    {Id::Target, 3738, u"Zielordner", u"junctiontarget", CellKind::PlainText},
};

std::int64_t countOf(Id id, const FolderNode& node) {
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

/// A number as a data format takes it: the locale's decimal separator, no groups, no empty places.
Text plainNumber(double value) {
  const Decimal number = roundDecimal(value, 2);
  Text text = toText(std::int64_t(number.whole));
  if (number.fraction == 0) return text;
  text += platform::numberSymbols().decimal;
  text += char16_t(u'0' + number.fraction / 10);
  if (number.fraction % 10 != 0) text += char16_t(u'0' + number.fraction % 10);
  return text;
}

}  // namespace

FolderReport::FolderReport(const FolderTree& tree, const Options& options)
    : tree_(tree), options_(options) {
  applySettings();
}

void FolderReport::applySettings() {
  sizes_ = {options_.FileSizeFormat, options_.SizeFormatNachkommastellenFolders != 0,
            options_.SizeFormatShowSizeTextFolders == 1};
  sizeColumn_ = sizeColumn(sizes_);
  sizeMask_ = CellMask(sizeColumn_.mask);
  percentMask_ = CellMask(percentMask(sizes_));
  countMask_ = CellMask(kCountMask);
  datePattern_ =
      DatePattern(options_.DateFormat.empty() ? defaultDateFormat() : options_.DateFormat);
}

std::vector<const FolderColumn*> FolderReport::visibleColumns() const {
  std::vector<const FolderColumn*> visible;
  for (const FolderColumn& column : kColumns) {
    const bool isChosen = options_.FolderColumnVisible[std::size_t(column.id)] == 1;
    if (isChosen || column.id == Id::Name) visible.push_back(&column);
  }
  return visible;
}

Text FolderReport::caption(const FolderColumn& column) const {
  if (column.kind == CellKind::Size) return sizeColumn_.header;
  return TL(column.captionId, column.caption);
}

Text FolderReport::cellText(const FolderColumn& column, NodeIndex index) const {
  const FolderNode& node = tree_[index];
  switch (column.kind) {
    case CellKind::PlainText:
      return textValue(column.id, index);
    case CellKind::Size:
      if (sizes_.unit == kUnitBytes) return sizeMask_.format(node.size);
      return sizeMask_.format(sizeInUnit(node.size, SizeUnit(sizes_.unit)));
    case CellKind::Percent:
      return percentMask_.format(percent(index));
    case CellKind::Count:
      return countMask_.format(countOf(column.id, node));
    case CellKind::Number:
      return toText(countOf(column.id, node));
    case CellKind::Timestamp: {
      const Date value = date(column.id, index);
      return value == 0 ? Text() : datePattern_.format(value);
    }
    case CellKind::Attributes:
      return xFormatFileAttribute(node.attributes, false, {});
  }
  return {};
}

Text FolderReport::rawText(const FolderColumn& column, NodeIndex index) const {
  const FolderNode& node = tree_[index];
  switch (column.kind) {
    case CellKind::Size:
      if (sizes_.unit == kUnitBytes) return toText(node.size);
      return plainNumber(sizeInUnit(node.size, SizeUnit(sizes_.unit)));
    case CellKind::Percent:
      return plainNumber(percent(index));
    case CellKind::Count:
    case CellKind::Number:
      return toText(countOf(column.id, node));
    case CellKind::Timestamp:
      return formatGeneralDate(date(column.id, index));
    default:
      return cellText(column, index);
  }
}

double FolderReport::percent(NodeIndex index) const {
  const FolderNode& node = tree_[index];
  return node.parent == kNoNode ? 100 : percentOf(node.size, tree_[node.parent].size);
}

FileTime FolderReport::fileTime(Id id, const FolderNode& node) const {
  switch (id) {
    case Id::Modified:
      return node.dateModified;
    case Id::Created:
      return node.dateCreate;
    default:
      return node.dateAccess;
  }
}

Date FolderReport::date(Id id, NodeIndex node) const {
  DateParts parts;
  if (!platform::FileTimeToLocalSystemTime(fileTime(id, tree_[node]), parts)) return 0;
  return toDate(parts);
}

Text FolderReport::textValue(Id id, NodeIndex index) const {
  const FolderNode& node = tree_[index];
  switch (id) {
    case Id::Name:
      return Text(node.name());
    case Id::Owner:
      return node.has(FolderNode::HasOwner) ? tree_.ownerText(node.owner) : Text();
    default:
      return Text(tree_.junctionTarget(index));
  }
}

void FolderReport::setExpanded(NodeIndex node, bool expanded) {
  if (node >= expanded_.size()) expanded_.resize(std::size_t(node) + 1);
  expanded_[node] = expanded;
}

}  // namespace ombrelian
