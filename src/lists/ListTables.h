#pragma once

#include "lists/Grid.h"
#include "settings/Options.h"

namespace ombrelian {

/// The lists that a scan fills beside the tree. The first six are the top lists, by their number.
enum class ListId : std::uint8_t {
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
};
inline constexpr int kLists = 10;

/// What is fixed of a list.
struct ListFacts {
  TextView key;  // its name in machine-readable output; frozen
  int titleId;
  TextView title;  // of saved and printed lists
  Columns columns;
  TextView sortKey;  // column that the list opens sorted by
  bool sortDescending;
};

const ListFacts& listFacts(ListId list);

/// What the settings say of a list. The layout's spans point into `options`.
ColumnLayout listLayout(const Options& options, ListId list);
SizeSettings listSizes(const Options& options, ListId list);

/// Switches every list of a scan on.
void turnAllListsOn(Options& options);

/// Orders the rows of a list as it opens.
void sortAsOpened(Grid& grid, ListId list);

/// Title of a list; the lists by date tell which date counts.
Text listTitle(const Options& options, ListId list);

/// "Änderungsdatum", "Erstellungsdatum" or "Letzter Zugriff": kinds 1 to 3; others count as 1.
Text dateKindCaption(std::uint8_t kind);

/// Key of the column with that kind of date.
TextView dateKindColumn(std::uint8_t kind);

}  // namespace ombrelian
