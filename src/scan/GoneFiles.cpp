#include "scan/GoneFiles.h"

#include "fs/PathText.h"
#include "tree/TreeOrder.h"

namespace ombrelian {

void takeOffFiles(FolderTree& tree, mCompare& filters, TextView folder,
                  const std::vector<GoneFileAt>& gone) {
  for (const NodeIndex node : foldersAt(tree, folder)) {
    filters.setWalkFilters(tree.facts(sourceOf(tree, node)).filters);
    std::vector<GoneFile> counted;
    for (const auto& [path, file] : gone) {
      const bool wasLeftOut =
          filters.filtersFiles() && filters.Check_FolderList_FileFilter(xGetFileName(path), path);
      if (!wasLeftOut) counted.push_back(file);
    }
    takeOutFiles(tree, node, counted);
  }
}

}  // namespace ombrelian
