#pragma once

#include <functional>
#include <map>

#include "format/ToolTips.h"
#include "lists/FlatList.h"
#include "platform/Volumes.h"
#include "settings/Options.h"
#include "settings/z_INI.h"
#include "support/Date.h"

namespace ombrelian {

/// All drives of this machine and the network paths that the user stored, with their capacity. A
/// row whose drive failed has an error and no sizes. For a network path, the cell "drive" is the
/// path of the files, and "path" is the mount point.
///
/// A drive that does not answer delays a reading only for a limited time; see
/// platform::ProbeDrives.
class DriveList : public FlatList {
 public:
  /// Receives the next step of a reading, for the status line. Calls of this list do nothing
  /// meanwhile.
  using Progress = std::function<void(TextView)>;

  /// Asks drives; platform::ProbeDrives or a replacement in tests.
  using Probe =
      std::function<std::vector<platform::DriveAnswer>(const std::vector<Text>&, unsigned)>;

  explicit DriveList(Probe probe = platform::ProbeDrives);

  /// Reads everything again; `file` contains the stored paths. The rows get new ids and keep the
  /// last sort order.
  void Drives_GetAllDrives(const IniStore& file, const Progress& progress = {});

  /// Lists every mount of the system from the next reading on, and not only the drives.
  void setShowsAllMounts(bool showsAll) { showsAllMounts_ = showsAll; }

  /// Adds a row for each stored path; a path that is stored twice gets two rows.
  void Drives_LoadSavedNetworkFolders(const IniStore& file);

  /// Adds a row for a network path and stores the path in `file`. False: `path` is not a network
  /// path.
  bool Drives_AddUNCpath(TextView path, IniStore& file, const Progress& progress = {});

  /// Removes a network path from the list and from `file`. False: the row is a local drive and
  /// stays.
  bool Drives_RemoveDrive(Grid::RowIndex row, IniStore& file);

  /// Asks the drive of `path` for its space again. A drive that exists but is not in the list gets
  /// a row.
  void Drives_RefreshDrive(TextView path);

  /// Stores the network paths of the list, and no others.
  void Optionen_Speichern_Drives_SaveNetworkFolders(IniStore& file) const;

  Text List_Drives_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_Drives_ShowStat(); }
  std::optional<ListOrigin> origin() const override { return ListOrigin{{}, shown_.readAt}; }

  /// Local time of the last reading; 0: there was none.
  Date readAt() const { return shown_.readAt; }

  bool hasError(Grid::RowIndex row) const { return shown_.errors.contains(shown_.grid.id(row)); }

  /// Error text of a row; empty: the row has no error.
  Text errorText(Grid::RowIndex row) const;

  DriveToolTipValues toolTipValues(Grid::RowIndex row) const;

  /// The row of a drive's root or of a network path, without regard to final separators;
  /// Grid::kNoRow: none.
  Grid::RowIndex rowOfDrive(TextView drive) const;

  /// The folder to scan or open for a row; for a mounted network path, its mount point.
  Text folderOf(Grid::RowIndex row) const;

  Grid& grid() override { return shown_.grid; }

  static Columns columns();

 private:
  struct Contents {
    Contents();

    Grid grid;
    std::map<std::uint32_t, Text> errors;  // error text of each row id
    Date readAt = 0;
  };
  class Reading;

  static void addSaved(const IniStore& file, Reading& reading, const Progress& progress);
  void readAll(const IniStore& file, const Progress& progress);
  std::vector<Grid::RowIndex> rowsOf(TextView root) const;

  const Probe probe_;
  Contents shown_;
  bool isReading_ = false;
  bool showsAllMounts_ = false;
  bool hasSavedPaths_ = false;  // the stored paths have rows, so that saving loses none
};

}  // namespace ombrelian
