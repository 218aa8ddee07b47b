#pragma once

#include "lists/FlatList.h"
#include "platform/FindData.h"
#include "services/FileTypes.h"
#include "settings/Options.h"

namespace ombrelian {

/// One row for each name of a file that has several.
class HardlinkList : public FlatList {
 public:
  /// `options` and `types` are kept by reference.
  HardlinkList(const Options& options, FileTypes& types);

  void reset() { grid_.clear(); }

  /// Adds a row; all its cells are filled at once, for such files are few.
  void feed(TextView name, TextView folder, std::int64_t size, std::int32_t links,
            const platform::FindData& data);

  /// The walk is over: orders the rows as the list opens.
  void finish();

  /// Sorts by identity and sets the names of one file apart from those of the next by bands.
  void List_Hardlinks_ShowDups();

  /// With `selected` rows their number and size too.
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

/// One row for each reparse folder, with where it leads.
class JunctionList : public FlatList {
 public:
  JunctionList();

  void reset() { grid_.clear(); }

  /// `path` without trailing separator; `tag` as FindData::dwReserved0.
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
