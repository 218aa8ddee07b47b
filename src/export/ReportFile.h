#pragma once

#include <string>

#include "platform/ReplacingFile.h"
#include "support/Text.h"

namespace ombrelian {

/// A report in text form on its way to the disk: UTF-16, little-endian, with a byte order mark,
/// lines ended by CR LF. Stands under its target's name only when it is whole.
class ReportFile {
 public:
  Failure open(TextView target);

  /// Appends `line`, whatever it holds, code unit by code unit. A failed write is kept for
  /// commit(); it need not be looked at for each line.
  void SaveLineToFile(TextView line, bool WithLineEnd);

  /// The first failure so far.
  const Failure& failure() const { return failure_; }

  /// Writes what is left and puts the file in place.
  Failure commit();

 private:
  void append(TextView text);
  void flush();

  platform::ReplacingFile file_;
  std::string buffer_;
  Failure failure_;
};

}  // namespace ombrelian
