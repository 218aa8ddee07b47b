#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lists/Grid.h"

namespace ombrelian {

/// Takes the bytes of an output, piece by piece; false: no more can be written.
using ByteSink = std::function<bool(std::string_view)>;

/// Appends `text` as a JSON string. The result is UTF-8 whatever the text holds: a lone surrogate,
/// such as a byte of a name that is no UTF-8, becomes its escape "\udcXX".
void appendJsonText(TextView text, std::string& out);

/// Writes a list as one JSON object on one line:
///
///   {"list":"largestFiles","title":"...","count":2,"rows":[{"name":"a","size":5,...},...]}
///
/// "count" tells the rows of the list, of which the first `limit` follow. The fields are the keys
/// of all columns, shown or not, with raw values: sizes in bytes, dates as "2026-11-22T22:46:00"
/// in local time (null: none), attributes as letters, a junction's type 0 for a link and 1 for
/// others. Whole numbers are exact; they may lie beyond 2^53. False: the sink took no more.
bool writeListJson(TextView key, TextView title, const Grid& grid, std::size_t limit,
                   const ByteSink& sink);

}  // namespace ombrelian
