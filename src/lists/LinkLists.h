#pragma once

#include "lists/FlatList.h"
#include "platform/FindData.h"
#include "services/FileTypes.h"
#include "settings/Options.h"

namespace ombrelian {

/// The list of hardlinks, with one row for each name of a file that has several names.
class HardlinkList : public FlatList {
 public:
  /// References to `options` and `types` are kept.
  HardlinkList(const Options& options, FileTypes& types);

  void reset() { grid_.clear(); }

  /// Adds a row and fills all its cells at once, because there are few such files.
  void feed(TextView name, TextView folder, std::int64_t size, std::int32_t links,
            const platform::FindData& data);

  /// Sorts the rows in their first order after the walk has ended.
  void finish();

  /// Sorts by identity, and gives the names of one file another band than those of the next.
  void List_Hardlinks_ShowDups();

  /// Text for the status line; with `selected` rows it includes their number and size.
  Text List_Hardlinks_ShowFileStat(const std::vector<Grid::RowIndex>& selected = {}) const;
  Text status(const std::vector<Grid::RowIndex>& selected) const override {
    return List_Hardlinks_ShowFileStat(selected);
  }

  Grid& grid() override { return grid_; }

 private:
  const Options& options_;
  FileTypes& types_;
  Grid grid_;
};

/// The list of junctions, with one row for each reparse folder and its target.
class JunctionList : public FlatList {
 public:
  JunctionList();

  void reset() { grid_.clear(); }

  /// Adds a row. `path` has no trailing separator; `tag` is FindData::dwReserved0.
  void feed(TextView path, TextView target, std::uint32_t tag);

  void finish();

  Text List_Junctions_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override {
    return List_Junctions_ShowStat();
  }

  Grid& grid() override { return grid_; }

 private:
  Grid grid_;
};

}  // namespace ombrelian
