#include "export/TxtWriter.h"

#include <algorithm>

#include "format/DatePattern.h"
#include "format/Sizes.h"
#include "platform/Locale.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::size_t kWidest = 200;  // code units; longer cells are not filled up

void trimEnd(Text& line) { line.erase(line.find_last_not_of(u' ') + 1); }

}  // namespace

void FormatTextWithSpacer(TextView text, std::size_t width, bool leftAlign, Text& out) {
  const std::size_t blanks = text.size() < width ? width - text.size() : 0;
  if (!leftAlign) out.append(blanks, u' ');
  out += text;
  if (leftAlign) out.append(blanks, u' ');
}

TxtWriter::TxtWriter(const ReportList& list, SaveSettings settings)
    : TextReport(list, std::move(settings)) {
  for (const Column* const column : list.columns) {
    Text caption = list.format.caption(*column);
    const std::size_t width = caption.size();
    slots_.push_back({column, std::move(caption), width});
  }
}

void TxtWriter::measure(const ReportRow& row) {
  for (Slot& slot : slots_) {
    readCell(slot, row);
    slot.width = std::max(slot.width, std::min(cell_.size() + indentOf(slot, row), kWidest));
  }
}

void TxtWriter::beginDocument() {
  dividingLine_ = composeDividingLine();
  if (list_.shape.blankLineBeforeHead) writeTitle();
}

void TxtWriter::writeTitle() { writeLine(u"Ombrelian - " + list_.title); }

Text TxtWriter::composeHeader() const {
  Text line;
  for (const Slot& slot : slots_) {
    if (&slot != slots_.data()) line += settings_.delimiter;
    const bool leftAlign = !list_.shape.alignsCaptions || slot.column->isLeftAligned();
    // The upper case of these rules never changes the length of a text.
    FormatTextWithSpacer(platform::localeTextRules().upper(slot.caption), slot.width, leftAlign,
                         line);
  }
  trimEnd(line);
  return line;
}

Text TxtWriter::composeDividingLine() const {
  Text line;
  for (const Slot& slot : slots_) {
    if (&slot != slots_.data()) line += settings_.delimiter;
    line.append(slot.width, u'-');
  }
  return line;
}

void TxtWriter::beginSource(const ReportSource& source) {
  if (list_.shape.blankLineBeforeHead) {
    writeLine({});
  } else {
    writeTitle();
  }
  if (!source.path.empty()) {
    writeLine(
        onOneLine(TL(2245, u"Pfad: %1", {describeSource(source.path, list_.shape.labelsDrives)})));
  }
  writeLine(TL(2246, u"Erstellt: %1", {formatGeneralDate(source.created)}));
  for (const Text& note : source.notes)
    writeLine(note);
  writeLine({});
  writeLine(composeHeader());
  if (settings_.dividingLine) writeLine(dividingLine_);
}

void TxtWriter::row(const ReportRow& row) {
  FormatPrintValuesForTXT(row);
  writeRowLine(line_);
  if (settings_.dividingLine) writeRowLine(dividingLine_);
}

void TxtWriter::FormatPrintValuesForTXT(const ReportRow& row) {
  line_.clear();
  for (const Slot& slot : slots_) {
    if (&slot != slots_.data()) line_ += settings_.delimiter;
    appendCell(slot, row);
  }
  trimEnd(line_);
}

void TxtWriter::appendCell(const Slot& slot, const ReportRow& row) {
  if (isWholePercent(*slot.column)) {
    const double percent = list_.cells.real(row.index, *slot.column);
    line_ += xFormatFileSizeWithSpacer(percent, std::int32_t(slot.width));
    return;
  }
  const std::size_t indent = indentOf(slot, row);
  readCell(slot, row);
  line_.append(indent, u' ');
  const std::size_t room = slot.width - std::min(indent, slot.width);
  FormatTextWithSpacer(cell_, room, slot.column->isLeftAligned(), line_);
}

/// Reads a cell into cell_. A name that contains a line feed takes only one line.
void TxtWriter::readCell(const Slot& slot, const ReportRow& row) {
  cell_.clear();
  cells_.appendNamed(list_.shape.txtCell, row, *slot.column, cell_);
  if (cell_.find_first_of(u"\n\r") != Text::npos) cell_ = onOneLine(cell_);
}

/// The blanks in front of a name, which show its level.
std::size_t TxtWriter::indentOf(const Slot& slot, const ReportRow& row) const {
  return settings_.indent && ReportCells::hasName(row, *slot.column) ? row.level : 0;
}

}  // namespace ombrelian
