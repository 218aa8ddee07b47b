#pragma once

#include <string>

#include "platform/ReplacingFile.h"
#include "support/Text.h"

namespace ombrelian {

/// Writes a report in text form to the disk: UTF-16, little-endian, with a byte order mark; lines
/// end with CR LF. The file gets the name of its target only when it is complete.
class ReportFile {
 public:
  Failure open(TextView target);

  /// Appends all code units of `line` without changes. A failed write is kept for commit(), so the
  /// caller need not check each line.
  void SaveLineToFile(TextView line, bool WithLineEnd);

  /// The first failure so far.
  const Failure& failure() const { return failure_; }

  /// Writes the rest of the buffer and replaces the target with the file.
  Failure commit();

 private:
  void append(TextView text);
  void flush();

  platform::ReplacingFile file_;
  std::string buffer_;
  Failure failure_;
};

}  // namespace ombrelian
