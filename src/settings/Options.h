#pragma once

#include <array>

#include "support/Text.h"

namespace ombrelian {

inline constexpr int kLists = 14;                 // all lists of the program
inline constexpr std::int64_t kLeastTopRows = 5;  // range of the limit of a top list
inline constexpr std::int64_t kMostTopRows = 999;
inline constexpr int kTopLists = 6;  // 0 largest files ... 5 smallest folders

// Number of columns of each list, including the row number (0).
inline constexpr int kFolderColumns = 17;
inline constexpr int kDriveColumns = 12;
inline constexpr int kFileColumns = 12;
inline constexpr int kHardlinkColumns = 12;
inline constexpr int kJunctionColumns = 4;
inline constexpr int kLogColumns = 3;
inline constexpr int kOwnerColumns = 6;
inline constexpr int kExtensionColumns = 7;
inline constexpr int kTopColumns = 10;

/// One value for each column of a list, by column id.
template <int columns>
using ColumnFlags = std::array<std::uint8_t, columns>;
template <int columns>
using ColumnPositions = std::array<std::int32_t, columns>;

/// The columns `first` to `last` are visible.
template <int columns>
constexpr ColumnFlags<columns> visibleColumns(int first, int last = columns - 1) {
  ColumnFlags<columns> flags = {};
  for (int id = first; id <= last; ++id)
    flags[std::size_t(id)] = 1;
  return flags;
}

/// The position of each column is its own id.
template <int columns>
constexpr ColumnPositions<columns> builtInOrder() {
  ColumnPositions<columns> positions = {};
  for (int id = 0; id < columns; ++id)
    positions[std::size_t(id)] = id;
  return positions;
}

/// `value` for each top list.
template <class T>
constexpr std::array<T, kTopLists> forTopLists(T value) {
  return {value, value, value, value, value, value};
}

/// The drive of the system, without a final separator unless it is "/".
Text systemDrive();

/// Folder and name of the last saved report.
struct LastSave {
  Text LastSaveDir = systemDrive();
  Text LastSaveFileName;  // without extension
};

/// How the lists other than the folder report are saved.
struct SaveFilesOptions {
  std::int32_t Delimiter = 2;  // same values as Options::Delimiter
  Text DelimiterChars = u" | ";
  std::int32_t FileFormat = 2;
  std::uint8_t DividingLine = 0;
  std::uint8_t OpenFile = 0;
};

/// How the folder report is printed.
struct PrintFoldersOptions {
  std::uint8_t FolderOpt = 0;   // 1: only the source of the selected row
  std::uint8_t LevelOpt = 2;    // same values as Options::LevelOpt
  std::uint8_t HeaderOpt = 1;   // 0 to 2
  std::uint8_t PrinterOpt = 1;  // 2: the printer with the index Printers
  std::int32_t Zoom = 100;      // percent
  std::int32_t BlankColumns = 0;
  std::int32_t Levels = 3;
  std::int32_t Printers = 0;  // index of a printer
};

/// How the other lists are printed.
struct PrintFilesOptions {
  std::uint8_t DataOpt = 0;
  std::uint8_t HeaderOpt = 1;
  std::uint8_t PrinterOpt = 1;
  std::int32_t Zoom = 100;  // percent
  std::int32_t Printers = 0;
};

struct InternetUpdateOptions {
  std::uint8_t UseProxy = 0;
  Text ProxyName;
  Text ProxyPort;
  Text ProxyBenutzer;
  Text ProxyPasswort;  // scrambled
  Text Dpath = u"%TEMP%";
  std::uint8_t PrgStartVersionPruefen = 0;
  std::uint8_t UpdateBenutzeroberflaeche = 0;
};

struct DonateOptions {
  std::uint8_t ShowButton = 1;
};

struct FormOptions {
  std::int32_t TVW = -1;  // -1: the window was never laid out
};

struct LanguageOptions {
  std::uint8_t Lang = 0;  // 0: language of the system
};

/// The choices of the user, with their names in the settings file and the values of a new user.
/// Flags are 0 or 1, as in the file; units are 0 bytes, 1 KB, 2 MB, 3 GB, 4 automatic, 5 TB.
/// SettingsTable.h defines the form of each setting in the file.
struct Options {
  // The options dialog.
  std::uint8_t Kontextmenu = 1;     // folders have the shell verb
  std::uint8_t Instanz = 1;         // a second start passes its line to the first window
  std::uint8_t WOW64 = 1;           // file system redirection is off during a scan
  std::uint8_t UnicodeSupport = 0;  // takes effect at the next start
  Text DateFormat;                  // empty: format of the locale
  std::uint8_t ToolbarTheme = 7;
  std::uint8_t DontCreateLogFile = 0;
  // Extensions for each kind of preview, separated by commas.
  Text FilePreviewText =
      u"txt,bat,ini,log,cfg,diz,nfo,css,asp,php,rtf,wri,xml,inf,url,reg,lst,eml,err,csv,1st,vbs,"
      u"au3,cmd";
  Text FilePreviewIE = u"htm,html,pdf,doc,docx,xls,xlsx,ppt,pps,swf,gif";
  Text FilePreviewGrafik = u"bmp,jpg,jpeg,ico,cur,emf,wmf,rle,pcx,png";
  Text FilePreviewMedia =
      u"mp3,wav,snd,au,aif,aifc,aiff,wma,mid,rmi,midi,avi,mpeg,mpg,m1v,mp2,mpa,mpe,wmv,asf,wm,mov,"
      u"mp4,3gp";
  // The same extensions as "/ext/ext/"; Optionen_Laden makes them, and they are not stored.
  Text FilePreviewTextLookup;
  Text FilePreviewIELookup;
  Text FilePreviewGrafikLookup;
  Text FilePreviewMediaLookup;

  // Appearance.
  double FontSize = 9;
  Text FontName = u"Tahoma";
  std::uint8_t BigIcons = 0;
  std::uint8_t SymbolText = 1;
  std::uint8_t GridLineStyle = 3;  // 0 none, 1 horizontal, 2 vertical, 3 both
  std::uint8_t DontShowBackgroundPictureAtGrid = 0;
  std::uint8_t DontShowButtonHideToolbars = 0;
  std::uint8_t ChangeFolderReportWidthAutomatically = 1;

  // Data that a scan collects.
  std::uint8_t CreateList100LargestFolders = 0;
  std::uint8_t CreateList100SmallestFolders = 0;
  std::uint8_t CreateList100SmallestFoldersIgnore = 0;
  std::int64_t CreateList100SmallestFoldersIgnoreNumber = 0;  // bytes
  std::uint8_t CreateList100LargestFiles = 0;
  std::uint8_t CreateList100LargestFilesInclude = 0;
  Text CreateList100LargestFilesIncludeText;
  std::uint8_t CreateList100SmallestFiles = 0;
  std::uint8_t CreateList100SmallestFilesIgnore = 0;
  std::int64_t CreateList100SmallestFilesIgnoreNumber = 0;  // bytes
  std::uint8_t CreateList100NewestFiles = 0;
  std::uint8_t CreateList100NewestFilesDate = 1;  // 1 modified, 2 created, 3 last access
  std::uint8_t CreateList100OldestFiles = 0;
  std::uint8_t CreateList100OldestFilesDate = 1;
  std::uint8_t CreateListHardlink = 0;
  std::uint8_t CreateListJunction = 0;
  std::uint8_t CreateListOwner = 0;
  std::uint8_t CreateListExt = 0;
  std::uint8_t CreateListExtInclude = 0;
  Text CreateListExtIncludeText;
  std::uint8_t ShowFolderOwner = 0;
  std::uint8_t AddHardlinksOnlyOnce = 0;
  std::uint8_t ShowHardlinkCount = 0;
  std::uint8_t NoHardlinks = 0;    // junctions that are not entered get no node
  std::uint8_t ScanHardlinks = 0;  // junctions are entered
  std::array<std::int64_t, kTopLists> TopMaxCount = forTopLists<std::int64_t>(20);  // rows

  // Filters of scans and of the file list; patterns separated by commas.
  std::uint8_t FolderList_FilterFolderExclude_Active = 0;
  Text FolderList_FilterFolderExclude_Text;
  std::uint8_t FolderList_FilterFolderInclude_Active = 0;
  Text FolderList_FilterFolderInclude_Text;
  std::uint8_t FolderList_FilterFilesInclude_Active = 0;
  Text FolderList_FilterFilesInclude_Text;
  std::uint8_t FolderList_FilterFilesExclude_Active = 0;
  Text FolderList_FilterFilesExclude_Text;
  std::uint8_t FileList_Filter_Active = 0;
  Text FileList_Filter_Text;

  // The folder report and the panes.
  std::uint8_t FolderColorFade = 0;
  std::uint8_t FolderShowPercentBar = 0;
  std::uint8_t FolderShowDriveLabel = 0;
  std::uint8_t FolderShowCreateDate = 0;
  std::uint8_t ShownSides = 0;  // visible sides of the window: 0 both, 1 left, 2 right
  std::uint8_t DiskinfoVisible = 1;
  std::uint8_t FilelistVisible = 0;
  std::uint8_t ToplistVisible = 0;
  std::int32_t ToplistVisibleIndex = 0;  // see selectedTopList()
  std::uint8_t HardlinksVisible = 0;
  std::uint8_t JunctionsVisible = 0;
  std::uint8_t OwnerListVisible = 0;
  std::uint8_t ExtListVisible = 0;
  std::uint8_t LogListVisible = 0;
  std::uint8_t FilelistTile = 0;
  std::uint8_t FilePreview = 0;
  std::uint8_t HardlinksTile = 0;
  std::uint8_t HardlinkPreview = 0;
  std::array<std::uint8_t, kTopLists> TopShowIcons = forTopLists<std::uint8_t>(1);
  std::array<std::uint8_t, kTopLists> TopFilePreview = {};
  std::array<std::uint8_t, kTopLists> TopSplitterOrientation = {};

  // Form of sizes in each list: the unit, the flag for two decimals, and the flag for the name of
  // the unit.
  std::uint8_t FileSizeFormat = 0;
  std::uint8_t FileSizeFormatDrive = 3;
  std::uint8_t FileSizeFormatFiles = 2;
  std::uint8_t FileSizeFormatHardlinks = 2;
  std::uint8_t FileSizeFormatOwner = 2;
  std::uint8_t FileSizeFormatExt = 0;
  std::array<std::uint8_t, kTopLists> FileSizeFormatTop = forTopLists<std::uint8_t>(2);
  std::uint8_t SizeFormatNachkommastellenFolders = 1;
  std::uint8_t SizeFormatNachkommastellenDrive = 1;
  std::uint8_t SizeFormatNachkommastellenFiles = 1;
  std::uint8_t SizeFormatNachkommastellenHardlinks = 1;
  std::uint8_t SizeFormatNachkommastellenOwner = 0;
  std::uint8_t SizeFormatNachkommastellenExt = 0;
  std::array<std::uint8_t, kTopLists> SizeFormatNachkommastellenTop = forTopLists<std::uint8_t>(1);
  std::uint8_t SizeFormatShowSizeTextFolders = 0;
  std::uint8_t SizeFormatShowSizeTextDrive = 0;
  std::uint8_t SizeFormatShowSizeTextFiles = 0;
  std::uint8_t SizeFormatShowSizeTextHardlinks = 0;
  std::uint8_t SizeFormatShowSizeTextOwner = 0;
  std::uint8_t SizeFormatShowSizeTextExt = 0;
  std::array<std::uint8_t, kTopLists> SizeFormatShowSizeTextTop = {};

  std::uint8_t ShowAllMounts = 0;  // 1: the drive list shows every mount; not stored

  // The values that all lists share; kMixed: the lists differ. They are not stored.
  static constexpr std::uint8_t kMixed = 255;
  std::uint8_t FileSizeFormatAll = kMixed;
  std::uint8_t SizeFormatNachkommastellenAll = kMixed;
  std::uint8_t SizeFormatShowSizeTextAll = kMixed;

  std::uint8_t OptimizeColumnWidthAll_Folders = 0;
  std::uint8_t OptimizeColumnWidthAll_Files = 0;
  std::uint8_t OptimizeColumnWidthAll_Hardlinks = 0;
  std::uint8_t OptimizeColumnWidthAll_Junctions = 0;
  std::uint8_t OptimizeColumnWidthAll_Ext = 0;
  std::uint8_t OptimizeColumnWidthAll_Log = 0;
  std::array<std::uint8_t, kTopLists> OptimizeColumnWidthAll_Top = {};
  std::uint8_t SearchVisibleReportFolders = 0;
  std::uint8_t SearchVisibleReportFiles = 0;
  std::uint8_t SearchVisibleReportHardlinks = 0;
  std::uint8_t SearchVisibleReportJunctions = 0;
  std::uint8_t SearchVisibleReportExt = 0;
  std::uint8_t SearchVisibleReportLog = 0;
  std::array<std::uint8_t, kTopLists> SearchVisibleReportTOP = {};

  // Visible columns, and the position of each column.
  ColumnFlags<kFolderColumns> FolderColumnVisible = visibleColumns<kFolderColumns>(1, 2);
  ColumnFlags<kDriveColumns> DriveColumnVisible = visibleColumns<kDriveColumns>(1, 7);
  ColumnFlags<kFileColumns> FileColumnVisible = visibleColumns<kFileColumns>(1, 2);
  ColumnFlags<kHardlinkColumns> HardlinkColumnVisible = visibleColumns<kHardlinkColumns>(1, 2);
  ColumnFlags<kOwnerColumns> OwnerColumnVisible = visibleColumns<kOwnerColumns>(1);
  ColumnFlags<kExtensionColumns> ExtensionColumnVisible = visibleColumns<kExtensionColumns>(1);
  ColumnFlags<kJunctionColumns> JunctionColumnVisible = visibleColumns<kJunctionColumns>(1);
  ColumnFlags<kLogColumns> LogColumnVisible = visibleColumns<kLogColumns>(1);
  std::array<Text, kLists> ColumnWidths;  // "id:pixels id:pixels"; other columns fit their cells
  std::array<ColumnFlags<kTopColumns>, kTopLists> TopColumnVisible =
      forTopLists(visibleColumns<kTopColumns>(1));
  ColumnPositions<kFolderColumns> FolderColumnIndex = builtInOrder<kFolderColumns>();
  ColumnPositions<kDriveColumns> DriveColumnIndex = builtInOrder<kDriveColumns>();
  ColumnPositions<kFileColumns> FileColumnIndex = builtInOrder<kFileColumns>();
  ColumnPositions<kHardlinkColumns> HardlinkColumnIndex = builtInOrder<kHardlinkColumns>();
  ColumnPositions<kOwnerColumns> OwnerColumnIndex = builtInOrder<kOwnerColumns>();
  ColumnPositions<kExtensionColumns> ExtensionColumnIndex = builtInOrder<kExtensionColumns>();
  ColumnPositions<kJunctionColumns> JunctionColumnIndex = builtInOrder<kJunctionColumns>();
  ColumnPositions<kLogColumns> LogColumnIndex = builtInOrder<kLogColumns>();
  std::array<ColumnPositions<kTopColumns>, kTopLists> TopColumnIndex =
      forTopLists(builtInOrder<kTopColumns>());

  Text ComboText;  // text of the source box at the last exit

  // How the folder report is saved (section "SaveFolders").
  std::int32_t Delimiter = 2;  // 0 comma, 1 semicolon, 2 tab, 3 blank, 4 DelimiterChars
  Text DelimiterChars = u" | ";
  std::uint8_t ShowIndent = 0;
  std::int32_t FileFormat = 2;
  std::uint8_t DividingLine = 0;
  std::uint8_t OpenFile = 0;
  std::uint8_t FolderOpt = 0;  // 1: only the source of the selected row
  std::uint8_t LevelOpt = 2;   // 0 all levels, 1 the number in Levels, 2 expanded folders
  std::int32_t Levels = 3;

  // The other sections, with their names.
  LastSave FolderReport;
  LastSave Report;
  SaveFilesOptions SaveFiles;
  PrintFoldersOptions PrintFolders;
  PrintFilesOptions PrintFiles;
  InternetUpdateOptions InternetUpdate;
  DonateOptions DonateOMB;
  FormOptions Form;
  LanguageOptions Allgemein;
};

/// Number of the visible top list, 0 to 5.
inline int selectedTopList(const Options& options) {
  const std::int32_t index = options.ToplistVisibleIndex;
  return index > 0 && index < kTopLists ? index : 0;
}

}  // namespace ombrelian
