#pragma once

#include <optional>

#include "export/ReportWriter.h"
#include "export/WorkbookParts.h"
#include "export/ZipWriter.h"

namespace ombrelian {

/// What a sheet can hold.
struct SheetLimits {
  static constexpr std::size_t kUnits = 32'767;  // UTF-16 code units in a cell

  std::uint32_t rows = 1'048'576;     // including the captions
  std::uint64_t bytes = 0xF000'0000;  // before compression, less than ZipWriter::kMostPartBytes
};

/// Writes a workbook: the captions in a first row that stays visible, then the rows, with real
/// numbers and dates. Rows are compressed and written at once, so that memory is bounded and
/// little is left to do at the end. Rows that a sheet cannot hold go to a further sheet.
class XlsxWriter : public ReportWriter {
 public:
  explicit XlsxWriter(const ReportList& list, const SheetLimits& limits = {})
      : list_(list), cells_(list), limits_(limits) {}

  Failure open(TextView target) override;
  void beginDocument() override { beginSheet(); }
  void beginSource(const ReportSource& source) override;
  void row(const ReportRow& row) override;
  void endDocument() override;
  const Failure& failure() const override { return zip_.failure(); }
  std::uint64_t cutCells() const override { return cutCells_; }
  Failure commit() override { return zip_.commit(); }

 private:
  void beginSheet();
  void endSheet();
  void beginRow();
  void endRow();
  void writeCell(const ReportRow& row, const Column& column);
  void writeDate(const ReportRow& row, const Column& column);
  void writeText(TextView text);
  void writeNumber(double number, std::string_view style);
  void beginCell(std::string_view attributes);
  void flush();
  void writePart(const WorkbookPart& part);

  const ReportList& list_;
  const ReportCells cells_;
  const SheetLimits limits_;
  ZipWriter zip_;
  std::size_t sheets_ = 0;
  std::uint32_t row_ = 0;       // last row of the sheet, counted from 1
  std::size_t emptyCells_ = 0;  // number of empty cells behind the last value of the row
  std::uint64_t cutCells_ = 0;
  std::optional<Date> created_;  // time of the first source; none: no source was begun
  Text description_;             // what is missing in the sources
  Text value_;
  std::string xml_;  // text of the sheet that is not compressed yet
};

}  // namespace ombrelian
