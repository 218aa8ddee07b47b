#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "support/Text.h"

namespace ombrelian {

/// Values for the tooltips of a drive row. A drive without sizes has no medium or gave an error.
struct DriveToolTipValues {
  Text name;
  std::optional<std::int64_t> used;   // bytes
  std::optional<std::int64_t> free;   // bytes
  std::optional<std::int64_t> total;  // bytes; empty: the drive has no sizes
  Text filesystem;
  Text type;
  Text cluster;
  std::vector<Text> otherPlaces = {};  // where the same device is mounted too
};

enum class DriveSizeKind { Used, Free, Total };

/// A size in bytes, KB, MB and GB, with one line for each; empty without size.
Text FormatToolTipText_Size(std::optional<std::int64_t> size);

/// A heading and the size of one column; empty for a drive without sizes.
Text FormatToolTipText_DriveSize(const DriveToolTipValues& drive, DriveSizeKind column);

/// Sizes, file system, type and cluster size of a drive; only its name if it has no sizes.
Text FormatToolTipText_DriveInfo(const DriveToolTipValues& drive);

}  // namespace ombrelian
