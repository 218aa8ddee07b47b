#include "frame/CommandTable.h"

namespace ombrelian {
namespace {

CommandBinding toggle(std::uint8_t& flag) { return {&flag}; }
CommandBinding choice(std::uint8_t& flag, int value) { return {&flag, std::uint8_t(value)}; }
CommandBinding edit(Text& text) { return {nullptr, 1, &text}; }
CommandBinding edit(std::int32_t& number) { return {nullptr, 1, nullptr, &number}; }

/// What the commands of a list are bound to.
CommandBinding listBinding(Options& options, ListId view, int id) {
  const ListSettings settings = listSettings(options, view);
  if (id >= 301 && id <= 304 && settings.unit != nullptr) return choice(*settings.unit, id - 301);
  switch (id) {
    case 305:
      return {settings.unitText};
    case 309:
      return {settings.decimals};
    case 355:
      return {settings.searchVisible};
    case 451:
      return toggle(options.FileList_Filter_Active);
    case 452:
      return edit(options.FileList_Filter_Text);
    case 509:
      return {settings.optimizeAll};
    case 395:
      return toggle(options.ChangeFolderReportWidthAutomatically);
    case 467:
      return toggle(options.FolderColorFade);
    case 468:
      return toggle(options.FolderShowPercentBar);
    case 469:
      return toggle(options.FolderShowDriveLabel);
    case 470:
      return toggle(options.FolderShowCreateDate);
    default:
      return {};
  }
}

struct FlagBinding {
  int id;
  std::uint8_t Options::*flag;
};

constexpr FlagBinding kMainFlags[] = {
    {368, &Options::BigIcons},
    {369, &Options::SymbolText},
    {378, &Options::DontShowBackgroundPictureAtGrid},
    {451, &Options::FolderList_FilterFilesInclude_Active},
    {453, &Options::FolderList_FilterFilesExclude_Active},
    {455, &Options::FolderList_FilterFolderInclude_Active},
    {457, &Options::FolderList_FilterFolderExclude_Active},
    {473, &Options::ShowHardlinkCount},
    {474, &Options::AddHardlinksOnlyOnce},
    {475, &Options::ShowFolderOwner},
    {476, &Options::ScanHardlinks},
    {477, &Options::NoHardlinks},
    {479, &Options::CreateList100LargestFiles},
    {480, &Options::CreateList100SmallestFiles},
    {481, &Options::CreateList100NewestFiles},
    {482, &Options::CreateList100OldestFiles},
    {483, &Options::CreateList100LargestFolders},
    {484, &Options::CreateList100SmallestFolders},
    {485, &Options::CreateListHardlink},
    {486, &Options::CreateListJunction},
    {487, &Options::CreateListOwner},
    {488, &Options::CreateListExt},
    {489, &Options::CreateListExtInclude},
    {491, &Options::CreateList100SmallestFoldersIgnore},
    {499, &Options::CreateList100SmallestFilesIgnore},
    {501, &Options::CreateList100LargestFilesInclude},
};

constexpr struct {
  int id;
  Text Options::*text;
} kMainTexts[] = {
    {452, &Options::FolderList_FilterFilesInclude_Text},
    {454, &Options::FolderList_FilterFilesExclude_Text},
    {456, &Options::FolderList_FilterFolderInclude_Text},
    {458, &Options::FolderList_FilterFolderExclude_Text},
    {490, &Options::CreateListExtIncludeText},
    {502, &Options::CreateList100LargestFilesIncludeText},
};

CommandBinding mainBinding(Options& options, int id) {
  for (const FlagBinding& binding : kMainFlags) {
    if (binding.id == id) return toggle(options.*binding.flag);
  }
  for (const auto& binding : kMainTexts) {
    if (binding.id == id) return edit(options.*binding.text);
  }
  if (id >= 374 && id <= 377) return choice(options.GridLineStyle, id - 374);
  if (id >= 493 && id <= 495) return choice(options.CreateList100OldestFilesDate, id - 492);
  if (id >= 496 && id <= 498) return choice(options.CreateList100NewestFilesDate, id - 495);
  if (id >= 1030 && id <= 1039) return choice(options.ToolbarTheme, id - 1030);
  if (id >= 1101 && id <= 1106) return edit(options.TopMaxCount[std::size_t(id - 1101)]);
  if (id == 492) return edit(options.CreateList100SmallestFoldersIgnoreNumber);
  if (id == 500) return edit(options.CreateList100SmallestFilesIgnoreNumber);
  return {};
}

}  // namespace

CommandBinding commandBinding(Options& options, const ListId* view, int id) {
  return view != nullptr ? listBinding(options, *view, id) : mainBinding(options, id);
}

}  // namespace ombrelian
