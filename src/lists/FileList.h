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

/// The direct files of one folder. They are read from the disk when the folder is shown,
/// independent of any scan.
class FileList : public FlatList {
 public:
  /// Called regularly while a folder is read: a few times in a thousand files, or twenty times a
  /// second. False ends the read. It may handle user input.
  using GoOn = std::function<bool()>;

  /// References to `options` and `types` are kept; the text of the file filter is trimmed in
  /// `options`.
  FileList(Options& options, FileTypes& types);

  /// Shows `folder`, which gets its final separator. A folder that is already shown is read again
  /// only with `force`. If the list is switched off, it is emptied instead. The list does not
  /// change until a read is complete; a read that is ended early leaves the files that it found.
  /// The rows keep the last sort order. Returns whether the rows are new. Calls from `goOn` do
  /// nothing.
  bool List_Files_ScanFolder(Text& folder, bool force, const GoOn& goOn = {});

  /// Reads the shown folder again.
  bool List_Files_Refresh(const GoOn& goOn = {});

  /// Empties the list, so that no folder is shown; does nothing while a folder is being read.
  void clear();

  /// The shown folder, with its final separator; empty: none.
  const Text& folder() const { return shown_.folder; }

  /// Local time of the last read; 0: there was none.
  Date readAt() const { return shown_.readAt; }

  /// Failure of the last read; none if it was complete or if it was ended by `goOn`.
  const Failure& failure() const { return shown_.failure; }

  bool isReading() const { return isReading_; }

  /// Total size of all rows in bytes.
  std::int64_t sum() const { return shown_.sum; }

  /// Text for the status line; with `selected` rows it includes their number and size.
  Text List_Files_ShowFileStat(const std::vector<Grid::RowIndex>& selected = {}) const;
  Text status(const std::vector<Grid::RowIndex>& selected) const override {
    return List_Files_ShowFileStat(selected);
  }
  std::optional<ListOrigin> origin() const override {
    return ListOrigin{shown_.folder, shown_.readAt};
  }

  Text fullPath(Grid::RowIndex row) const;

  /// Reads the owner of a file. The cells of a hidden owner column are empty until this call.
  TextView readOwner(Grid::RowIndex row);

  /// Removes rows by their ids, for example after their files were deleted.
  void removeRows(const std::vector<std::uint32_t>& ids);

  /// Whether another object in the folder has this name; a rename would replace it.
  bool nameIsTaken(Grid::RowIndex row, TextView newName) const;

  /// Result of a rename.
  struct Renaming {
    /// Empty: the file was renamed, or there was nothing to do because the name is empty or the
    /// same. Else the error text; nothing was changed.
    Text error;

    /// The replaced file, also if a filter hid it; none: nothing was replaced.
    std::optional<platform::FindData> replaced;
  };

  /// Renames a file and replaces an object with the new name without a question. The row of a
  /// replaced file is removed, so other rows may move up.
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
  const Column* sortColumn_ = nullptr;  // column by which the next read sorts the rows
  bool sortsDescending_ = false;
  bool isReading_ = false;
};

}  // namespace ombrelian
