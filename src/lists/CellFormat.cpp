#include "lists/CellFormat.h"

#include "format/Attributes.h"
#include "platform/Locale.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

/// Mask for whole numbers in plain digits.
constexpr NumberMask kPlainMask = {1, 0, false};

/// Appends a number for data formats: with the locale's decimal separator, without groups and
/// without final zeros.
void appendPlainNumber(double value, Text& out) {
  const Decimal number = roundDecimal(value, 2);
  if (number.negative && (number.whole != 0 || number.fraction != 0)) out += u'-';
  appendNumber(kPlainMask, {false, number.whole, 0, 0}, out);
  if (number.fraction == 0) return;
  out += platform::numberSymbols().decimal;
  out += char16_t(u'0' + number.fraction / 10);
  if (number.fraction % 10 != 0) out += char16_t(u'0' + number.fraction % 10);
}

void appendPlainNumber(std::int64_t value, Text& out) {
  appendNumber(kPlainMask, {value < 0, magnitude(value), 0, 0}, out);
}

Text chosenWord(const Word* words, std::int64_t value) {
  const Word& word = words[value > 0 ? 0 : value < 0 ? 1 : 2];
  return TL(word.id, word.german);
}

}  // namespace

CellFormat::CellFormat(Columns columns, const SizeSettings& sizes, const Text& dateFormat)
    : sizes_(sizes),
      datePattern_(dateFormat.empty() ? defaultDateFormat() : dateFormat),
      sizeColumns_(columns.size() + 1),
      masks_(columns.size() + 1) {
  for (const Column& column : columns) {
    CellMask& mask = masks_[std::size_t(column.id)];
    if (column.kind == CellKind::Size) {
      SizeColumn& size = sizeColumns_[std::size_t(column.id)];
      size = sizeColumn(sizes, column.sizeKind);
      mask = CellMask(size.mask);
    }
    if (column.kind == CellKind::Percent) mask = CellMask(percentMask(sizes));
    if (column.kind == CellKind::Count) mask = CellMask(column.mask);
  }
}

Text CellFormat::caption(const Column& column) const {
  if (column.kind == CellKind::Size) return sizeColumns_[std::size_t(column.id)].header;
  if (&column == &kRowNumberColumn) return Text(column.caption);
  return TL(column.captionId, column.caption);
}

TextView CellFormat::fieldKey(const Column& column) const {
  return column.kind == CellKind::Size ? sizeColumns_[std::size_t(column.id)].field : column.key;
}

void CellFormat::appendShown(const CellSource& cells, CellSource::RowIndex row,
                             const Column& column, Text& out) const {
  if (!cells.hasValue(row, column)) return;
  switch (column.kind) {
    case CellKind::PlainText:
      out += cells.text(row, column);
      break;
    case CellKind::Percent:
      masks_[std::size_t(column.id)].append(cells.real(row, column), out);
      break;
    case CellKind::Timestamp:
      if (const Date date = cells.real(row, column); date != 0) datePattern_.append(date, out);
      break;
    default:
      appendShownNumber(column, cells.number(row, column), out);
      break;
  }
}

void CellFormat::appendShownNumber(const Column& column, std::int64_t value, Text& out) const {
  const auto& mask = [&]() -> const CellMask& { return masks_[std::size_t(column.id)]; };
  switch (column.kind) {
    case CellKind::Size:
      if (sizes_.unit == kUnitFitting) {
        appendFittingSize(value, out);
      } else if (hasUnit(column)) {
        mask().append(sizeInUnit(value, SizeUnit(sizes_.unit)), out);
      } else {
        mask().append(value, out);
      }
      break;
    case CellKind::Count:
      mask().append(value, out);
      break;
    case CellKind::Attributes:
      out += xFormatFileAttribute(std::uint32_t(value), false, {});
      break;
    case CellKind::Choice:
      out += chosenWord(column.words, value);
      break;
    default:
      appendPlainNumber(value, out);
      break;
  }
}

void CellFormat::appendPlain(const CellSource& cells, CellSource::RowIndex row,
                             const Column& column, Text& out) const {
  if (!cells.hasValue(row, column)) return;
  switch (column.kind) {
    case CellKind::Percent:
      appendPlainNumber(cells.real(row, column), out);
      break;
    case CellKind::Timestamp:
      plainDate_.append(cells.real(row, column), out);
      break;
    case CellKind::Size:
      if (hasUnit(column)) {
        appendPlainNumber(value(cells, row, column), out);
        break;
      }
      [[fallthrough]];
    case CellKind::Count:
      appendPlainNumber(cells.number(row, column), out);
      break;
    default:
      appendShown(cells, row, column, out);
      break;
  }
}

double CellFormat::value(const CellSource& cells, CellSource::RowIndex row,
                         const Column& column) const {
  if (column.isReal()) return cells.real(row, column);
  const std::int64_t number = cells.number(row, column);
  return hasUnit(column) ? sizeInUnit(number, SizeUnit(sizes_.unit)) : double(number);
}

}  // namespace ombrelian
