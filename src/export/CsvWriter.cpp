#include "export/CsvWriter.h"

#include "platform/Locale.h"

namespace ombrelian {

void CsvWriter::beginDocument() {
  line_.clear();
  for (const Column* const column : list_.columns) {
    openCell();
    line_ += platform::localeTextRules().upper(list_.format.caption(*column));
    line_ += u'"';
  }
  writeLine(line_);
}

void CsvWriter::row(const ReportRow& row) {
  line_.clear();
  for (const Column* const column : list_.columns) {
    openCell();
    value_.clear();
    cells_.appendNamed(list_.shape.csvCell, row, *column, value_);
    for (const char16_t unit : value_)
      line_.append(unit == u'"' ? 2 : 1, unit);
    line_ += u'"';
  }
  writeRowLine(line_);
}

void CsvWriter::openCell() {
  if (!line_.empty()) line_ += settings_.delimiter;
  line_ += u'"';
}

}  // namespace ombrelian
