#pragma once

#include <cstdint>
#include <string>

namespace ombrelian {

/// Whether the workbook at `path` contains its only sheet completely: every part of the archive has
/// the correct checksum, and the sheet has its end mark and `cells` cells that are not empty. If
/// the disk was full for a while, a workbook can open although rows are missing.
bool isWholeWorkbook(const std::string& path, std::uint64_t cells);

}  // namespace ombrelian
