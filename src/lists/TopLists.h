#pragma once

#include <array>
#include <deque>

#include "filters/mCompare.h"
#include "lists/FlatList.h"
#include "lists/ListTable.h"
#include "lists/LocalClock.h"
#include "platform/FindData.h"
#include "services/FileTypes.h"

namespace ombrelian {

/// Collects the objects of one top list during the walk: those with the largest or the smallest
/// keys. It never contains more than its limit and 101 rows.
///
/// Until the limit and 100 more rows were accepted, the rows are in the order of the walk. Then
/// they are sorted and trimmed. Each row that is accepted later is inserted at its place, and the
/// last row is removed; this has the same result as sorting and trimming again. Of two objects with
/// the same key, the earlier one is first.
class TopCollector {
 public:
  struct Row {
    std::int64_t key = 0;   // compared value: bytes, or seconds of local time
    std::int64_t size = 0;  // bytes
    std::int32_t files = 0;
    std::int32_t folders = 0;
    Text name;                             // name; for a folder its path without final separator
    Text path;                             // path of the folder, ends in a separator
    platform::FileIdentity identity = {};  // identity of a file; index 0: unknown
  };

  explicit TopCollector(bool wantsLargest) : wantsLargest_(wantsLargest) {}

  void reset(std::int32_t limit);

  /// Whether an object with this key gets a row. A threshold of 0 counts as no threshold, so a key
  /// of 0 never becomes one. An object with exactly the key of the threshold gets no row.
  bool admits(std::int64_t key) const {
    return count_ < limit_ || (wantsLargest_ ? key > threshold_ : key < threshold_);
  }

  /// Adds a row for an admitted object and returns it, so that the caller can fill it.
  Row& accept(std::int64_t key);

  std::size_t rowCount() const { return order_.size(); }
  std::int64_t threshold() const { return threshold_; }

  /// Sorts and trims for the last time and returns the rows; the collector is then empty.
  std::vector<Row> take();

 private:
  static constexpr std::int32_t kBatch = 100;

  bool isBefore(std::int64_t a, std::int64_t b) const { return wantsLargest_ ? a > b : a < b; }
  std::uint32_t takeSlot();
  void insertSorted(std::uint32_t slot);
  void sortAndTrim();

  const bool wantsLargest_;
  bool isSorted_ = false;
  std::int32_t limit_ = 0;
  std::int32_t count_ = 0;  // rows accepted since the reset; trimming does not change it
  std::int64_t threshold_ = 0;
  std::vector<Row> rows_;             // slots; they are reused with the memory of their texts
  std::vector<std::uint32_t> order_;  // slots in use
  std::vector<std::uint32_t> free_;
};

/// The largest, smallest, newest and oldest files and the largest and smallest folders of a run.
class TopLists {
 public:
  /// References to all arguments are kept.
  TopLists(const Options& options, mCompare& filters, FileTypes& types);

  void reset();

  // One step of the walk; the texts are those of DerivedLists. Lists that are off ignore it.
  void feedFile(TextView name, TextView folder, std::int64_t size, const platform::FindData& data);
  void feedFolder(TextView path, std::int64_t ownSize, std::int32_t ownFiles,
                  std::int32_t ownFolders);

  /// Sorts and trims the lists that are on, and reads missing values for the remaining rows.
  void finish(const ListProgress& tell = {});

  Grid& grid(ListId list) { return lists_[topIndex(list)].rows; }
  FlatList& list(ListId list) { return lists_[topIndex(list)]; }
  const TopCollector& collector(ListId list) const { return collectors_[topIndex(list)]; }

  Text List_TOP_ShowFileStat(ListId list) const;
  Text Toplist_ShowSelectedFilesize(ListId list, const std::vector<Grid::RowIndex>& rows) const;

 private:
  /// One of the six top lists as a FlatList.
  struct OneList : FlatList {
    OneList(const TopLists& all, ListId list) : top(all), id(list), rows(listRow(list).columns()) {}
    Grid& grid() override { return rows; }
    Text status(const std::vector<Grid::RowIndex>& selected) const override;

    const TopLists& top;
    ListId id;
    Grid rows;
  };

  /// Kind of the date by which the newest or oldest list is sorted.
  std::uint8_t dateKind(ListId list) const { return options_.*listRow(list).dateKind; }

  const Grid& grid(ListId list) const { return lists_[topIndex(list)].rows; }
  void offerFile(ListId list, std::int64_t key, TextView name, TextView folder, std::int64_t size,
                 const platform::FindData& data);
  void offerFolder(ListId list, TextView path, std::int64_t ownSize, std::int32_t ownFiles,
                   std::int32_t ownFolders);
  void offerDate(ListId list, TextView name, TextView folder, std::int64_t size,
                 const platform::FindData& data);
  bool isOn(ListId list) const { return *isOn_[topIndex(list)] == 1; }
  TopCollector& rows(ListId list) { return collectors_[topIndex(list)]; }
  void fillGrid(ListId list);
  void List_TOP_GetAllNodeValues(ListId list);
  void List_TOP_GetFileValues(Grid& grid, Grid::RowIndex row);

  const Options& options_;
  std::array<const std::uint8_t*, kTopLists> isOn_;  // flags in the options, read for every file
  mCompare& filters_;
  FileTypes& types_;
  LocalClock clock_;
  FileTime date_ = 0;  // date of the last file whose date was read
  std::array<TopCollector, kTopLists> collectors_;
  std::deque<OneList> lists_;
};

}  // namespace ombrelian
