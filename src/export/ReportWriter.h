#pragma once

#include <memory>

#include "export/ReportList.h"
#include "support/Error.h"

namespace ombrelian {

/// Report formats; the numbers are those of the settings file and never change.
enum class ReportFormat { TXT = 0, CSV = 1, HTML = 2, XML = 3, XLSX = 4 };

/// The format that a file's name asks for by its ending; TXT for every other.
ReportFormat formatOfFileName(TextView name);

/// The format of that ending, without its point, in either case; none for every other.
std::optional<ReportFormat> formatOfExtension(TextView extension);

/// The ending that files of a format have, without the point: "txt", "csv", ...
TextView fileExtension(ReportFormat format);

/// What the user chose for a save, beyond the format and the rows.
struct SaveSettings {
  Text delimiter = u"\t";     // between cells; TXT and CSV
  bool indent = false;        // TXT: the name column is indented by the level
  bool dividingLine = false;  // TXT: a line of hyphens behind each row
};

/// Writes one report in one format. A save calls, in this order: open(); measure() for every row if
/// wantsWidths(); beginDocument(); for each source beginSource(), row() for the source's own row
/// and each below it, endSource(); endDocument(), also when the user ended the save early;
/// commit(). Between open() and commit() nothing but failure() tells of failures.
class ReportWriter {
 public:
  virtual ~ReportWriter() = default;

  /// Begins a report that will stand at `target` (absolute) once it is whole.
  virtual Failure open(TextView target) = 0;

  virtual bool wantsWidths() const { return false; }

  /// A row that will be written.
  virtual void measure(const ReportRow& /*row*/) {}

  virtual void beginDocument() = 0;
  virtual void beginSource(const ReportSource& source) = 0;
  virtual void row(const ReportRow& row) = 0;
  virtual void endSource() {}
  virtual void endDocument() {}

  /// The first failure so far; nothing that is written after it counts.
  virtual const Failure& failure() const = 0;

  /// Puts the report in place; after a failure there is none.
  virtual Failure commit() = 0;
};

/// A writer of that format; keeps `list` by reference.
std::unique_ptr<ReportWriter> makeReportWriter(ReportFormat format, const ReportList& list,
                                               SaveSettings settings);

}  // namespace ombrelian
