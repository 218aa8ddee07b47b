#include "settings/WalkFilters.h"

#include "support/Translate.h"

namespace ombrelian {

std::vector<Text> describeFilters(const WalkFilters& filters) {
  std::vector<Text> lines;
  const auto add = [&](const Text& caption, const Text& patterns) {
    if (!patterns.empty()) lines.push_back(caption + u" " + patterns);
  };
  add(TL(9091, u"Nur diese Dateien einlesen:"), filters.includedFiles);
  add(TL(9092, u"Diese Dateien nicht einlesen:"), filters.excludedFiles);
  add(TL(9093, u"Nur diese Ordner einlesen:"), filters.includedFolders);
  add(TL(9094, u"Diese Ordner nicht einlesen:"), filters.excludedFolders);
  return lines;
}

void excludeFolder(Options& options, TextView path) {
  Text pattern;
  for (const char16_t unit : path) {
    const bool isSpecial = TextView(u"*?#[").find(unit) != TextView::npos;
    pattern.append(isSpecial ? u"[" : u"").append(1, unit).append(isSpecial ? u"]" : u"");
  }
  Text& patterns = options.FolderList_FilterFolderExclude_Text;
  if (options.FolderList_FilterFolderExclude_Active != 1) patterns.clear();
  if (!patterns.empty()) patterns += u',';
  patterns += pattern;
  options.FolderList_FilterFolderExclude_Active = 1;
  options.FolderList_FilterFolderInclude_Active = 0;
}

WalkFilters walkFilters(const Options& options) {
  const auto textIfOn = [](std::uint8_t active, const Text& text) {
    return active == 1 ? text : Text();
  };
  return {textIfOn(options.FolderList_FilterFolderExclude_Active,
                   options.FolderList_FilterFolderExclude_Text),
          textIfOn(options.FolderList_FilterFolderInclude_Active,
                   options.FolderList_FilterFolderInclude_Text),
          textIfOn(options.FolderList_FilterFilesInclude_Active,
                   options.FolderList_FilterFilesInclude_Text),
          textIfOn(options.FolderList_FilterFilesExclude_Active,
                   options.FolderList_FilterFilesExclude_Text)};
}

}  // namespace ombrelian
