#include "lists/TopLists.h"

#include <algorithm>

#include "format/LetterCase.h"
#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "platform/Files.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

bool isFolderList(ListId list) { return listRow(list).rows == RowKind::Folder; }

}  // namespace

void TopCollector::reset(std::int32_t limit) {
  isSorted_ = false;
  limit_ = limit;
  count_ = 0;
  threshold_ = 0;
  rows_.clear();
  order_.clear();
  free_.clear();
}

std::uint32_t TopCollector::takeSlot() {
  if (free_.empty()) {
    rows_.emplace_back();
    return std::uint32_t(rows_.size() - 1);
  }
  const std::uint32_t slot = free_.back();
  free_.pop_back();
  return slot;
}

TopCollector::Row& TopCollector::accept(std::int64_t key) {
  if (count_ < limit_ && (threshold_ == 0 || isBefore(threshold_, key))) threshold_ = key;
  const std::uint32_t slot = takeSlot();
  rows_[slot].key = key;
  ++count_;
  if (isSorted_) {
    insertSorted(slot);
  } else {
    order_.push_back(slot);
    if (count_ > limit_ + kBatch) sortAndTrim();
  }
  return rows_[slot];
}

void TopCollector::insertSorted(std::uint32_t slot) {
  const std::int64_t key = rows_[slot].key;
  const auto place = std::upper_bound(
      order_.begin(), order_.end(), key,
      [&](std::int64_t k, std::uint32_t other) { return isBefore(k, rows_[other].key); });
  order_.insert(place, slot);
  free_.push_back(order_.back());
  order_.pop_back();
  threshold_ = rows_[order_.back()].key;
}

void TopCollector::sortAndTrim() {
  std::stable_sort(order_.begin(), order_.end(), [&](std::uint32_t a, std::uint32_t b) {
    return isBefore(rows_[a].key, rows_[b].key);
  });
  isSorted_ = true;
  if (order_.size() <= std::size_t(limit_)) return;
  free_.insert(free_.end(), order_.begin() + limit_, order_.end());
  order_.resize(std::size_t(limit_));
  threshold_ = rows_[order_.back()].key;
}

std::vector<TopCollector::Row> TopCollector::take() {
  sortAndTrim();
  std::vector<Row> sorted;
  sorted.reserve(order_.size());
  for (const std::uint32_t slot : order_)
    sorted.push_back(std::move(rows_[slot]));
  reset(limit_);
  return sorted;
}

TopLists::TopLists(const Options& options, mCompare& filters, FileTypes& types)
    : options_(options), filters_(filters), types_(types), collectors_{TopCollector(true),
                                                                       TopCollector(false),
                                                                       TopCollector(true),
                                                                       TopCollector(false),
                                                                       TopCollector(true),
                                                                       TopCollector(false)} {
  for (std::size_t number = 0; number < kTopLists; ++number)
    lists_.emplace_back(*this, topList(number));
  for (std::size_t number = 0; number < kTopLists; ++number)
    isOn_[number] = &(options_.*listRow(topList(number)).isOn);
}

void TopLists::reset() {
  date_ = 0;
  for (std::size_t list = 0; list < kTopLists; ++list) {
    lists_[list].rows.clear();
    collectors_[list].reset(
        std::int32_t(std::clamp(options_.TopMaxCount[list], kLeastTopRows, kMostTopRows)));
  }
}

void TopLists::feedFile(TextView name, TextView folder, std::int64_t size,
                        const platform::FindData& data) {
  using enum ListId;
  if (isOn(LargestFiles) && rows(LargestFiles).admits(size) &&
      filters_.passesTopFilesExtFilter(xGetExtension(name))) {
    offerFile(LargestFiles, size, name, folder, size, data);
  }
  if (isOn(SmallestFiles) && size > options_.CreateList100SmallestFilesIgnoreNumber) {
    offerFile(SmallestFiles, size, name, folder, size, data);
  }
  if (isOn(NewestFiles)) offerDate(NewestFiles, name, folder, size, data);
  if (isOn(OldestFiles)) offerDate(OldestFiles, name, folder, size, data);
}

void TopLists::offerDate(ListId list, TextView name, TextView folder, std::int64_t size,
                         const platform::FindData& data) {
  switch (dateKind(list)) {
    case 1:
      date_ = data.ftLastWriteTime;
      break;
    case 2:
      date_ = data.ftCreationTime;
      break;
    case 3:
      date_ = data.ftLastAccessTime;
      break;
    default:  // the settings file has an invalid value: the date of the last file is used
      break;
  }
  // The conversion to local time is the slowest step, and most files are not candidates, so a bound
  // is checked first.
  if (!rows(list).admits(LocalClock::bound(date_, list == ListId::NewestFiles))) return;
  // A date that cannot be shown is none.
  if (const std::int64_t seconds = clock_.seconds(date_); seconds != 0)
    offerFile(list, seconds, name, folder, size, data);
}

void TopLists::offerFile(ListId list, std::int64_t key, TextView name, TextView folder,
                         std::int64_t size, const platform::FindData& data) {
  if (!rows(list).admits(key)) return;
  TopCollector::Row& row = rows(list).accept(key);
  row.size = size;
  row.name = name;
  row.path = folder;
  row.identity = data.identity;
}

void TopLists::feedFolder(TextView path, std::int64_t ownSize, std::int32_t ownFiles,
                          std::int32_t ownFolders) {
  using enum ListId;
  if (isOn(SmallestFolders) && ownSize > options_.CreateList100SmallestFoldersIgnoreNumber) {
    offerFolder(SmallestFolders, path, ownSize, ownFiles, ownFolders);
  }
  if (isOn(LargestFolders) && ownFiles > 0) {
    offerFolder(LargestFolders, path, ownSize, ownFiles, ownFolders);
  }
}

void TopLists::offerFolder(ListId list, TextView path, std::int64_t ownSize, std::int32_t ownFiles,
                           std::int32_t ownFolders) {
  if (!rows(list).admits(ownSize)) return;
  TopCollector::Row& row = rows(list).accept(ownSize);
  row.size = ownSize;
  row.files = ownFiles;
  row.folders = ownFolders;
  row.name = xRemoveBackslash(path);
  row.path = path;
}

void TopLists::finish(const ListProgress& tell) {
  for (std::size_t number = 0; number < kTopLists; ++number) {
    const ListId list = topList(number);
    if (!isOn(list)) continue;
    tellProgress(list, tell);
    fillGrid(list);
    List_TOP_GetAllNodeValues(list);
    const ListRow& facts = listRow(list);
    Grid& rows = grid(list);
    rows.sort(rows.column(facts.dateKind ? dateKindColumn(dateKind(list)) : facts.sortKey),
              facts.sortDescending);
  }
}

void TopLists::fillGrid(ListId list) {
  Grid& grid = this->grid(list);
  const Column& name = grid.column(u"name");
  const Column& size = grid.column(u"size");
  const Column& path = grid.column(u"path");
  for (const TopCollector::Row& from : rows(list).take()) {
    const Grid::RowIndex row = grid.addRow();
    grid.set(row, name, TextView(from.name));
    grid.set(row, size, from.size);
    grid.set(row, path, TextView(from.path));
    if (!isFolderList(list)) {
      grid.setIdentity(row, from.identity);
      continue;
    }
    grid.set(row, grid.column(u"files"), std::int64_t(from.files));
    grid.set(row, grid.column(u"folders"), std::int64_t(from.folders));
  }
}

void TopLists::List_TOP_GetAllNodeValues(ListId list) {
  Grid& grid = this->grid(list);
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row) {
    Text full(grid.text(row, grid.column(u"name")));
    if (!isFolderList(list)) {
      List_TOP_GetFileValues(grid, row);
      full.insert(0, grid.text(row, grid.column(u"path")));
    }
    platform::FindData data;
    if (findObject(full, data) != platform::kSuccess) continue;
    grid.set(row, grid.column(u"datemodified"), xGetFileModifyDateByWFD(data, full));
    grid.set(row, grid.column(u"datecreate"), xGetFileCreateDateByWFD(data, full));
    grid.set(row, grid.column(u"dateaccess"), xGetFileAccessDateByWFD(data, full));
    grid.set(row, grid.column(u"attr"), std::int64_t(data.dwFileAttributes));
  }
}

void TopLists::List_TOP_GetFileValues(Grid& grid, Grid::RowIndex row) {
  const TextView extension = xGetExtension(grid.text(row, grid.column(u"name")));
  grid.set(row, grid.column(u"ext"), extension);
  grid.set(row, grid.column(u"type"), TextView(types_.typeText(lowerCase(extension))));
}

Text TopLists::List_TOP_ShowFileStat(ListId list) const {
  const auto count = std::int64_t(grid(list).rowCount());
  return isFolderList(list) ? folderCountText(count) : fileCountText(count);
}

Text TopLists::Toplist_ShowSelectedFilesize(ListId list,
                                            const std::vector<Grid::RowIndex>& rows) const {
  const Text size =
      FormatSize(listSizes(options_, list), sumOfSizes(grid(list), rows), true, false, true);
  const auto count = std::int64_t(rows.size());
  return isFolderList(list) ? selectedFoldersText(count, size) : selectedFilesText(count, size);
}

Text TopLists::OneList::status(const std::vector<Grid::RowIndex>& selected) const {
  const Text all = top.List_TOP_ShowFileStat(id);
  return selected.empty() ? all : top.Toplist_ShowSelectedFilesize(id, selected) + u" / " + all;
}

}  // namespace ombrelian
