#pragma once

#include <cstddef>

#include "export/ReportWriter.h"
#include "platform/ReplacingFile.h"

struct lxw_workbook;
struct lxw_worksheet;
struct lxw_format;

namespace ombrelian {

/// Writes a workbook with one sheet by libxlsxwriter: the captions in a first row that stays
/// visible, then the rows, with real numbers and dates. Only the current row is in memory; finished
/// rows wait in an unnamed file in the folder of the target.
class XlsxWriter : public ReportWriter {
 public:
  /// Greatest number of rows of a sheet, including the captions.
  static constexpr std::uint32_t kMostRows = 1'048'576;
  /// Greatest number of UTF-16 code units in a cell.
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
  std::uint64_t cellCount_ = 0;  // number of cells that the library accepted
  bool hasProperties_ = false;
  Text value_;
  std::string bytes_;
};

/// The name of a sheet for `name`: at most 31 characters, without characters that are not allowed.
Text FixExcelWorkSheetName(TextView name);

/// Replaces `out` with `text` as UTF-8 that every reader of a workbook accepts: units that are not
/// text become a mark, and text that looks like an escape of the format is escaped.
void toWorkbookText(TextView text, std::string& out);

}  // namespace ombrelian
