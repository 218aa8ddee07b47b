#include "export/XlsxWriter.h"

#include <cmath>

#include "export/WorkbookText.h"
#include "support/Surrogates.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::size_t kPieceBytes = std::size_t(64) * 1024;

// Range of the dates that a sheet can show. Sheets have a 29 February 1900, so that earlier dates
// would be wrong by one day.
constexpr Date kFirstSheetDate = 61;
constexpr Date kEndOfSheetDates = 2'958'466;  // 1 January 10000

/// Whether a reader would drop blanks at an end of `text`.
bool hasOuterBlanks(TextView text) {
  constexpr TextView kBlanks = u" \t\n";
  return kBlanks.find(text.front()) != TextView::npos ||
         kBlanks.find(text.back()) != TextView::npos;
}

constexpr TextView kCutMark = u"\u2026";

/// The part of a long text that fits into a cell with the mark behind it; no character is halved.
TextView beginningOf(TextView text) {
  const std::size_t most = SheetLimits::kUnits - kCutMark.size();
  return text.substr(0, isHighSurrogate(text[most - 1]) ? most - 1 : most);
}

}  // namespace

Failure XlsxWriter::open(TextView target) {
  if (Failure failure = zip_.open(target)) return failure;
  for (const WorkbookPart& part : {packageRelations(), programProperties(), styles()})
    writePart(part);
  return failure();
}

void XlsxWriter::beginSheet() {
  ++sheets_;
  row_ = 0;
  zip_.beginPart(sheetPart(sheets_));
  xml_ = sheetHead(sheets_);
  beginRow();
  for (const Column* const column : list_.columns)
    writeText(list_.format.caption(*column));
  endRow();
}

/// The workbook has the date of the first source, so that a list that is saved again gives the same
/// bytes. A sheet has no head, so what a source lacks is in the description of the document.
void XlsxWriter::beginSource(const ReportSource& source) {
  if (!created_) created_ = source.created;
  if (source.notes.empty()) return;
  if (!description_.empty()) description_ += u"\n\n";
  description_ += TL(2245, u"Pfad: %1", {describeSource(source.path, list_.shape.labelsDrives)});
  for (const Text& note : source.notes)
    description_.append(u"\n").append(note);
}

void XlsxWriter::row(const ReportRow& row) {
  const bool isFull =
      row_ == limits_.rows || (row_ > 1 && zip_.partBytes() + xml_.size() >= limits_.bytes);
  if (isFull) {
    endSheet();
    beginSheet();
  }
  beginRow();
  for (const Column* const column : list_.columns)
    writeCell(row, *column);
  endRow();
}

void XlsxWriter::beginRow() {
  xml_ += "<row r=\"";
  appendWorkbookNumber(++row_, xml_);
  xml_ += "\">";
  emptyCells_ = 0;
}

void XlsxWriter::endRow() {
  xml_ += "</row>";
  if (xml_.size() >= kPieceBytes) flush();
}

void XlsxWriter::writeCell(const ReportRow& row, const Column& column) {
  if (&column == &kRowNumberColumn) return writeNumber(double(row.number), kPlainStyle);
  switch (column.kind) {
    case CellKind::Timestamp:
      return writeDate(row, column);
    case CellKind::Size:
    case CellKind::Percent:
    case CellKind::Count:
    case CellKind::Number:
      if (!list_.cells.hasValue(row.index, column)) return writeText({});
      return writeNumber(list_.format.value(list_.cells, row.index, column), kPlainStyle);
    default:
      value_.clear();
      cells_.appendNamed(CellForm::Shown, row, column, value_);
      return writeText(value_);
  }
}

void XlsxWriter::writeDate(const ReportRow& row, const Column& column) {
  const Date date = list_.cells.real(row.index, column);
  if (date >= kFirstSheetDate && date < kEndOfSheetDates) return writeNumber(date, kDateStyle);
  value_.clear();
  cells_.append(CellForm::Shown, row, column, value_);
  writeText(value_);
}

void XlsxWriter::writeText(TextView text) {
  if (text.empty()) {
    ++emptyCells_;
    return;
  }
  const bool isCut = text.size() > SheetLimits::kUnits;
  if (isCut) text = beginningOf(text);
  beginCell(" t=\"inlineStr\"");
  xml_ += hasOuterBlanks(text) ? "<is><t xml:space=\"preserve\">" : "<is><t>";
  appendWorkbookText(text, xml_);
  if (isCut) appendWorkbookText(kCutMark, xml_);
  xml_ += "</t></is></c>";
  cutCells_ += isCut;
}

void XlsxWriter::writeNumber(double number, std::string_view style) {
  if (!std::isfinite(number)) return writeText({});
  beginCell(style);
  xml_ += "<v>";
  appendWorkbookNumber(number, xml_);
  xml_ += "</v></c>";
}

/// Begins a cell that is not empty. Cells have no reference, which is most of a sheet otherwise and
/// which readers do not need: the place of a cell is its place in the row. Empty cells are
/// therefore written in front of other cells.
void XlsxWriter::beginCell(std::string_view attributes) {
  for (; emptyCells_ > 0; --emptyCells_)
    xml_ += "<c/>";
  xml_.append("<c").append(attributes).append(">");
}

void XlsxWriter::flush() {
  zip_.write(xml_);
  xml_.clear();
}

void XlsxWriter::endSheet() {
  xml_ += kSheetEnd;
  flush();
  zip_.endPart();
}

void XlsxWriter::endDocument() {
  endSheet();
  writePart(workbookPart(list_.title, sheets_));
  writePart(workbookRelations(sheets_));
  writePart(coreProperties(created_.value_or(0), description_));
  writePart(contentTypes(sheets_));
  zip_.endArchive();
}

void XlsxWriter::writePart(const WorkbookPart& part) {
  zip_.beginPart(part.name);
  zip_.write(part.content);
  zip_.endPart();
}

}  // namespace ombrelian
