#pragma once

#include "export/ListJson.h"

namespace ombrelian {

/// Writes a list as readable text: its title with its status line, the captions of `columns` and
/// the first `limit` rows, all aligned, and an empty line. Characters that would break a line are
/// shown as a mark. False: the sink accepted no more.
bool writeListText(TextView title, TextView status, const Grid& grid,
                   const std::vector<const Column*>& columns, const CellFormat& format,
                   std::size_t limit, const ByteSink& sink);

}  // namespace ombrelian
