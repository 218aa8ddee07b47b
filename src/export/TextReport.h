#pragma once

#include "export/ReportFile.h"
#include "export/ReportWriter.h"

namespace ombrelian {

/// Common parts of the text formats.
class TextReport : public ReportWriter {
 public:
  /// A reference to `list` is kept.
  TextReport(const ReportList& list, SaveSettings settings)
      : list_(list), settings_(std::move(settings)), cells_(list) {}

  Failure open(TextView target) override { return file_.open(target); }
  const Failure& failure() const override { return file_.failure(); }
  Failure commit() override { return file_.commit(); }

 protected:
  bool isPiped() const { return file_.isPiped(); }
  void writeLine(TextView line) { file_.SaveLineToFile(line, true); }

  /// Writes a line. Its line end is written only if the shape of the list requires it or another
  /// line follows.
  void writeRowLine(TextView line) {
    if (lineIsOpen_) file_.SaveLineToFile({}, true);
    file_.SaveLineToFile(line, list_.shape.endsLastLine);
    lineIsOpen_ = !list_.shape.endsLastLine;
  }

  const ReportList& list_;
  const SaveSettings settings_;
  const ReportCells cells_;

 private:
  ReportFile file_;
  bool lineIsOpen_ = false;
};

}  // namespace ombrelian
