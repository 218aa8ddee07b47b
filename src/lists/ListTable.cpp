#include "lists/ListTable.h"

#include "lists/DriveList.h"
#include "lists/FileList.h"
#include "lists/FolderReport.h"
#include "lists/Log.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kCountMask = u"*###,###,##0*;;;";

constexpr Column kTopFileTable[] = {
    {1, 3582, u"Dateiname", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3584, u"Endung", u"ext", CellKind::PlainText},
    {4, 3585, u"Typ", u"type", CellKind::PlainText},
    {5, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {6, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {7, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {8, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {9, 3728, u"Pfad", u"path", CellKind::PlainText},
};

constexpr Column kTopFolderTable[] = {
    {1, 3880, u"Ordnername", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3819, u"Dateien", u"files", CellKind::Count, kCountMask},
    {4, 3574, u"Ordner", u"folders", CellKind::Count, kCountMask},
    {5, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {6, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {7, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {8, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {9, 3728, u"Pfad", u"path", CellKind::PlainText},
};

constexpr Column kHardlinkTable[] = {
    {1, 3582, u"Dateiname", u"name", CellKind::PlainText},
    {2, 9112, u"ID", u"id", CellKind::PlainText},
    {3, 3790, u"Hardlinks", u"links", CellKind::Count, kCountMask},
    {4, 9113, u"Dateipfad", u"path", CellKind::PlainText},
    {5, 3583, u"Größe", u"size", CellKind::Size},
    {6, 3584, u"Endung", u"ext", CellKind::PlainText},
    {7, 3585, u"Typ", u"type", CellKind::PlainText},
    {8, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {9, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {10, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {11, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
};

constexpr Word kJunctionTypes[] = {
    {3736, u"Abzweigungspunkt"}, {3750, u"Verknüpfung"}, {3735, u"Symbolischer Link"}};

constexpr Column kJunctionTable[] = {
    {1, 3737, u"Junction", u"junction", CellKind::PlainText},
    {2, 3738, u"Zielordner", u"target", CellKind::PlainText},
    {3, 3585, u"Typ", u"type", CellKind::Choice, {}, kJunctionTypes},
};

constexpr Column kOwnerTable[] = {
    {1, 3801, u"Besitzer", u"owner", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3698, u"Prozent", u"percent", CellKind::Percent},
    {4, 3573, u"Dateien", u"files", CellKind::Count, kCountMask},
    {5, 3574, u"Ordner", u"folders", CellKind::Count, kCountMask},
};

constexpr Column kExtensionTable[] = {
    {1, 9110, u"Dateiendung", u"extname", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3698, u"Prozent", u"percent", CellKind::Percent},
    {4, 3573, u"Dateien", u"files", CellKind::Count, kCountMask},
    {5, 3585, u"Typ", u"type", CellKind::PlainText},
    {6, 9111, u"Verknüpfung", u"exe", CellKind::PlainText},
};

static_assert(idsCountFromOne(kTopFileTable, kTopColumns));
static_assert(idsCountFromOne(kTopFolderTable, kTopColumns));
static_assert(idsCountFromOne(kHardlinkTable, kHardlinkColumns));
static_assert(idsCountFromOne(kJunctionTable, kJunctionColumns));
static_assert(idsCountFromOne(kOwnerTable, kOwnerColumns));
static_assert(idsCountFromOne(kExtensionTable, kExtensionColumns));

template <const auto& table>
Columns columnsOf() {
  return table;
}

/// The settings of a list whose options are single fields. If a member is null, the list has no
/// such setting.
template <auto unit, auto decimals, auto unitText, auto optimizeAll, auto searchVisible,
          auto visible, auto positions>
ListSettings settingsOf(Options& options) {
  ListSettings settings;
  if constexpr (unit != nullptr) {
    settings.unit = &(options.*unit);
    settings.decimals = &(options.*decimals);
    settings.unitText = &(options.*unitText);
  }
  if constexpr (optimizeAll != nullptr) {
    settings.optimizeAll = &(options.*optimizeAll);
    settings.searchVisible = &(options.*searchVisible);
  }
  if constexpr (visible != nullptr) settings.visible = options.*visible;
  if constexpr (positions != nullptr) settings.positions = options.*positions;
  return settings;
}

template <std::size_t top>
ListSettings topSettings(Options& options) {
  return {&options.FileSizeFormatTop[top],
          &options.SizeFormatNachkommastellenTop[top],
          &options.SizeFormatShowSizeTextTop[top],
          &options.OptimizeColumnWidthAll_Top[top],
          &options.SearchVisibleReportTOP[top],
          options.TopColumnVisible[top],
          options.TopColumnIndex[top]};
}

/// The settings for the form of sizes.
constexpr std::uint8_t* ListSettings::*kSizeMembers[] = {
    &ListSettings::unit, &ListSettings::decimals, &ListSettings::unitText};

using O = Options;
constexpr auto kFolderSettings =
    &settingsOf<&O::FileSizeFormat, &O::SizeFormatNachkommastellenFolders,
                &O::SizeFormatShowSizeTextFolders, &O::OptimizeColumnWidthAll_Folders,
                &O::SearchVisibleReportFolders, &O::FolderColumnVisible, &O::FolderColumnIndex>;
constexpr auto kDriveSettings =
    &settingsOf<&O::FileSizeFormatDrive, &O::SizeFormatNachkommastellenDrive,
                &O::SizeFormatShowSizeTextDrive, nullptr, nullptr, &O::DriveColumnVisible,
                &O::DriveColumnIndex>;
constexpr auto kFileSettings =
    &settingsOf<&O::FileSizeFormatFiles, &O::SizeFormatNachkommastellenFiles,
                &O::SizeFormatShowSizeTextFiles, &O::OptimizeColumnWidthAll_Files,
                &O::SearchVisibleReportFiles, &O::FileColumnVisible, &O::FileColumnIndex>;
constexpr auto kHardlinkSettings =
    &settingsOf<&O::FileSizeFormatHardlinks, &O::SizeFormatNachkommastellenHardlinks,
                &O::SizeFormatShowSizeTextHardlinks, &O::OptimizeColumnWidthAll_Hardlinks,
                &O::SearchVisibleReportHardlinks, &O::HardlinkColumnVisible,
                &O::HardlinkColumnIndex>;
constexpr auto kJunctionSettings =
    &settingsOf<nullptr, nullptr, nullptr, &O::OptimizeColumnWidthAll_Junctions,
                &O::SearchVisibleReportJunctions, &O::JunctionColumnVisible,
                &O::JunctionColumnIndex>;
constexpr auto kOwnerSettings =
    &settingsOf<&O::FileSizeFormatOwner, &O::SizeFormatNachkommastellenOwner,
                &O::SizeFormatShowSizeTextOwner, nullptr, nullptr, &O::OwnerColumnVisible,
                &O::OwnerColumnIndex>;
constexpr auto kExtensionSettings =
    &settingsOf<&O::FileSizeFormatExt, &O::SizeFormatNachkommastellenExt,
                &O::SizeFormatShowSizeTextExt, &O::OptimizeColumnWidthAll_Ext,
                &O::SearchVisibleReportExt, &O::ExtensionColumnVisible, &O::ExtensionColumnIndex>;
constexpr auto kLogSettings =
    &settingsOf<nullptr, nullptr, nullptr, &O::OptimizeColumnWidthAll_Log,
                &O::SearchVisibleReportLog, &O::LogColumnVisible, &O::LogColumnIndex>;

constexpr Word kNone = {0, {}};
constexpr Word kEmptyFolders = {9550,
                                u"Oben eine Quelle wählen und Start drücken, rechts ein Laufwerk "
                                u"wählen und Enter drücken, oder "
                                u"einen Ordner hierher ziehen."};
constexpr Word kEmptyFound = {9553,
                              u"Diese Liste füllt ein Lauf über eine einzelne Quelle, wenn sie "
                              u"unter 'Listen' eingeschaltet ist."};

// clang-format off
constexpr auto kTopFiles = &columnsOf<kTopFileTable>;
constexpr auto kTopFolders = &columnsOf<kTopFolderTable>;

/// The rows are in the order of ListId.
constexpr ListRow kTable[] = {
    {u"folders", {2232, u"Ordnerliste"}, kNone, kEmptyFolders, RowKind::Folder, &FolderReport::columns, u"size", true, kFolderSettings},
    {u"drives", {2233, u"Laufwerksliste"}, kNone, {9551, u"Es wurde kein Laufwerk gefunden."}, RowKind::Drive, &DriveList::columns, {}, false, kDriveSettings, nullptr, &O::DiskinfoVisible},
    {u"files", {2244, u"Dateiliste"}, kNone, {9552, u"Links einen Ordner wählen, um seine Dateien zu sehen."}, RowKind::File, &FileList::columns, u"size", true, kFileSettings, nullptr, &O::FilelistVisible},
    {u"largestFiles", {2238, u"Liste mit den größten Dateien"}, {9020, u"Erstelle eine Liste mit den %1 größten Dateien"}, kEmptyFound, RowKind::File, kTopFiles, u"size", true, &topSettings<0>, &O::CreateList100LargestFiles, &O::ToplistVisible, nullptr, {3864, u"Liste mit den größten Dateien wird aufbereitet..."}},
    {u"smallestFiles", {2239, u"Liste mit den kleinsten Dateien"}, {9021, u"Erstelle eine Liste mit den %1 kleinsten Dateien"}, kEmptyFound, RowKind::File, kTopFiles, u"size", false, &topSettings<1>, &O::CreateList100SmallestFiles, &O::ToplistVisible, nullptr, {3865, u"Liste mit den kleinsten Dateien wird aufbereitet..."}},
    {u"newestFiles", {2240, u"Liste mit den neusten Dateien sortiert nach %1"}, {9022, u"Erstelle eine Liste mit den %1 neusten Dateien"}, kEmptyFound, RowKind::File, kTopFiles, u"datemodified", true, &topSettings<2>, &O::CreateList100NewestFiles, &O::ToplistVisible, &O::CreateList100NewestFilesDate, {3868, u"Liste mit den neusten Dateien wird aufbereitet..."}},
    {u"oldestFiles", {2241, u"Liste mit den ältesten Dateien sortiert nach %1"}, {9023, u"Erstelle eine Liste mit den %1 ältesten Dateien"}, kEmptyFound, RowKind::File, kTopFiles, u"datemodified", false, &topSettings<3>, &O::CreateList100OldestFiles, &O::ToplistVisible, &O::CreateList100OldestFilesDate, {3869, u"Liste mit den ältesten Dateien wird aufbereitet..."}},
    {u"largestFolders", {2242, u"Liste mit den größten Ordnern"}, {9024, u"Erstelle eine Liste mit den %1 größten Ordnern"}, kEmptyFound, RowKind::Folder, kTopFolders, u"size", true, &topSettings<4>, &O::CreateList100LargestFolders, &O::ToplistVisible, nullptr, {3877, u"Liste mit den größten Ordnern wird aufbereitet..."}},
    {u"smallestFolders", {2243, u"Liste mit den kleinsten Ordnern"}, {9025, u"Erstelle eine Liste mit den %1 kleinsten Ordnern"}, kEmptyFound, RowKind::Folder, kTopFolders, u"size", false, &topSettings<5>, &O::CreateList100SmallestFolders, &O::ToplistVisible, nullptr, {2180, u"Liste mit den kleinsten Ordnern wird aufbereitet..."}},
    {u"hardlinks", {2237, u"Liste mit Hardlinks"}, {9026, u"Erstelle eine Liste mit allen Hardlinks"}, kEmptyFound, RowKind::File, &columnsOf<kHardlinkTable>, u"id", false, kHardlinkSettings, &O::CreateListHardlink, &O::HardlinksVisible},
    {u"junctions", {2236, u"Liste mit Junctions"}, {9027, u"Erstelle eine Liste mit allen Junctions"}, kEmptyFound, RowKind::Junction, &columnsOf<kJunctionTable>, u"junction", false, kJunctionSettings, &O::CreateListJunction, &O::JunctionsVisible},
    {u"owners", {2235, u"Liste mit Besitzern"}, {9028, u"Erstelle eine Liste sortiert nach Besitzern"}, kEmptyFound, RowKind::Sum, &columnsOf<kOwnerTable>, u"size", true, kOwnerSettings, &O::CreateListOwner, &O::OwnerListVisible, nullptr, {9109, u"Liste mit Besitzern wird erstellt..."}},
    {u"extensions", {2234, u"Liste mit Dateiendungen"}, {9029, u"Erstelle eine Liste sortiert nach Dateiendungen"}, kEmptyFound, RowKind::Sum, &columnsOf<kExtensionTable>, u"size", true, kExtensionSettings, &O::CreateListExt, &O::ExtListVisible, nullptr, {9108, u"Liste mit Dateiendungen wird erstellt..."}},
    {u"log", {3549, u"Protokoll"}, kNone, {9554, u"Das Protokoll ist leer."}, RowKind::Line, &Log::columns, {}, false, kLogSettings, nullptr, &O::LogListVisible},
};
static_assert(std::size(kTable) == kLists);
// clang-format on

}  // namespace

const ListRow& listRow(ListId list) { return kTable[std::size_t(list)]; }

void tellProgress(ListId list, const ListProgress& tell) {
  const Word& text = listRow(list).progress;
  if (tell && !text.german.empty()) tell(TL(text.id, text.german));
}

bool isOn(const Options& options, ListId list) {
  const auto flag = listRow(list).isOn;
  return flag != nullptr && options.*flag == 1;
}

void turnAllListsOn(Options& options) {
  for (const ListId list : kDerivedLists)
    options.*listRow(list).isOn = 1;
}

ListSettings commonSettings(Options& options) {
  ListSettings common;
  common.unit = &options.FileSizeFormatAll;
  common.decimals = &options.SizeFormatNachkommastellenAll;
  common.unitText = &options.SizeFormatShowSizeTextAll;
  return common;
}

void readCommonSizes(Options& options) {
  const ListSettings common = commonSettings(options);
  for (const auto member : kSizeMembers) {
    std::optional<std::uint8_t> value;
    for (const ListId list : kAllLists) {
      const std::uint8_t* const own = listSettings(options, list).*member;
      if (own != nullptr) value = *own == value.value_or(*own) ? *own : Options::kMixed;
    }
    *(common.*member) = *value;
  }
}

void applyCommonSizes(Options& options) {
  const ListSettings common = commonSettings(options);
  for (const auto member : kSizeMembers) {
    for (const ListId list : kAllLists) {
      std::uint8_t* const own = listSettings(options, list).*member;
      if (own != nullptr && *(common.*member) != Options::kMixed) *own = *(common.*member);
    }
  }
}

ListSettings listSettings(Options& options, ListId list) {
  ListSettings settings = listRow(list).settings(options);
  settings.widths = &options.ColumnWidths[std::size_t(list)];
  return settings;
}

ColumnLayout listLayout(const Options& options, ListId list) {
  // The cast is safe, because the settings are only read here; ListSettings has pointers for
  // writers too.
  const ListSettings settings = listSettings(const_cast<Options&>(options), list);
  return {settings.visible, settings.positions};
}

SizeSettings listSizes(const Options& options, ListId list) {
  const ListSettings settings = listSettings(const_cast<Options&>(options), list);
  if (settings.unit == nullptr) return {};
  return {listUnit(*settings.unit), *settings.decimals != 0, *settings.unitText == 1};
}

ListId shownList(const Options& options) {
  for (const ListId list : kAllLists) {
    const auto flag = listRow(list).isShown;
    if (flag == nullptr || options.*flag != 1) continue;
    return isTopList(list) ? topList(std::size_t(selectedTopList(options))) : list;
  }
  return ListId::Drives;
}

void showList(Options& options, ListId list) {
  for (const ListId other : kAllLists) {
    if (const auto flag = listRow(other).isShown) options.*flag = 0;
  }
  options.*listRow(list).isShown = 1;
  if (isTopList(list)) options.ToplistVisibleIndex = std::int32_t(topIndex(list));
}

void sortAsOpened(Grid& grid, ListId list) {
  const ListRow& row = listRow(list);
  grid.sort(grid.column(row.sortKey), row.sortDescending);
}

Text listTitle(const Options& options, ListId list) {
  const ListRow& row = listRow(list);
  const Text kind = row.dateKind == nullptr ? Text() : dateKindCaption(options.*row.dateKind);
  return TL(row.title.id, row.title.german, {kind});
}

Text optionCaption(const Options& options, ListId list) {
  const Word& option = listRow(list).option;
  const Text limit = isTopList(list) ? toText(options.TopMaxCount[topIndex(list)]) : Text();
  return TL(option.id, option.german, {limit});
}

Text dateKindCaption(std::uint8_t kind) {
  switch (kind) {
    case 2:
      return TL(3588, u"Erstellungsdatum");
    case 3:
      return TL(3589, u"Letzter Zugriff");
    default:
      return TL(3587, u"Änderungsdatum");
  }
}

TextView dateKindColumn(std::uint8_t kind) {
  return kind == 2 ? u"datecreate" : kind == 3 ? u"dateaccess" : u"datemodified";
}

}  // namespace ombrelian
