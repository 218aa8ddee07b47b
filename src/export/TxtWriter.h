#pragma once

#include "export/TextReport.h"

namespace ombrelian {

/// Writes aligned columns for reading. Every column is as wide as its widest cell, so the rows are
/// measured first.
class TxtWriter : public TextReport {
 public:
  TxtWriter(const ReportList& list, SaveSettings settings);

  bool wantsWidths() const override { return true; }
  void measure(const ReportRow& row) override;
  void beginDocument() override;
  void beginSource(const ReportSource& source) override;
  void row(const ReportRow& row) override;

 private:
  struct Slot {
    const Column* column;
    Text caption;
    std::size_t width;  // UTF-16 code units
  };

  std::size_t indentOf(const Slot& slot, const ReportRow& row) const;
  void readCell(const Slot& slot, const ReportRow& row);
  bool isWholePercent(const Column& column) const {
    return list_.shape.wholePercents && column.kind == CellKind::Percent;
  }
  void writeTitle();
  Text composeHeader() const;
  Text composeDividingLine() const;
  void FormatPrintValuesForTXT(const ReportRow& row);
  void appendCell(const Slot& slot, const ReportRow& row);

  std::vector<Slot> slots_;
  Text dividingLine_;
  Text line_;  // text of the current row
  Text cell_;  // text of the current cell
};

/// Appends `text` and fills it with blanks up to `width` (code units): after the text if
/// `leftAlign`, else in front. A longer text is not cut.
void FormatTextWithSpacer(TextView text, std::size_t width, bool leftAlign, Text& out);

}  // namespace ombrelian
