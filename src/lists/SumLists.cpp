#include "lists/SumLists.h"

#include "format/LetterCase.h"
#include "lists/ListStatus.h"
#include "lists/ListTable.h"
#include "platform/Locale.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

/// Adds a row with the cells that both lists have; returns the row.
Grid::RowIndex addSumRow(Grid& grid, const SumTable& sums, std::int32_t slot, std::int64_t total) {
  const Grid::RowIndex row = grid.addRow();
  grid.set(row, grid.column(u"size"), sums.size(slot));
  grid.set(row, grid.column(u"percent"), percentOf(sums.size(slot), total));
  grid.set(row, grid.column(u"files"), std::int64_t(sums.files(slot)));
  return row;
}

}  // namespace

ExtensionList::ExtensionList(FileTypes& types)
    : types_(types), grid_(listRow(ListId::Extensions).columns()) {}

void ExtensionList::reset() {
  sums_.clear();
  grid_.clear();
}

void ExtensionList::feed(TextView extension, std::int64_t size) {
  key_.assign(1, u'.');
  for (const char16_t unit : extension) {
    if (unit >= 128) {  // ASCII needs no rules and no allocation
      key_.replace(1, Text::npos, platform::localeTextRules().upper(extension));
      break;
    }
    key_ += unit >= u'a' && unit <= u'z' ? char16_t(unit - u'a' + u'A') : unit;
  }
  sums_.add(key_, size, 1, 0);
}

void ExtensionList::List_Ext_SetDifferentSizes(std::int64_t total) {
  const Text none = TL(3842, u"[Ohne Endung]");
  for (std::int32_t slot = 1; slot <= sums_.count(); ++slot) {
    const Grid::RowIndex row = addSumRow(grid_, sums_, slot, total);
    const TextView key = sums_.key(slot);
    const bool isNone = key == u".";
    const Text extension = lowerCase(key.substr(1));
    grid_.set(row, grid_.column(u"extname"), isNone ? TextView(none) : key);
    grid_.set(row, grid_.column(u"type"), TextView(isNone ? none : types_.typeText(extension)));
    grid_.set(row, grid_.column(u"exe"),
              TextView(isNone ? Text() : types_.associatedProgram(extension)));
  }
  sortAsOpened(grid_, ListId::Extensions);
  sums_.clear();
}

Text ExtensionList::List_EXT_ShowStat() const {
  return TL(9105, u"%1 Dateiendungen", {statusCount(std::int64_t(grid_.rowCount()))});
}

OwnerList::OwnerList() : grid_(listRow(ListId::Owners).columns()) {}

void OwnerList::reset() {
  sums_.clear();
  grid_.clear();
}

void OwnerList::List_Owner_SetDifferentSizes(std::int64_t total) {
  for (std::int32_t slot = 1; slot <= sums_.count(); ++slot) {
    const Grid::RowIndex row = addSumRow(grid_, sums_, slot, total);
    grid_.set(row, grid_.column(u"owner"), sums_.key(slot));
    grid_.set(row, grid_.column(u"folders"), std::int64_t(sums_.folders(slot)));
  }
  sortAsOpened(grid_, ListId::Owners);
  sums_.clear();
}

Text OwnerList::List_Owner_ShowStat() const {
  return TL(9106, u"%1 Besitzer", {statusCount(std::int64_t(grid_.rowCount()))});
}

}  // namespace ombrelian
