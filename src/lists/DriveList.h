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

/// All drives of this machine and the network paths that the user had remembered, with their
/// capacity. A row whose drive failed has an error and no sizes; the cell "drive" of a network path
/// says where its files lie, and "path" where they are mounted.
///
/// A drive that does not answer costs a reading a bounded time; see platform::ProbeDrives.
class DriveList : public FlatList {
 public:
  /// Takes what a reading is about to do, for the status line. Calls of this list do nothing
  /// meanwhile.
  using Progress = std::function<void(TextView)>;

  /// Asks drives as platform::ProbeDrives does.
  using Probe =
      std::function<std::vector<platform::DriveAnswer>(const std::vector<Text>&, unsigned)>;

  explicit DriveList(Probe probe = platform::ProbeDrives);

  /// Reads everything anew; `file` has the remembered paths. The rows get new ids and are sorted as
  /// the last ones were.
  void Drives_GetAllDrives(const IniStore& file, const Progress& progress = {});

  /// Adds a row for each remembered path; one that is remembered twice gets two.
  void Drives_LoadSavedNetworkFolders(const IniStore& file);

  /// Adds a row for a network path and remembers it in `file`. False: it is none.
  bool Drives_AddUNCpath(TextView path, IniStore& file, const Progress& progress = {});

  /// Takes a network path out of the list and forgets it. False: the row is a local drive and
  /// stays.
  bool Drives_RemoveDrive(Grid::RowIndex row, IniStore& file);

  /// Asks the drive that holds `path` for its space again; one that is not in the list, though it
  /// is there, gets a row.
  void Drives_RefreshDrive(TextView path);

  /// Remembers the network paths of the list, and no others.
  void Optionen_Speichern_Drives_SaveNetworkFolders(IniStore& file) const;

  Text List_Drives_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_Drives_ShowStat(); }
  std::optional<ListOrigin> origin() const override { return ListOrigin{{}, shown_.readAt}; }

  /// When the drives were read last, in local time; 0: never.
  Date readAt() const { return shown_.readAt; }

  bool hasError(Grid::RowIndex row) const { return shown_.errors.contains(shown_.grid.id(row)); }

  /// Empty for a row without one.
  Text errorText(Grid::RowIndex row) const;

  DriveToolTipValues toolTipValues(Grid::RowIndex row) const;

  /// The row of a drive's root or of a network path, final separators aside; Grid::kNoRow: none.
  Grid::RowIndex rowOfDrive(TextView drive) const;

  /// The folder to scan or open for a row; of a network path that is mounted where that is.
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
  bool hasSavedPaths_ = false;  // the remembered paths are rows, so that saving loses none
};

}  // namespace ombrelian
