#pragma once

#include "core/tree/FolderTree.h"
#include "export/ReportFile.h"
#include "lists/FolderReport.h"

namespace ombrelian {

/// Report formats; the numbers are those of the settings file and never change.
enum class ReportFormat { TXT = 0, CSV = 1, HTML = 2, XML = 3, XLSX = 4 };

/// The format that a file's name asks for by its ending; TXT for every other.
ReportFormat formatOfFileName(TextView name);

/// What the user chose for a save, beyond the format and the rows.
struct SaveSettings {
  Text delimiter = u"\t";     // between cells; TXT and CSV
  bool indent = false;        // TXT: the name column is indented by the level
  bool dividingLine = false;  // TXT: a line of hyphens behind each row
};

/// Writes one report in one format. A save calls, in this order: measure() for every row if
/// wantsWidths(), beginDocument(), and for each source beginSource(), row() for each row below it,
/// endSource(); then endDocument(), also when the user ended the save early.
class ReportWriter {
 public:
  virtual ~ReportWriter() = default;

  virtual bool wantsWidths() const { return false; }

  /// A row that will be written; `name` as for row().
  virtual void measure(NodeIndex /*node*/, const Text& /*name*/) {}

  virtual void beginDocument() = 0;

  /// The source's own row; `name` is its path.
  virtual void beginSource(NodeIndex source, const Text& name) = 0;

  /// A row below it; `name` is the full path, of a pseudo folder with the name in brackets.
  virtual void row(NodeIndex node, const Text& name) = 0;

  virtual void endSource() {}
  virtual void endDocument() {}
};

}  // namespace ombrelian
