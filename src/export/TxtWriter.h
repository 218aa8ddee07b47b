#pragma once

#include "export/ReportWriter.h"

namespace ombrelian {

/// Aligned columns for reading. Every column is as wide as its widest cell, which is why the rows
/// are measured first.
class TxtWriter : public ReportWriter {
 public:
  /// All are kept by reference but the settings.
  TxtWriter(ReportFile& file, const FolderReport& report, SaveSettings settings);

  bool wantsWidths() const override { return true; }
  void measure(NodeIndex node, const Text& name) override;
  void beginDocument() override;
  void beginSource(NodeIndex source, const Text& name) override;
  void row(NodeIndex node, const Text& name) override;

 private:
  struct Slot {
    const FolderColumn* column;
    Text caption;
    std::size_t width;  // UTF-16 code units
  };

  Text composeHeader() const;
  Text composeDividingLine() const;
  Text FormatPrintValuesForTXT(NodeIndex node, const Text& name) const;
  Text formatName(NodeIndex node, const Text& name, std::size_t width) const;
  void writeRow(NodeIndex node, const Text& name);
  void writeDividingLine();

  ReportFile& file_;
  const FolderReport& report_;
  const SaveSettings settings_;
  std::vector<Slot> slots_;
  Text header_;
  Text dividingLine_;
};

/// Pads a text that is shorter than `width` (code units) with blanks; a longer one stays whole.
Text FormatTextWithSpacer(TextView text, std::size_t width, bool leftAlign);

}  // namespace ombrelian
