#pragma once

#include <array>
#include <functional>

#include "lists/Grid.h"
#include "settings/Options.h"

namespace ombrelian {

/// Every list of the program. The six top lists are in the order of their numbers in the settings.
enum class ListId : std::uint8_t {
  Folders,
  Drives,
  Files,
  LargestFiles,
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
static_assert(int(ListId::Log) == kLists - 1);

/// All lists, and the lists that a scan fills beside the tree.
inline constexpr std::array<ListId, kLists> kAllLists = [] {
  std::array<ListId, kLists> all = {};
  for (int list = 0; list < kLists; ++list)
    all[std::size_t(list)] = ListId(list);
  return all;
}();
inline constexpr std::span<const ListId> kDerivedLists(
    &kAllLists[std::size_t(ListId::LargestFiles)], 10);

constexpr ListId topList(std::size_t number) {
  return ListId(std::size_t(ListId::LargestFiles) + number);
}
constexpr bool isTopList(ListId list) {
  return list >= ListId::LargestFiles && list <= ListId::SmallestFolders;
}

/// Number of a top list, 0 to 5.
constexpr std::size_t topIndex(ListId list) {
  return std::size_t(list) - std::size_t(ListId::LargestFiles);
}

/// Kind of the object in a row of a list.
enum class RowKind : std::uint8_t { Folder, Drive, File, Junction, Sum, Line };

/// References to the options of one list, for reading and writing. Null or empty: the list has no
/// such setting.
struct ListSettings {
  std::uint8_t* unit = nullptr;
  std::uint8_t* decimals = nullptr;
  std::uint8_t* unitText = nullptr;
  std::uint8_t* optimizeAll = nullptr;    // 1: columns fit all rows, not only those on the screen
  std::uint8_t* searchVisible = nullptr;  // 1: the search box is open
  std::span<std::uint8_t> visible;        // flag of each column id; 0 is the row number
  std::span<std::int32_t> positions;      // position of each column id
  Text* widths = nullptr;  // columns whose width a person chose, as "id:pixels id:pixels"
};

/// Fixed data of a list.
struct ListRow {
  TextView key;  // name of the list in machine-readable output; frozen
  Word title;    // title of saved and printed lists; "%1": which date counts
  Word option;   // caption of the option for filling the list in scans; "%1": its limit
  Word empty;    // text that the window shows in place of rows
  RowKind rows;
  Columns (*columns)();
  TextView sortKey;  // column of the first sort; empty: rows keep their first order
  bool sortDescending;
  ListSettings (*settings)(Options&);
  std::uint8_t Options::*isOn = nullptr;      // 1: a scan fills the list; null: no scan does
  std::uint8_t Options::*isShown = nullptr;   // 1: on the right side; null: always on the left
  std::uint8_t Options::*dateKind = nullptr;  // 1 to 3, see dateKindCaption(); null: no kind
  Word progress = {0, {}};  // text while the list is prepared at the end of a scan; empty: none
};

const ListRow& listRow(ListId list);

/// Shows the text of a list that is prepared now.
using ListProgress = std::function<void(TextView)>;

/// Tells that a list is prepared now, if the list has a text for it.
void tellProgress(ListId list, const ListProgress& tell);

/// Whether a scan fills the list beside the tree.
bool isOn(const Options& options, ListId list);

/// Switches every list of a scan on.
void turnAllListsOn(Options& options);

ListSettings listSettings(Options& options, ListId list);

/// The size settings that all lists share, for the commands of the main bar.
ListSettings commonSettings(Options& options);

/// Reads the shared size settings from the lists; Options::kMixed: the lists differ.
void readCommonSizes(Options& options);

/// Copies the shared size settings to all lists, except those that are Options::kMixed.
void applyCommonSizes(Options& options);

/// The settings of columns and sizes. The spans of the layout point into `options`.
ColumnLayout listLayout(const Options& options, ListId list);
SizeSettings listSizes(const Options& options, ListId list);

/// The list on the right side: the first list whose flag is set, else the drives. The six top lists
/// share one flag.
ListId shownList(const Options& options);

/// Shows `list` on the right side.
void showList(Options& options, ListId list);

/// Sorts the rows of a list in their first order.
void sortAsOpened(Grid& grid, ListId list);

/// Title of a list; for lists by date it contains the kind of date.
Text listTitle(const Options& options, ListId list);

/// Caption of the option for filling the list in scans; for a top list it contains the limit.
Text optionCaption(const Options& options, ListId list);

/// "Änderungsdatum", "Erstellungsdatum" or "Letzter Zugriff": kinds 1 to 3; others count as 1.
Text dateKindCaption(std::uint8_t kind);

/// Key of the column with this kind of date.
TextView dateKindColumn(std::uint8_t kind);

}  // namespace ombrelian
