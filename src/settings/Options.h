#pragma once

#include <array>

#include "support/Text.h"

namespace ombrelian {

inline constexpr int kTopLists = 6;        // 0 largest files ... 5 smallest folders
inline constexpr int kFolderColumns = 17;  // of the folder report, the row number included

/// What the user chose, under the names that the settings file has for it, with the values of a
/// new user. Flags are 0 or 1, as in the file.
struct Options {
  // What a scan collects.
  std::uint8_t CreateList100LargestFolders = 0;
  std::uint8_t CreateList100SmallestFolders = 0;
  std::uint8_t CreateList100SmallestFoldersIgnore = 0;
  std::int32_t CreateList100SmallestFoldersIgnoreNumber = 0;  // bytes
  std::uint8_t CreateList100LargestFiles = 0;
  std::uint8_t CreateList100LargestFilesInclude = 0;
  Text CreateList100LargestFilesIncludeText;
  std::uint8_t CreateList100SmallestFiles = 0;
  std::uint8_t CreateList100SmallestFilesIgnore = 0;
  std::int32_t CreateList100SmallestFilesIgnoreNumber = 0;  // bytes
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
  std::uint8_t NoHardlinks = 0;    // no node for a junction that is not entered
  std::uint8_t ScanHardlinks = 0;  // enter junctions
  std::array<std::int32_t, kTopLists> TopMaxCount = {20, 20, 20, 20, 20, 20};  // rows

  std::uint8_t DontCreateLogFile = 0;  // no file for the user's log

  // What a scan leaves out; patterns separated by commas.
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

  // How the folder report looks.
  Text DateFormat;                  // empty: the locale's
  std::uint8_t FileSizeFormat = 0;  // 0 bytes, 1 KB, 2 MB, 3 GB
  std::uint8_t SizeFormatNachkommastellenFolders = 1;
  std::uint8_t SizeFormatShowSizeTextFolders = 0;
  std::uint8_t FolderShowDriveLabel = 0;
  std::uint8_t FolderShowCreateDate = 0;
  std::array<std::uint8_t, kFolderColumns> FolderColumnVisible = {0, 1, 1};  // by column id

  // How reports are saved (section "SaveFolders").
  std::int32_t Delimiter = 2;  // 0 comma, 1 semicolon, 2 tab, 3 blank, 4 DelimiterChars
  Text DelimiterChars = u" | ";
  std::uint8_t ShowIndent = 0;
  std::uint8_t DividingLine = 0;
  std::uint8_t FolderOpt = 0;  // 1: only the source of the selected row
  std::uint8_t LevelOpt = 2;   // 0 all levels, 1 as many as Levels says, 2 what is expanded
  std::int32_t Levels = 3;
};

}  // namespace ombrelian
