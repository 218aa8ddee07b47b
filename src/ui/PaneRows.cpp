#include "ui/PaneRows.h"

#include "format/ToolTips.h"
#include "fs/PathText.h"
#include "fs/Renaming.h"
#include "fs/z_Filesystem.h"
#include "platform/Volumes.h"
#include "settings/SavedFolders.h"

namespace ombrelian::ui {
RowLook FoundFileRows::look(std::size_t row) const {
  const Column& attributes = *column(u"attr");
  const auto bits = std::uint32_t(grid_.number(row, attributes));
  const bool isLink = bits != UINT32_MAX && (bits & platform::kAttributeReparsePoint) != 0;
  return {.band = grid_.band(row), .icon = isLink ? "file-link" : "file"};
}

bool FoundFileRows::canRename(std::size_t, const Column& column) const { return column.id == 1; }

Text FoundFileRows::rename(std::size_t row, const Text& name) {
  Text error = renameInFolder({path(row), Text::npos, grid_.identity(row)}, name);
  if (error.empty()) grid_.set(row, *column(u"name"), TextView(name));
  return error;
}

FileRows::FileRows(FileList& files, FolderTree& tree, Options& options)
    : FoundFileRows(files.grid(), options, ListId::Files), files_(files), tree_(tree) {}

DriveRows::DriveRows(DriveList& drives, Options& options)
    : GridRows(drives.grid(), options, ListId::Drives), drives_(drives) {}

bool DriveRows::isNetworkPath(std::size_t row) const {
  return ombrelian::isNetworkPath(textOf(row, u"drive"));
}

RowLook DriveRows::look(std::size_t row) const {
  const auto [entry, isNew] = icons_.try_emplace(textOf(row, u"drive"));
  if (isNew) entry->second = iconOf(row);
  return {.isError = drives_.hasError(row), .icon = entry->second};
}

const char* DriveRows::iconOf(std::size_t row) const {
  int kind = 0;
  xGetDriveTypeString(drives_.folderOf(row), kind);
  const char* icon = "drive-local";
  if (kind == platform::kDriveRemovable) icon = "drive-removable";
  if (kind == platform::kDriveRemote) icon = "drive-network";
  if (kind == platform::kDriveCdRom) icon = "drive-optical";
  if (kind == platform::kDriveRamDisk) icon = "drive-ram";
  if (ombrelian::isNetworkPath(textOf(row, u"drive"))) icon = "drive-network";
  return icon;
}

Text DriveRows::toolTip(std::size_t row, const Column& column) const {
  if (column.kind == CellKind::Percent) return shown(row, column);
  const DriveToolTipValues values = drives_.toolTipValues(row);
  if (column.key == u"SizeTotalBytes")
    return FormatToolTipText_DriveSize(values, DriveSizeKind::Total);
  if (column.key == u"SizeFreeBytes")
    return FormatToolTipText_DriveSize(values, DriveSizeKind::Free);
  if (column.key == u"SizeUsedBytes")
    return FormatToolTipText_DriveSize(values, DriveSizeKind::Used);
  if (drives_.hasError(row)) return drives_.errorText(row);
  return FormatToolTipText_DriveInfo(values);
}

LogRows::LogRows(Log& log, const Options& options)
    : GridRows(log.grid(), options, ListId::Log), log_(log), count_(log.rows().size()) {}

RowLook LogRows::look(std::size_t row) const {
  const bool isError = log_.rows()[grid_.id(row)].isError;
  return {.band = isError ? 0 : grid_.band(row), .isError = isError};
}

}  // namespace ombrelian::ui
