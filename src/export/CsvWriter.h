#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// One line a row, values in quotation marks. A quotation mark inside a value stays as it is;
/// readers of this format have always had it so.
class CsvWriter : public TextReport {
 public:
  using TextReport::TextReport;

  void beginDocument() override;
  void beginSource(const ReportSource&) override {}
  void row(const ReportRow& row) override;

 private:
  void openCell();

  Text line_;  // text of the current row
};

}  // namespace ombrelian
