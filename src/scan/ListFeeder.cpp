#include "scan/ListFeeder.h"

#include "fs/PathText.h"

namespace ombrelian {

ListFeeder::ListFeeder(Options& options, mCompare& filters, FileTypes& types)
    : options_(options),
      filters_(filters),
      topLists_(options, filters, types),
      hardlinks_(options, types),
      extensions_(types) {}

void ListFeeder::reset() {
  topLists_.reset();
  hardlinks_.reset();
  junctions_.reset();
  owners_.reset();
  extensions_.reset();
  replaceIgnoreNumbers(0, -1);
}

/// Moves the size limit of each enabled "smallest" list from one value to another.
void ListFeeder::replaceIgnoreNumbers(std::int64_t from, std::int64_t to) {
  const auto replace = [&](std::uint8_t isOn, std::uint8_t ignores, std::int64_t& number) {
    if (isOn == 1 && ignores == 1 && number == from) number = to;
  };
  replace(options_.CreateList100SmallestFiles, options_.CreateList100SmallestFilesIgnore,
          options_.CreateList100SmallestFilesIgnoreNumber);
  replace(options_.CreateList100SmallestFolders, options_.CreateList100SmallestFoldersIgnore,
          options_.CreateList100SmallestFoldersIgnoreNumber);
}

void ListFeeder::feedFile(const File& file) {
  // The walk leaves the owner empty if the list is off or the file system keeps no owners.
  if (!file.owner.empty()) owners_.feed(file.owner, file.size, 1, 0);
  if (options_.CreateListExt == 1) {
    const TextView extension = xGetExtension(file.name);
    if (filters_.passesExtFilter(extension)) extensions_.feed(extension, file.size);
  }
  if (file.data.statError != platform::kSuccess) return;
  topLists_.feedFile(file.name, file.folder, file.size, file.data);
  if (options_.CreateListHardlink == 1 && file.links > 0) {
    hardlinks_.feed(file.name, file.folder, file.size, file.links, file.data);
  }
}

void ListFeeder::feedFolder(TextView owner) { owners_.feed(owner, 0, 0, 1); }

void ListFeeder::feedJunction(const Junction& junction) {
  junctions_.feed(junction.path, junction.target, junction.tag);
}

void ListFeeder::feedFolderEnd(TextView path, const ScanTotals& own) {
  topLists_.feedFolder(path, own.Size, own.Files, own.Folders);
}

void ListFeeder::finish(const ScanTotals& total, const ListProgress& tell) {
  topLists_.finish(tell);
  if (options_.CreateListJunction == 1) junctions_.finish();
  if (options_.CreateListOwner == 1) {
    tellProgress(ListId::Owners, tell);
    owners_.List_Owner_SetDifferentSizes(total.Size);
  }
  if (options_.CreateListExt == 1) {
    tellProgress(ListId::Extensions, tell);
    extensions_.List_Ext_SetDifferentSizes(total.Size);
  }
  if (options_.CreateListHardlink == 1) hardlinks_.finish();
  replaceIgnoreNumbers(-1, 0);
}

FlatList& ListFeeder::list(ListId list) {
  if (isTopList(list)) return topLists_.list(list);
  FlatList* const others[] = {&hardlinks_, &junctions_, &owners_, &extensions_};
  return *others[std::size_t(list) - std::size_t(ListId::Hardlinks)];
}

}  // namespace ombrelian
