#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// One element a line, with tabs that follow the tree. Every source is a "list" element of its own
/// side by side with the others; a reader takes the file apart at these.
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

  std::vector<std::uint32_t> openLevels_;  // levels of the open row elements, outermost first
  Text line_;
  Text value_;
};

/// Appends `text` to `out` with "<", ">", "&", "'" and the double quote replaced, in this order:
/// what the first two become is escaped once more. Readers of these files undo both.
void XML_replace_illegal_chars(TextView text, Text& out);

}  // namespace ombrelian
