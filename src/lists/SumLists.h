#pragma once

#include "lists/FlatList.h"
#include "lists/SumTable.h"
#include "services/FileTypes.h"

namespace ombrelian {

/// The list of extensions, with one row for each extension of a run.
class ExtensionList : public FlatList {
 public:
  explicit ExtensionList(FileTypes& types);

  void reset();
  void feed(TextView extension, std::int64_t size);

  /// Fills the rows and clears the sums; percentages are shares of `total`.
  void List_Ext_SetDifferentSizes(std::int64_t total);
  Text List_EXT_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_EXT_ShowStat(); }

  Grid& grid() override { return grid_; }

 private:
  FileTypes& types_;
  SumTable sums_{1};
  Grid grid_;
  Text key_;  // "." and the extension in upper case; kept to reuse its memory
};

/// The list of owners, with one row for each owner of a run.
class OwnerList : public FlatList {
 public:
  OwnerList();

  void reset();
  void feed(TextView owner, std::int64_t size, std::int32_t files, std::int32_t folders) {
    sums_.add(owner, size, files, folders);
  }

  void List_Owner_SetDifferentSizes(std::int64_t total);
  Text List_Owner_ShowStat() const;
  Text status(const std::vector<Grid::RowIndex>&) const override { return List_Owner_ShowStat(); }

  Grid& grid() override { return grid_; }

 private:
  SumTable sums_{0};
  Grid grid_;
};

}  // namespace ombrelian
