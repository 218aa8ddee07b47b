#pragma once

#include <cstdint>
#include <string>

namespace ombrelian {

/// Whether the workbook at `path` holds its only sheet whole: every part of the archive unpacks to
/// the sum that it was packed with, and the sheet ends where it should and has `cells` cells that
/// are not empty. A disk that was full for a while can leave one that opens but misses rows.
bool isWholeWorkbook(const std::string& path, std::uint64_t cells);

}  // namespace ombrelian
