#pragma once

#include <memory>

#include "export/ReportList.h"
#include "support/Error.h"

namespace ombrelian {

/// Report formats, with the numbers of the settings file, which never change.
enum class ReportFormat { TXT = 0, CSV = 1, HTML = 2, XML = 3, XLSX = 4 };

/// The format for the ending of a file's name; TXT for an unknown ending.
ReportFormat formatOfFileName(TextView name);

/// The format of an ending, without its point, in upper or lower case; none for an unknown ending.
std::optional<ReportFormat> formatOfExtension(TextView extension);

/// The ending of files of a format, without the point: "txt", "csv", ...
TextView fileExtension(ReportFormat format);

/// Choices of the user for a save, in addition to the format and the rows.
struct SaveSettings {
  Text delimiter = u"\t";     // text between cells; TXT and CSV
  bool indent = false;        // TXT: the name column is indented by the level
  bool dividingLine = false;  // TXT: a line of hyphens after each row
};

/// Writes one report in one format. A save calls, in this order: open(); measure() for every row if
/// wantsWidths(); beginDocument(); for each source beginSource(), row() for the row of the source
/// and each row below it, endSource(); endDocument(), also if the user ended the save early;
/// commit(). Between open() and commit() only failure() reports failures.
class ReportWriter {
 public:
  virtual ~ReportWriter() = default;

  /// Begins a report, which is placed at `target` (absolute) when it is complete.
  virtual Failure open(TextView target) = 0;

  virtual bool wantsWidths() const { return false; }

  /// Measures a row that will be written later.
  virtual void measure(const ReportRow& /*row*/) {}

  virtual void beginDocument() = 0;
  virtual void beginSource(const ReportSource& source) = 0;
  virtual void row(const ReportRow& row) = 0;
  virtual void endSource() {}
  virtual void endDocument() {}

  /// The first failure so far; later writes have no effect.
  virtual const Failure& failure() const = 0;

  /// Number of cells that the format cannot hold and that were cut.
  virtual std::uint64_t cutCells() const { return 0; }

  /// Replaces the target with the report, but not after a failure.
  virtual Failure commit() = 0;
};

/// Makes a writer for this format; it keeps a reference to `list`.
std::unique_ptr<ReportWriter> makeReportWriter(ReportFormat format, const ReportList& list,
                                               SaveSettings settings);

}  // namespace ombrelian
