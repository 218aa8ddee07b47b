#pragma once

#include "export/ReportWriter.h"

namespace ombrelian {

/// One line a row, raw values in quotation marks. A quotation mark inside a value stays as it is;
/// readers of this format have always had it so.
class CsvWriter : public ReportWriter {
 public:
  /// All are kept by reference but the settings.
  CsvWriter(ReportFile& file, const FolderReport& report, SaveSettings settings)
      : file_(file),
        report_(report),
        settings_(std::move(settings)),
        columns_(report.visibleColumns()) {}

  void beginDocument() override;
  void beginSource(NodeIndex source, const Text& name) override { row(source, name); }
  void row(NodeIndex node, const Text& name) override;

 private:
  void FormatPrintValuesForCSV(NodeIndex node, const Text& name);
  void appendCell(TextView text);

  ReportFile& file_;
  const FolderReport& report_;
  const SaveSettings settings_;
  const std::vector<const FolderColumn*> columns_;
  Text line_;  // of the row in work
};

}  // namespace ombrelian
