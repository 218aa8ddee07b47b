#pragma once

#include <vector>

#include "format/DatePattern.h"
#include "lists/FlatList.h"
#include "settings/Options.h"
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

/// Receives each line when it is added.
class LogListener {
 public:
  virtual ~LogListener() = default;
  virtual void logged(const LogRow& row) = 0;
};

/// The log for the user: the start and end of each scan, its sums and failures. Each line is a row
/// of the list and a line of a file. The file is opened for each line separately, so that it can be
/// read at any time and is complete after a crash.
class Log : public FlatList {
 public:
  /// A reference to `options` is kept.
  explicit Log(const Options& options) : options_(options), grid_(columns()) {}

  /// Sets the absolute path of the log file; without a path there is no file. A file of more than
  /// 16 MB is renamed, and a new one begins.
  void setFile(Text path) { file_ = std::move(path); }

  /// Adds a line with the current time. If the file cannot be written, the line is only in the
  /// list.
  void LogProtokoll(TextView text, bool isError = false);

  /// Begins a new group with the next line.
  void flipGroup() { group_ = 1 - group_; }

  /// Sets the listener, which is not owned; null: none.
  void setListener(LogListener* listener) { listener_ = listener; }

  const std::vector<LogRow>& rows() const { return rows_; }

  /// Deletes all rows but not the file.
  void clearRows();

  /// The rows in the order in which they were added, with their groups as bands.
  Grid& grid() override { return grid_; }

  /// The columns of the log: date and text.
  static Columns columns();

  /// The date of a row in the current form of dates.
  Text dateText(const LogRow& row);

  /// Text of the status line for the log.
  Text List_Log_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_Log_ShowStat(); }

  /// The time of the origin is the current time, because the log is always up to date.
  std::optional<ListOrigin> origin() const override;

  /// Path of the file to open for the user; empty if there is none.
  Text Show_Log() const;

 private:
  void appendToFile(const LogRow& row);
  void addToGrid(const LogRow& row);

  const Options& options_;
  std::vector<LogRow> rows_;
  Grid grid_;
  LogListener* listener_ = nullptr;
  Text file_;
  Text dateFormat_;  // format of datePattern_
  DatePattern datePattern_;
  int group_ = 1;
};

}  // namespace ombrelian
