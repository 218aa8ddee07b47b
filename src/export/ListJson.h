#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lists/Grid.h"

namespace ombrelian {

/// Receives the bytes of an output, piece by piece; false: no more can be written.
using ByteSink = std::function<bool(std::string_view)>;

/// Appends `text` as a JSON string. The result is always UTF-8: a lone surrogate, such as a byte of
/// a name that is not UTF-8, becomes its escape "\udcXX".
void appendJsonText(TextView text, std::string& out);

/// Writes a list as one JSON object on one line:
///
///   {"list":"largestFiles","title":"...","count":2,"rows":[{"name":"a","size":5,...},...]}
///
/// "count" is the number of rows of the list; only the first `limit` rows follow. The fields are
/// the keys of all columns, also of hidden ones, with raw values: sizes in bytes, dates as
/// "2026-11-22T22:46:00" in local time (null: none), attributes as letters, and the type of a
/// junction as 0 for a link and 1 for others. Whole numbers are exact and may exceed 2^53. False:
/// the sink accepted no more.
bool writeListJson(TextView key, TextView title, const Grid& grid, std::size_t limit,
                   const ByteSink& sink);

}  // namespace ombrelian
