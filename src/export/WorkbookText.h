#pragma once

#include <string>

#include "support/Text.h"

namespace ombrelian {

/// The name of a sheet for `name`: at most 31 characters, without characters that are not allowed.
Text FixExcelWorkSheetName(TextView name);

/// The name of the sheet with the number `number`, counted from 1: the second one is "NAME (2)".
Text sheetName(TextView name, std::size_t number);

/// Appends `text` to `out` as UTF-8 for an element or an attribute of a workbook that every reader
/// accepts: units that are not text become a mark, characters that XML cannot hold become escapes
/// of the format, and text that looks like such an escape is escaped.
void appendWorkbookText(TextView text, std::string& out);

/// Appends a number in digits that give the same number again.
void appendWorkbookNumber(double number, std::string& out);

/// Appends the time of a property, such as 2026-11-22T13:14:15Z; properties have no time zone.
void appendWorkbookTime(double date, std::string& out);

}  // namespace ombrelian
