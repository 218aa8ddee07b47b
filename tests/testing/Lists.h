#pragma once

#include "lists/ListTable.h"
#include "services/FileTypes.h"

namespace ombrelian::testing {

/// The texts of a column in the order of rows.
inline std::vector<Text> texts(const Grid& grid, TextView key) {
  std::vector<Text> all;
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row)
    all.emplace_back(grid.text(row, grid.column(key)));
  return all;
}

/// The numbers of a column in the order of rows.
inline std::vector<std::int64_t> numbers(const Grid& grid, TextView key) {
  std::vector<std::int64_t> all;
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row)
    all.push_back(grid.number(row, grid.column(key)));
  return all;
}

/// Makes texts from the extension, and counts the queries.
class MadeUpTypes : public FileTypes {
 public:
  Text typeText(TextView extension) override {
    ++questions;
    return u"type " + Text(extension);
  }
  Text associatedProgram(TextView extension) override { return u"/bin/" + Text(extension); }
  Text iconName(TextView) override { return {}; }

  int questions = 0;
};

}  // namespace ombrelian::testing
