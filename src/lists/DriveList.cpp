#include "lists/DriveList.h"

#include <algorithm>

#include "format/Mask.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "platform/Time.h"
#include "settings/SavedFolders.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using platform::DriveAnswer;
using platform::ErrorCode;
using platform::kSuccess;

constexpr TextView kModule = u"frmMain";

/// Time limit of a reading for all drives together.
constexpr unsigned kProbeMilliseconds = 800;

constexpr TextView kClusterPattern = u"###,##0";

constexpr Column kDriveTable[] = {
    {1, 9054, u"Laufwerk", u"drive", CellKind::PlainText},
    {2, 3581, u"Gesamt", u"SizeTotalBytes", CellKind::Size, {}, nullptr, SizeKind::Total},
    {3, 3580, u"Frei", u"SizeFreeBytes", CellKind::Size, {}, nullptr, SizeKind::Free},
    {4, 9055, u"Frei (%)", u"PercentSizeFree", CellKind::Percent},
    {5, 3579, u"Belegt", u"SizeUsedBytes", CellKind::Size, {}, nullptr, SizeKind::Used},
    {6, 9056, u"Belegt (%)", u"PercentSizeUsed", CellKind::Percent},
    {7, 3576, u"Name", u"name", CellKind::PlainText},
    {8, 3577, u"Dateisystem", u"filesystem", CellKind::PlainText},
    {9, 3585, u"Typ", u"type", CellKind::PlainText},
    {10, 9057, u"Cluster", u"cluster", CellKind::Count, u"*###,##0*"},  // KB
    {11, 3728, u"Pfad", u"path", CellKind::PlainText},
};
static_assert(idsCountFromOne(kDriveTable, kDriveColumns));

constexpr const Column& kDrive = kDriveTable[0];
constexpr const Column& kTotal = kDriveTable[1];
constexpr const Column& kFree = kDriveTable[2];
constexpr const Column& kPercentFree = kDriveTable[3];
constexpr const Column& kUsed = kDriveTable[4];
constexpr const Column& kPercentUsed = kDriveTable[5];
constexpr const Column& kName = kDriveTable[6];
constexpr const Column& kFileSystem = kDriveTable[7];
constexpr const Column& kType = kDriveTable[8];
constexpr const Column& kCluster = kDriveTable[9];
constexpr const Column& kPath = kDriveTable[10];

/// Text for an error: this list has its own texts for errors whose system text does not help. For
/// network paths the number of the error is included.
Text errorShown(ErrorCode code, bool isNetwork) {
  Text text;
  if (code == platform::kTimeout) text = TL(9402, u"Das Laufwerk antwortet nicht.");
  if (code == platform::kNetworkPathNotFound)
    text = TL(9403, u"Der Netzwerkpfad ist nicht eingehängt.");
  if (code == platform::kNetworkGone)
    text = TL(9051, u"Der Laufwerksbuchstabe ist momentan nicht verbunden");
  if (text.empty()) return xGetErrorText(isNetwork, code);
  return isNetwork ? u"#" + toText(code) + u" - " + text : text;
}

/// Whether no more data can be read from a drive after this error.
bool isGone(ErrorCode code) {
  return code == platform::kNetworkGone || code == platform::kNotReady ||
         code == platform::kPathNotFound;
}

Text withoutFinalSeparators(TextView path) {
  while (path.size() > 1 && path.back() == platform::kNativeSeparator)
    path.remove_suffix(1);
  return Text(path);
}

/// A network path in the form of this system, with its final separator; empty: the text is not a
/// network path.
Text networkPath(TextView typed) {
  Text path(typed);
  if (platform::kNativeSeparator == u'/' && path.starts_with(u"\\\\")) {
    std::replace(path.begin(), path.end(), u'\\', u'/');
  }
  if (!isNetworkPath(path) || path.find_first_not_of(u"/\\") == Text::npos) return {};
  return xAddBackslash(path);
}

bool isBelow(TextView root, TextView path) {
  const Text begin = xGetPathWithBackslash(root);
  return path.starts_with(begin) || xGetPathWithBackslash(path) == begin;
}

void clearSizes(Grid& grid, Grid::RowIndex row) {
  for (const Column* const column : {&kTotal, &kFree, &kUsed, &kCluster})
    grid.set(row, *column, kNoNumber);
  for (const Column* const column : {&kPercentFree, &kPercentUsed})
    grid.set(row, *column, kNoReal);
}

void Drives_AddSizeValues(Grid& grid, Grid::RowIndex row, const platform::DiskSpace& space) {
  const std::int64_t used = space.totalBytes - space.freeBytes;
  grid.set(row, kTotal, space.totalBytes);
  grid.set(row, kFree, space.freeBytes);
  grid.set(row, kUsed, used);
  grid.set(row, kCluster, (space.clusterBytes + 512) / 1024);
  if (space.totalBytes == 0) return;  // a drive of size 0 has no percentages
  grid.set(row, kPercentFree, percentOf(space.freeBytes, space.totalBytes));
  grid.set(row, kPercentUsed, percentOf(used, space.totalBytes));
}

}  // namespace

/// Fills rows. The questions to the drives themselves are collected, and all drives are asked at
/// the same time.
class DriveList::Reading {
 public:
  Reading(Contents& rows, const Probe& probe) : rows_(rows), probe_(probe) {}

  void addDrive(const Text& root) {
    const Grid::RowIndex row = addRow(root);
    int kind = 0;
    grid().set(row, kType, TextView(xGetDriveTypeString(root, kind)));
    if (kind == platform::kDriveRemote) {
      grid().set(row, kPath, TextView(platform::WNetGetConnectionW(root)));
    }
    const ErrorCode error = showVolume(row, root);
    if (!isGone(error)) ask(row, root);
  }

  void addNetworkPath(const Text& path) {
    const Grid::RowIndex row = addRow(path);
    grid().set(row, kType, TextView(TL(3508, u"Netzlaufwerk")));
    findNetworkPath(row, path);
  }

  /// Updates the sizes of a row, and for a network path also whether it is mounted now.
  void refresh(Grid::RowIndex row) {
    const Text drive(grid().text(row, kDrive));
    rows_.errors.erase(grid().id(row));
    clearSizes(grid(), row);
    isNetworkPath(drive) ? findNetworkPath(row, drive) : ask(row, drive);
  }

  /// Asks the drives of all waiting rows and fills in their space (Drives_GetDriveFreeSpace).
  void finish() {
    const std::vector<DriveAnswer> answers = probe_(roots_, kProbeMilliseconds);
    for (std::size_t i = 0; i < asked_.size(); ++i) {
      if (answers[i].error == kSuccess) {
        Drives_AddSizeValues(grid(), asked_[i], answers[i].space);
      } else {
        setError(asked_[i], answers[i].error);
      }
    }
  }

 private:
  Grid& grid() { return rows_.grid; }

  Grid::RowIndex addRow(const Text& drive) {
    const Grid::RowIndex row = grid().addRow();
    grid().set(row, kDrive, drive);
    clearSizes(grid(), row);
    return row;
  }

  void findNetworkPath(Grid::RowIndex row, const Text& path) {
    const Text root = platform::FindNetworkDrive(path);
    grid().set(row, kPath, TextView(root));
    if (root.empty()) {
      grid().set(row, kFileSystem, TextView(u"?"));
      return setError(row, platform::kNetworkPathNotFound);
    }
    if (showVolume(row, root) == kSuccess) ask(row, root);
  }

  /// Shows the label and the file system of a volume, or nothing if the drive is gone.
  ErrorCode showVolume(Grid::RowIndex row, const Text& root) {
    platform::VolumeInformation volume;
    const ErrorCode error = platform::GetVolumeInformationW(root, volume);
    if (!isNetworkPath(grid().text(row, kDrive))) grid().set(row, kName, TextView(volume.label));
    if (error == kSuccess) grid().set(row, kFileSystem, TextView(volume.fileSystem));
    if (error != kSuccess && !isGone(error)) grid().set(row, kFileSystem, TextView(u"?"));
    setError(row, error);
    return error;
  }

  void ask(Grid::RowIndex row, const Text& root) {
    asked_.push_back(row);
    roots_.push_back(root);
  }

  void setError(Grid::RowIndex row, ErrorCode error) {
    if (error == kSuccess) return;
    const bool isNetwork = isNetworkPath(grid().text(row, kDrive));
    rows_.errors[grid().id(row)] = errorShown(error, isNetwork);
  }

  Contents& rows_;
  const Probe& probe_;
  std::vector<Grid::RowIndex> asked_;
  std::vector<Text> roots_;  // mount points of the drives in asked_
};

DriveList::Contents::Contents() : grid(kDriveTable) {}

DriveList::DriveList(Probe probe) : probe_(std::move(probe)) {}

void DriveList::Drives_GetAllDrives(const IniStore& file, const Progress& progress) {
  if (isReading_) return;
  isReading_ = true;
  Guarded(kModule, u"Drives_GetAllDrives", [&] { readAll(file, progress); });
  isReading_ = false;
}

void DriveList::readAll(const IniStore& file, const Progress& progress) {
  Contents fresh;
  fresh.readAt = toDate(platform::GetLocalTime());
  Reading reading(fresh, probe_);
  const std::vector<Text> roots =
      showsAllMounts_ ? platform::AllMountPoints() : platform::GetLogicalDriveStringsW();
  for (std::size_t i = 0; i < roots.size(); ++i) {
    if (progress) {
      progress(TL(9050, u"Laufwerk %1 (%2/%3) wird untersucht...",
                  {roots[i], toText(i + 1), toText(roots.size())}));
    }
    reading.addDrive(roots[i]);
  }
  addSaved(file, reading, progress);
  reading.finish();
  if (const Column* const sorted = shown_.grid.sortColumn(); sorted != nullptr) {
    fresh.grid.sort(*sorted, shown_.grid.sortedDescending());
  }
  shown_ = std::move(fresh);
  hasSavedPaths_ = true;
}

void DriveList::addSaved(const IniStore& file, Reading& reading, const Progress& progress) {
  for (const Text& path : ombrelian::Drives_LoadSavedNetworkFolders(file)) {
    if (progress) progress(TL(9053, u"Netzwerkpfad '%1' wird untersucht...", {path}));
    reading.addNetworkPath(path);
  }
}

void DriveList::Drives_LoadSavedNetworkFolders(const IniStore& file) {
  if (isReading_) return;
  Guarded(kModule, u"Drives_LoadSavedNetworkFolders", [&] {
    Reading reading(shown_, probe_);
    addSaved(file, reading, {});
    reading.finish();
    hasSavedPaths_ = true;
  });
}

bool DriveList::Drives_AddUNCpath(TextView path, IniStore& file, const Progress& progress) {
  if (isReading_) return false;
  isReading_ = true;
  const bool isAdded = Guarded(kModule, u"Drives_AddUNCpath", [&] {
    const Text network = networkPath(path);
    if (network.empty()) return false;
    if (progress) progress(TL(9053, u"Netzwerkpfad '%1' wird untersucht...", {network}));
    Reading reading(shown_, probe_);
    if (!hasSavedPaths_) addSaved(file, reading, {});
    hasSavedPaths_ = true;
    reading.addNetworkPath(network);
    reading.finish();
    Optionen_Speichern_Drives_SaveNetworkFolders(file);
    return true;
  });
  isReading_ = false;
  return isAdded;
}

bool DriveList::Drives_RemoveDrive(Grid::RowIndex row, IniStore& file) {
  if (isReading_ || !isNetworkPath(shown_.grid.text(row, kDrive))) return false;
  shown_.errors.erase(shown_.grid.id(row));
  shown_.grid.removeRow(row);
  Optionen_Speichern_Drives_SaveNetworkFolders(file);
  return true;
}

void DriveList::Drives_RefreshDrive(TextView path) {
  if (isReading_) return;
  Guarded(kModule, u"Drives_RefreshDrive", [&] {
    std::vector<Text> roots = platform::GetLogicalDriveStringsW();
    for (Grid::RowIndex row = 0; row < shown_.grid.rowCount(); ++row)
      roots.emplace_back(shown_.grid.text(row, kDrive));
    Text holding;
    for (const Text& root : roots) {
      if (isBelow(root, path) && root.size() > holding.size()) holding = root;
    }
    if (holding.empty()) return;
    Reading reading(shown_, probe_);
    const std::vector<Grid::RowIndex> rows = rowsOf(holding);
    for (const Grid::RowIndex row : rows)
      reading.refresh(row);
    if (rows.empty()) reading.addDrive(holding);
    reading.finish();
  });
}

/// The rows with the root or the network path `root`.
std::vector<Grid::RowIndex> DriveList::rowsOf(TextView root) const {
  std::vector<Grid::RowIndex> rows;
  for (Grid::RowIndex row = 0; row < shown_.grid.rowCount(); ++row) {
    if (folderOf(row) == root || shown_.grid.text(row, kDrive) == root) rows.push_back(row);
  }
  return rows;
}

void DriveList::Optionen_Speichern_Drives_SaveNetworkFolders(IniStore& file) const {
  if (!hasSavedPaths_) return;
  std::vector<Text> drives;
  for (Grid::RowIndex row = 0; row < shown_.grid.rowCount(); ++row)
    drives.emplace_back(shown_.grid.text(row, kDrive));
  ombrelian::Optionen_Speichern_Drives_SaveNetworkFolders(drives, file);
}

Text DriveList::List_Drives_ShowStat() const {
  const Grid& grid = shown_.grid;
  std::int64_t networkPaths = 0;
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row)
    networkPaths += isNetworkPath(grid.text(row, kDrive)) ? 1 : 0;
  Text status =
      TL(9058, u"%1 Laufwerk(e)", {statusCount(std::int64_t(grid.rowCount()) - networkPaths)});
  if (networkPaths == 0) return status;
  status.append(u" ").append(TL(9059, u"und")).append(u" ");
  return status += TL(9060, u"%1 Netzwerkpfad(e)", {statusCount(networkPaths)});
}

Text DriveList::errorText(Grid::RowIndex row) const {
  const auto error = shown_.errors.find(shown_.grid.id(row));
  return error == shown_.errors.end() ? Text() : error->second;
}

DriveToolTipValues DriveList::toolTipValues(Grid::RowIndex row) const {
  const Grid& grid = shown_.grid;
  const auto number = [&](const Column& column) -> std::optional<std::int64_t> {
    if (!grid.hasValue(row, column)) return {};
    return grid.number(row, column);
  };
  DriveToolTipValues values;
  values.name = grid.text(row, kName);
  values.used = number(kUsed);
  values.free = number(kFree);
  values.total = number(kTotal);
  values.filesystem = grid.text(row, kFileSystem);
  values.type = grid.text(row, kType);
  if (const auto cluster = number(kCluster)) {
    values.cluster = formatNumber(kClusterPattern, *cluster);
  }
  values.otherPlaces = platform::OtherMountPoints(grid.text(row, kDrive));
  return values;
}

Grid::RowIndex DriveList::rowOfDrive(TextView drive) const {
  const Text wanted = withoutFinalSeparators(drive);
  for (Grid::RowIndex row = 0; row < shown_.grid.rowCount(); ++row) {
    if (withoutFinalSeparators(shown_.grid.text(row, kDrive)) == wanted) return row;
  }
  return Grid::kNoRow;
}

Text DriveList::folderOf(Grid::RowIndex row) const {
  const TextView drive = shown_.grid.text(row, kDrive);
  const TextView mounted = shown_.grid.text(row, kPath);
  return Text(isNetworkPath(drive) && !mounted.empty() ? mounted : drive);
}

Columns DriveList::columns() { return kDriveTable; }

}  // namespace ombrelian
