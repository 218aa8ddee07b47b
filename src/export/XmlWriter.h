#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// Writes one element on each line, with tabs for the depth of the tree. Every source is a separate
/// "list" element beside the others; programs that read the file split it at these elements.
class XmlWriter : public TextReport {
 public:
  using TextReport::TextReport;

  void beginDocument() override;
  void beginSource(const ReportSource& source) override;
  void row(const ReportRow& row) override;
  void endSource() override;

 private:
  void FormatPrintValuesForXML(const ReportRow& row, std::size_t tabs);
  void writeElement(std::size_t tabs, TextView key, TextView value);
  void closeRowsDownTo(std::uint32_t level);

  std::vector<std::uint32_t> openLevels_;  // levels of the open row elements, the outermost first
  Text line_;
  Text value_;
};

/// Appends `text` to `out` with "<", ">", "&", "'" and the double quote replaced in this order, so
/// the results of the first two are escaped a second time. Programs that read these files undo
/// both.
void XML_replace_illegal_chars(TextView text, Text& out);

}  // namespace ombrelian
