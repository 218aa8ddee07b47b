#pragma once

#include <cstddef>

#include "export/ReportWriter.h"
#include "platform/ReplacingFile.h"

struct lxw_workbook;
struct lxw_worksheet;
struct lxw_format;

namespace ombrelian {

/// A workbook of one sheet: the captions in a first row that stays in view, then the rows, numbers
/// and dates as such. Only the row in work is kept in memory; finished ones wait in an unnamed file
/// beside the target. Written by libxlsxwriter.
class XlsxWriter : public ReportWriter {
 public:
  /// Rows that a sheet holds, its captions included.
  static constexpr std::uint32_t kMostRows = 1'048'576;
  /// UTF-16 code units that a cell holds.
  static constexpr std::size_t kMostUnits = 32'767;

  explicit XlsxWriter(const ReportList& list) : list_(list), cells_(list) {}
  ~XlsxWriter() override;

  Failure open(TextView target) override;
  void beginDocument() override;
  void beginSource(const ReportSource& source) override;
  void row(const ReportRow& row) override;
  const Failure& failure() const override { return failure_; }
  Failure commit() override;

 private:
  void writeCell(std::uint16_t place, const ReportRow& row, const Column& column);
  void writeText(std::uint16_t place, TextView text);
  void writeNumber(std::uint16_t place, double number, lxw_format* format);
  void writeDate(std::uint16_t place, const ReportRow& row, const Column& column);
  void take(int error);
  void closeWorkbook();
  void fail(Text text);
  void failUnwritten(TextView reason);

  const ReportList& list_;
  const ReportCells cells_;
  platform::ReplacingFile file_;
  std::string folder_;  // folder for the library's own files
  Failure failure_;
  lxw_workbook* workbook_ = nullptr;
  lxw_worksheet* sheet_ = nullptr;
  lxw_format* dateFormat_ = nullptr;
  std::uint32_t row_ = 0;        // row of the sheet, counted from 0
  std::uint64_t cellCount_ = 0;  // cells that the library took
  bool hasProperties_ = false;
  Text value_;
  std::string bytes_;
};

/// The name of a sheet for `name`: at most 31 characters, none of those that sheets may not have.
Text FixExcelWorkSheetName(TextView name);

/// Replaces `out` with `text` as UTF-8 that every reader of a workbook takes: what is no text is
/// shown as a mark, and what looks like one of the format's escapes is escaped.
void toWorkbookText(TextView text, std::string& out);

}  // namespace ombrelian
