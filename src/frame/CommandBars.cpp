#include "frame/CommandTable.h"

namespace ombrelian {
namespace {

using enum CommandId;

// Each item has a command, the popup that contains it, and whether a line is in front of it.
// clang-format off
constexpr BarItem kMainBar[] = {
    {Source}, {AddSource}, {RemoveSource}, {Start, None, true}, {Stop},
    {CountHardlinks, None, true}, {CountHardlinksOnce}, {FolderOwners}, {EnterLinks}, {HideLinks},
    {ListMenu, None, true}, {MakeLargestFiles, ListMenu}, {MakeSmallestFiles, ListMenu},
    {MakeNewestFiles, ListMenu}, {MakeOldestFiles, ListMenu}, {MakeLargestFolders, ListMenu},
    {MakeSmallestFolders, ListMenu}, {MakeHardlinks, ListMenu, true}, {MakeJunctions, ListMenu},
    {MakeOwners, ListMenu}, {MakeExtensions, ListMenu}, {LargestFilesMenu, ListMenu, true},
    {SmallestFilesMenu, ListMenu}, {NewestFilesMenu, ListMenu}, {OldestFilesMenu, ListMenu},
    {LargestFoldersMenu, ListMenu}, {SmallestFoldersMenu, ListMenu}, {ExtensionsMenu, ListMenu},
    {LargestFilesLimit, LargestFilesMenu}, {LargestOfExtensions, LargestFilesMenu},
    {LargestOfExtensionsText, LargestFilesMenu}, {SmallestFilesLimit, SmallestFilesMenu},
    {IgnoreSmallFiles, SmallestFilesMenu}, {IgnoreSmallFilesBytes, SmallestFilesMenu},
    {NewestFilesLimit, NewestFilesMenu}, {NewestByModified, NewestFilesMenu, true},
    {NewestByCreated, NewestFilesMenu}, {NewestByAccess, NewestFilesMenu},
    {OldestFilesLimit, OldestFilesMenu}, {OldestByModified, OldestFilesMenu, true},
    {OldestByCreated, OldestFilesMenu}, {OldestByAccess, OldestFilesMenu},
    {LargestFoldersLimit, LargestFoldersMenu}, {SmallestFoldersLimit, SmallestFoldersMenu},
    {IgnoreSmallFolders, SmallestFoldersMenu}, {IgnoreSmallFoldersBytes, SmallestFoldersMenu},
    {OnlyTheseExtensions, ExtensionsMenu}, {OnlyTheseExtensionsText, ExtensionsMenu}, {FilterMenu},
    {OnlyTheseFiles, FilterMenu}, {OnlyTheseFilesText, FilterMenu}, {NotTheseFiles, FilterMenu},
    {NotTheseFilesText, FilterMenu}, {OnlyTheseFolders, FilterMenu},
    {OnlyTheseFoldersText, FilterMenu}, {NotTheseFolders, FilterMenu},
    {NotTheseFoldersText, FilterMenu}, {FilterHelp, FilterMenu, true}, {ViewMenu, None, true},
    {ShowBothSides, ViewMenu}, {ShowLeftSide, ViewMenu}, {ShowRightSide, ViewMenu}, {SizeMenu},
    {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu}, {SizeMegabytes, SizeMenu},
    {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true}, {SizeDecimals, SizeMenu},
    {AppearanceMenu}, {OptionsDialog, AppearanceMenu}, {DesignMenu, AppearanceMenu, true},
    {Design0, DesignMenu}, {Design1, DesignMenu}, {Design2, DesignMenu}, {Design3, DesignMenu},
    {Design4, DesignMenu}, {Design5, DesignMenu}, {Design6, DesignMenu}, {Design7, DesignMenu},
    {Design8, DesignMenu}, {Design9, DesignMenu}, {BigIcons, AppearanceMenu},
    {IconText, AppearanceMenu}, {NoBackgroundPicture, AppearanceMenu},
    {ChooseFont, AppearanceMenu, true}, {LargerFont, AppearanceMenu}, {SmallerFont, AppearanceMenu},
    {GridLineMenu, AppearanceMenu, true}, {NoGridLines, GridLineMenu},
    {HorizontalGridLines, GridLineMenu}, {VerticalGridLines, GridLineMenu},
    {AllGridLines, GridLineMenu}, {LanguageMenu, AppearanceMenu, true}, {German, LanguageMenu},
    {English, LanguageMenu}, {Translate, LanguageMenu, true}, {HelpMenu}, {Documentation, HelpMenu},
    {Homepage, HelpMenu}, {CheckForUpdates, HelpMenu}, {Donate, HelpMenu, true},
    {About, HelpMenu, true}, {Quit, HelpMenu},
};

constexpr BarItem kHeaderBar[] = {
    {ShowDrives}, {ShowFiles}, {ShowTopLists}, {ShowHardlinks}, {ShowJunctions}, {ShowOwners},
    {ShowExtensions}, {ShowLog},
};

constexpr BarItem kFoldersBar[] = {
    {Save}, {Print}, {ExpandAll, None, true}, {CollapseAll}, {LevelMenu}, {ExpandLevel1, LevelMenu},
    {ExpandLevel2, LevelMenu}, {ExpandLevel3, LevelMenu}, {ExpandLevel4, LevelMenu},
    {ExpandLevel5, LevelMenu}, {Search, None, true}, {SearchText}, {SearchBack}, {SearchForward},
    {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu},
    {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true},
    {SizeDecimals, SizeMenu}, {ColumnMenu}, {LevelColors, ColumnMenu}, {PercentBars, ColumnMenu},
    {DriveLabels, ColumnMenu}, {ScanDates, ColumnMenu}, {FitAllRows, ColumnMenu, true},
    {FitPaneWidth, ColumnMenu}, {FitColumns}, {Rescan, None, true}, {RemoveSourceRows},
    {ClearFolders}, {RecycleFolders, None, true}, {DeleteFolders},
};

constexpr BarItem kDrivesBar[] = {
    {ScanDrives}, {ScanAllDrives}, {Refresh, None, true}, {ShowAllMounts}, {AddNetworkPath}, {ConnectDrive},
    {DisconnectDrive}, {Save, None, true}, {Print}, {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu},
    {SizeKilobytes, SizeMenu}, {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu},
    {SizeUnitText, SizeMenu, true}, {SizeDecimals, SizeMenu}, {ColumnMenu}, {FitColumns},
};

constexpr BarItem kFilesBar[] = {
    {Refresh}, {FolderOfFiles}, {Save, None, true}, {Print}, {Search, None, true}, {SearchText},
    {SearchBack}, {SearchForward}, {FilterMenu, None, true}, {OnlyTheseFiles, FilterMenu},
    {OnlyTheseFilesText, FilterMenu}, {FilterHelp, FilterMenu}, {SizeMenu}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu},
    {SizeKilobytes, SizeMenu}, {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu},
    {SizeUnitText, SizeMenu, true}, {SizeDecimals, SizeMenu}, {ColumnMenu},
    {FitAllRows, ColumnMenu}, {FitColumns}, {Preview, None, true}, {SplitDirection},
    {RecycleFiles, None, true}, {DeleteFiles},
};

constexpr BarItem kTopBar[] = {
    {TopListMenu}, {ShowLargestFiles, TopListMenu}, {ShowSmallestFiles, TopListMenu},
    {ShowNewestFiles, TopListMenu}, {ShowOldestFiles, TopListMenu},
    {ShowLargestFolders, TopListMenu}, {ShowSmallestFolders, TopListMenu}, {Save, None, true},
    {Print}, {Search, None, true}, {SearchText}, {SearchBack}, {SearchForward},
    {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu},
    {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true},
    {SizeDecimals, SizeMenu}, {ColumnMenu}, {FitAllRows, ColumnMenu}, {FitColumns},
    {Preview, None, true}, {SplitDirection}, {RecycleFiles, None, true}, {DeleteFiles},
};

constexpr BarItem kHardlinksBar[] = {
    {GroupHardlinks}, {Save, None, true}, {Print}, {Search, None, true}, {SearchText}, {SearchBack},
    {SearchForward}, {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu},
    {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true},
    {SizeDecimals, SizeMenu}, {ColumnMenu}, {FitAllRows, ColumnMenu}, {FitColumns},
    {Preview, None, true}, {SplitDirection}, {RecycleFiles, None, true}, {DeleteFiles},
};

constexpr BarItem kJunctionsBar[] = {
    {Save}, {Print}, {Search, None, true}, {SearchText}, {SearchBack}, {SearchForward},
    {ColumnMenu, None, true}, {FitAllRows, ColumnMenu}, {FitColumns},
};

constexpr BarItem kOwnersBar[] = {
    {Save}, {Print}, {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu},
    {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true},
    {SizeDecimals, SizeMenu}, {ColumnMenu}, {FitColumns},
};

constexpr BarItem kExtensionsBar[] = {
    {Save}, {Print}, {Search, None, true}, {SearchText}, {SearchBack}, {SearchForward},
    {SizeMenu, None, true}, {SizeFitting, SizeMenu}, {SizeBytes, SizeMenu}, {SizeKilobytes, SizeMenu},
    {SizeMegabytes, SizeMenu}, {SizeGigabytes, SizeMenu}, {SizeUnitText, SizeMenu, true},
    {SizeDecimals, SizeMenu}, {ColumnMenu}, {FitAllRows, ColumnMenu}, {FitColumns},
};

constexpr BarItem kLogBar[] = {
    {OpenLog}, {ClearLog}, {Copy}, {Save, None, true}, {Print}, {Search, None, true}, {SearchText},
    {SearchBack}, {SearchForward}, {ColumnMenu, None, true}, {FitAllRows, ColumnMenu}, {FitColumns},
};

// clang-format on

constexpr std::span<const BarItem> kBarTable[] = {
    kMainBar,      kHeaderBar,    kFoldersBar, kDrivesBar,     kFilesBar, kTopBar,
    kHardlinksBar, kJunctionsBar, kOwnersBar,  kExtensionsBar, kLogBar};
static_assert(std::size(kBarTable) == kBars);

constexpr CommandId kTreeRow[] = {
    Open,           Reveal,           None, ExpandSubtree, CollapseSubtree, None, Rescan,
    LeaveOut,       RemoveSourceRows, None, Copy,          CopyPath,        None, Rename,
    RecycleFolders, DeleteFolders,    None, Properties};
constexpr CommandId kDriveRow[] = {ScanDrives,        Open, None,      Copy, CopyPath,
                                   RemoveNetworkPath, None, Properties};
constexpr CommandId kFileRow[] = {Open,        Reveal,    ShowInTree, None,   Copy,
                                  CopyPath,    SelectAll, None,       Rename, RecycleFiles,
                                  DeleteFiles, None,      Properties};
constexpr CommandId kPathRow[] = {Open,     Reveal,    ShowInTree, None,      Copy,
                                  CopyPath, SelectAll, None,       Properties};
constexpr CommandId kTextRow[] = {Copy, SelectAll};

/// The bar and the row commands of each list, in the order of ListId.
constexpr struct {
  Bar bar;
  std::span<const CommandId> row;
} kListBars[] = {
    {Bar::Folders, kTreeRow},    {Bar::Drives, kDriveRow},   {Bar::Files, kFileRow},
    {Bar::Top, kFileRow},        {Bar::Top, kFileRow},       {Bar::Top, kFileRow},
    {Bar::Top, kFileRow},        {Bar::Top, kPathRow},       {Bar::Top, kPathRow},
    {Bar::Hardlinks, kFileRow},  {Bar::Junctions, kPathRow}, {Bar::Owners, kTextRow},
    {Bar::Extensions, kTextRow}, {Bar::Log, kTextRow},
};
static_assert(std::size(kListBars) == kLists);

}  // namespace

Bar barOf(ListId list) { return kListBars[std::size_t(list)].bar; }

std::span<const BarItem> barItems(Bar bar) { return kBarTable[std::size_t(bar)]; }

std::span<const CommandId> rowCommands(ListId list) { return kListBars[std::size_t(list)].row; }

bool hasCommand(ListId list, CommandId id) {
  const bool isOfFolders = isTopList(list) && listRow(list).rows == RowKind::Folder;
  return !(isOfFolders && commandOf(id).changesDisk);
}

}  // namespace ombrelian
