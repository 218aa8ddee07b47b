#pragma once

#include <span>

#include "format/Sizes.h"
#include "lists/Column.h"
#include "settings/Options.h"

namespace ombrelian {

/// The lists that a window shows.
enum class ViewId : std::uint8_t {
  Folders,
  Drives,
  Files,
  LargestFiles,  // the six top lists, by their number
  SmallestFiles,
  NewestFiles,
  OldestFiles,
  LargestFolders,
  SmallestFolders,
  Hardlinks,
  Junctions,
  Owners,
  Extensions,
  Log,
};
inline constexpr int kViews = 14;

/// Whether it is one of the six top lists, and which.
inline bool isTopList(ViewId view) {
  return view >= ViewId::LargestFiles && view <= ViewId::SmallestFolders;
}
inline std::size_t topIndex(ViewId view) {
  return std::size_t(view) - std::size_t(ViewId::LargestFiles);
}

/// What the options keep for one list, to be read and written in place. Null or empty: it has no
/// such setting.
struct ViewSettings {
  std::uint8_t* unit = nullptr;
  std::uint8_t* decimals = nullptr;
  std::uint8_t* unitText = nullptr;
  std::uint8_t* optimizeAll = nullptr;    // columns fit all rows, not just those on show
  std::uint8_t* searchVisible = nullptr;  // the search box is open
  std::span<std::uint8_t> visible;        // by column id; 0 is the row number
  std::span<std::int32_t> positions;      // by column id

  SizeSettings sizes() const {
    if (unit == nullptr) return {};
    return {*unit, *decimals != 0, *unitText == 1};
  }
  ColumnLayout layout() const { return {visible, positions}; }
};

ViewSettings viewSettings(Options& options, ViewId view);

/// The flag that says that the list stands on the right side; the top lists share one. Not for the
/// folder report.
std::uint8_t& viewFlag(Options& options, ViewId view);

/// The list on the right side: the first whose flag is set, else the drives.
ViewId visibleView(const Options& options);

/// Makes `view` the one on the right side.
void showView(Options& options, ViewId view);

}  // namespace ombrelian
