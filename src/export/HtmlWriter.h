#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// Writes a page that needs no other file: it contains its style and the script that sorts its
/// tables. Values are written without escapes. Each source is a table with its own head, and
/// browsers show the tables one below the other.
class HtmlWriter : public TextReport {
 public:
  using TextReport::TextReport;

  void beginDocument() override {}
  void beginSource(const ReportSource& source) override;
  void row(const ReportRow& row) override;
  void endDocument() override;

 private:
  void SaveHtmlHeader(const ReportSource& source);
  void writeTitleRow(const ReportSource& source);
  void writeColumnHeader(const Column& column);
  void SaveHtmlRowData(const ReportRow& row);
  void SaveHtmlTableEnd(bool MoreTables);
  void appendCell(const ReportRow& row, const Column& column);
  void appendDateKey(const ReportRow& row, const Column& column);
  void appendNumberKey(const ReportRow& row, const Column& column);

  bool tableIsOpen_ = false;
  Text line_;
  Text value_;
};

/// The style of the pages as one line.
TextView GetTableHtmlStyles();

}  // namespace ombrelian
