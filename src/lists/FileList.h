#pragma once

#include <functional>
#include <optional>

#include "filters/mCompare.h"
#include "lists/FlatList.h"
#include "platform/FindData.h"
#include "services/FileTypes.h"
#include "support/Date.h"
#include "support/Error.h"

namespace ombrelian {

/// The files directly in one folder, read from the disk when the folder is shown: it knows nothing
/// of a scan, and so is never older than its last read.
class FileList : public FlatList {
 public:
  /// Called now and then while a folder is read, some times in a thousand files or twenty times a
  /// second; false ends the read. It may serve what the user does meanwhile.
  using GoOn = std::function<bool()>;

  /// `options` and `types` are kept by reference; the text of the file filter is trimmed in
  /// `options`.
  FileList(Options& options, FileTypes& types);

  /// Shows `folder`, which gets its final separator. A folder that is shown already is read again
  /// only with `force`; while the list is switched off it is emptied instead. Until a read is over
  /// the list stays as it was; one that was ended leaves what it had. The rows are sorted as the
  /// last ones were. Returns whether they are new. Calls from `goOn` do nothing.
  bool List_Files_ScanFolder(Text& folder, bool force, const GoOn& goOn = {});

  /// Reads the folder shown again.
  bool List_Files_Refresh(const GoOn& goOn = {});

  /// No folder is shown any more; does nothing while one is being read.
  void clear();

  /// With its final separator; empty: none.
  const Text& folder() const { return shown_.folder; }

  /// When it was read last, in local time; 0: never.
  Date readAt() const { return shown_.readAt; }

  /// Why the last read brought nothing, or not all; none if it was whole or was ended.
  const Failure& failure() const { return shown_.failure; }

  bool isReading() const { return isReading_; }

  /// Bytes of all rows.
  std::int64_t sum() const { return shown_.sum; }

  /// With `selected` rows their number and size too.
  Text List_Files_ShowFileStat(const std::vector<Grid::RowIndex>& selected = {}) const;
  Text status(const std::vector<Grid::RowIndex>& selected) const override {
    return List_Files_ShowFileStat(selected);
  }
  std::optional<ListOrigin> origin() const override {
    return ListOrigin{shown_.folder, shown_.readAt};
  }

  Text fullPath(Grid::RowIndex row) const;

  /// Owner of a file. The cells of a hidden column stay empty until they are asked for here.
  TextView readOwner(Grid::RowIndex row);

  /// Takes rows away by their ids, as after their files were deleted.
  void removeRows(const std::vector<std::uint32_t>& ids);

  /// Whether something other than the file itself has that name in the folder; a rename would
  /// replace it.
  bool nameIsTaken(Grid::RowIndex row, TextView newName) const;

  /// What came of a rename.
  struct Renaming {
    /// Empty: it was done, or there was nothing to do because the name is empty or the same; else
    /// all is as it was.
    Text error;

    /// Bytes of the file that had the name before and is no more, whether it had a row or a filter
    /// hid it; none: nothing was replaced.
    std::optional<std::int64_t> replacedBytes;
  };

  /// Renames a file, replacing without a question whatever has the name. The row of a file that was
  /// replaced goes; others may move up.
  Renaming rename(Grid::RowIndex row, TextView newName);

  Grid& grid() override { return shown_.grid; }

  static Columns columns();

 private:
  struct Contents {
    Contents();

    Grid grid;
    Text folder;
    Date readAt = 0;
    std::int64_t sum = 0;
    Failure failure;
  };
  class Reader;

  void List_Files_ScanFolderR(TextView folder, const GoOn& goOn);
  void replace(Contents contents);
  std::optional<platform::FindData> otherNamed(Grid::RowIndex row, TextView name) const;
  void setName(Grid::RowIndex row, TextView name);
  void removeReplaced(Grid::RowIndex row, TextView name);

  Options& options_;
  FileTypes& types_;
  mCompare filter_;
  Contents shown_;
  const Column* sortColumn_;  // column by which the next read sorts the rows
  bool sortsDescending_ = true;
  bool isReading_ = false;
};

}  // namespace ombrelian
