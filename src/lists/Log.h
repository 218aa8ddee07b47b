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

/// Hears of each line when it is added.
class LogListener {
 public:
  virtual ~LogListener() = default;
  virtual void logged(const LogRow& row) = 0;
};

/// What the program did, for the user: the start and end of each scan, its sums and failures. Each
/// line is a row of the list and a line of a file, which is opened for it alone, so that it can be
/// read at any time and survives a crash.
class Log : public FlatList {
 public:
  /// `options` is kept by reference.
  explicit Log(const Options& options) : options_(options), grid_(columns()) {}

  /// Where the file is to be, an absolute path; without it there is none. It grows for ever.
  void setFile(Text path) { file_ = std::move(path); }

  /// Adds a line with the present time. A file that cannot be written is done without.
  void LogProtokoll(TextView text, bool isError = false);

  /// The next line begins a new group.
  void flipGroup() { group_ = 1 - group_; }

  /// Not owned; null: nobody.
  void setListener(LogListener* listener) { listener_ = listener; }

  const std::vector<LogRow>& rows() const { return rows_; }

  /// Deletes all rows and leaves the file alone.
  void clearRows();

  /// The rows in the order in which they came, with their groups as bands.
  Grid& grid() override { return grid_; }

  /// Date and text.
  static Columns columns();

  /// The date of a row as it is shown, by the present form of dates.
  Text dateText(const LogRow& row);

  /// What the status line says of the log.
  Text List_Log_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_Log_ShowStat(); }

  /// A log is as old as its last look.
  std::optional<ListOrigin> origin() const override;

  /// The file to open for the user; empty where there is none.
  Text Show_Log() const;

 private:
  void appendToFile(const LogRow& row);
  void addToGrid(const LogRow& row);

  const Options& options_;
  std::vector<LogRow> rows_;
  Grid grid_;
  LogListener* listener_ = nullptr;
  Text file_;
  Text dateFormat_;  // format that datePattern_ was made from
  DatePattern datePattern_;
  int group_ = 1;
};

}  // namespace ombrelian
