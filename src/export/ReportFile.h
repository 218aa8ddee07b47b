#pragma once

#include <string>

#include "platform/ReplacingFile.h"
#include "support/Text.h"

namespace ombrelian {

/// The target that is the standard output.
inline constexpr TextView kStandardOutput = u"-";

/// Writes a report in text form to the disk: UTF-16, little-endian, with a byte order mark; lines
/// end with CR LF. The file gets the name of its target only when it is complete. The standard
/// output gets what other programs expect of it: UTF-8 without a mark; lines end with LF. A
/// terminal gets no control characters of names.
class ReportFile {
 public:
  Failure open(TextView target);

  /// Appends `line`; files get all its code units without changes. A failed write is kept for
  /// commit(), so the caller need not check each line.
  void SaveLineToFile(TextView line, bool WithLineEnd);

  /// Whether the report goes to the standard output.
  bool isPiped() const { return output_.isOpen(); }

  /// The first failure so far.
  const Failure& failure() const { return failure_; }

  /// Writes the rest of the buffer and replaces the target with the file.
  Failure commit();

 private:
  void append(TextView text);
  void flush();

  Failure openOutput();
  Failure writeOutput();

  platform::ReplacingFile file_;
  platform::FileHandle output_;  // the standard output, if that is the target
  bool isTerminal_ = false;      // whether the target is a terminal
  std::string buffer_;
  Failure failure_;
};

}  // namespace ombrelian
