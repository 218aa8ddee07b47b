#include "lists/CellFormat.h"

#include "format/Attributes.h"
#include "platform/Locale.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

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

Text chosenWord(const Word* words, std::int64_t value) {
  const Word& word = words[value > 0 ? 0 : value < 0 ? 1 : 2];
  return TL(word.id, word.german);
}

}  // namespace

CellFormat::CellFormat(Columns columns, const SizeSettings& sizes, const Text& dateFormat)
    : sizes_(sizes),
      sizeColumn_(sizeColumn(sizes)),
      datePattern_(dateFormat.empty() ? defaultDateFormat() : dateFormat),
      masks_(columns.size() + 1) {
  for (const Column& column : columns) {
    CellMask& mask = masks_[std::size_t(column.id)];
    if (column.kind == CellKind::Size) mask = CellMask(sizeColumn_.mask);
    if (column.kind == CellKind::Percent) mask = CellMask(percentMask(sizes));
    if (column.kind == CellKind::Count) mask = CellMask(column.mask);
  }
}

Text CellFormat::caption(const Column& column) const {
  if (column.kind == CellKind::Size) return sizeColumn_.header;
  return TL(column.captionId, column.caption);
}

Text CellFormat::shown(const Column& column, std::int64_t value) const {
  const CellMask& mask = masks_[std::size_t(column.id)];
  switch (column.kind) {
    case CellKind::Size:
      if (sizes_.unit == kUnitBytes) return mask.format(value);
      return mask.format(sizeInUnit(value, SizeUnit(sizes_.unit)));
    case CellKind::Count:
      return mask.format(value);
    case CellKind::Attributes:
      return xFormatFileAttribute(std::uint32_t(value), false, {});
    case CellKind::Choice:
      return chosenWord(column.words, value);
    default:
      return toText(value);
  }
}

Text CellFormat::shown(const Column& column, double value) const {
  if (column.kind == CellKind::Percent) return masks_[std::size_t(column.id)].format(value);
  return value == 0 ? Text() : datePattern_.format(value);
}

Text CellFormat::plain(const Column& column, std::int64_t value) const {
  if (column.kind == CellKind::Attributes || column.kind == CellKind::Choice) {
    return shown(column, value);
  }
  if (column.kind == CellKind::Size && sizes_.unit != kUnitBytes) {
    return plainNumber(sizeInUnit(value, SizeUnit(sizes_.unit)));
  }
  return toText(value);
}

Text CellFormat::plain(const Column& column, double value) const {
  return column.kind == CellKind::Percent ? plainNumber(value) : formatGeneralDate(value);
}

}  // namespace ombrelian
