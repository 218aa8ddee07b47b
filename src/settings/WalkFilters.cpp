#include "settings/WalkFilters.h"

namespace ombrelian {

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
