#pragma once

#include <vector>

#include "support/Date.h"
#include "support/Text.h"

namespace ombrelian {

/// One line of the user's log.
struct LogRow {
  Date date = 0;
  Text text;
  bool isError = false;
  int group = 1;  // 0 or 1; changes with each source, so that a list can shade them
};

/// Told of each line as it comes.
class LogListener {
 public:
  virtual ~LogListener() = default;
  virtual void logged(const LogRow& row) = 0;
};

/// What the program did, for the user: the start and end of each scan, its sums and failures.
class Log {
 public:
  /// Adds a line with the present time.
  void LogProtokoll(TextView text, bool isError = false);

  /// The next line begins a new group.
  void flipGroup() { group_ = 1 - group_; }

  /// Not owned; null: nobody.
  void setListener(LogListener* listener) { listener_ = listener; }

  const std::vector<LogRow>& rows() const { return rows_; }

 private:
  std::vector<LogRow> rows_;
  LogListener* listener_ = nullptr;
  int group_ = 1;
};

}  // namespace ombrelian
