#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// Writes one line for each row, with values in quotation marks. A quotation mark inside a value is
/// not changed, as programs that read this format expect.
class CsvWriter : public TextReport {
 public:
  using TextReport::TextReport;

  void beginDocument() override;
  void beginSource(const ReportSource&) override {}
  void row(const ReportRow& row) override;

 private:
  void openCell();

  Text line_;   // text of the current row
  Text value_;  // text of the current cell
};

}  // namespace ombrelian
