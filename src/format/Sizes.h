#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// Units of sizes, with the numbers of the settings file and the commands; frozen.
enum SizeUnit : std::uint8_t {
  kUnitBytes = 0,
  kUnitKB = 1,
  kUnitMB = 2,
  kUnitGB = 3,
  kUnitAutomatic = 4,  // kUnitAutomatic and kUnitTB are for formatters only
  kUnitTB = 5,
  kUnitFitting = 6,  // the best unit for each cell, with up to three digits
};

/// How a list shows its sizes.
struct SizeSettings {
  std::uint8_t unit = kUnitBytes;  // kUnitBytes to kUnitGB, or kUnitFitting
  bool decimals = false;           // two decimals, or none
  bool unitText = false;           // the unit is in each cell, else in the header
};

/// The unit of a list with the stored code `code`; a code that no list offers means bytes.
SizeUnit listUnit(std::int32_t code);

/// Form of a size column under the settings of its list.
struct SizeColumn {
  Text header;
  Text mask;       // mask for CellMask; empty for the fitting unit
  TextView field;  // key of the value that the column shows and sorts by
};

/// Which size a column shows: the size of the row, or one of the three sizes of a drive.
enum class SizeKind : std::uint8_t { OfRow, Used, Free, Total };

SizeColumn sizeColumn(const SizeSettings& settings, SizeKind kind = SizeKind::OfRow);

/// The mask of the percent column beside a size column.
TextView percentMask(const SizeSettings& settings);

/// `size` in a unit other than kUnitAutomatic, with two decimals and ties to the even digit: the
/// values "sizeK", "sizeM" and "sizeG" of a row.
double sizeInUnit(std::int64_t size, SizeUnit unit);

/// The share of `part` in `whole` in percent, with two decimals and ties to the even digit. It is
/// above 100 if `part` is larger, and 0 if one of them is 0.
double percentOf(std::int64_t part, std::int64_t whole);

/// A size, or with format 0 a count, for status lines and the log. The automatic format always
/// shows its unit; `shortBytes` writes bytes as "BS". Another format gives an empty text.
Text xFormatFileSize(std::uint8_t format, std::int64_t size, bool withUnit, bool shortBytes);

/// The same as the automatic format, but up to terabytes, and with the unit only if `withUnit`.
Text xFormatFileSizeAuto(std::int64_t size, bool withUnit);

/// Appends `size` in the unit in which it has one to three digits before the decimal separator,
/// with one decimal below 100: "0 B", "5.0 KB", "512 MB", "89.0 GB".
void appendFittingSize(std::int64_t size, Text& out);

/// A size in the unit of a list. With `pad` it is right-aligned to the width of this unit. "Bytes"
/// follows only with both `withUnit` and `withByteUnit`.
Text FormatSize(const SizeSettings& settings, std::int64_t size, bool withUnit, bool pad,
                bool withByteUnit);

/// The same as FormatSize for totals of the file list; the caller passes its settings.
inline Text List_Files_FormatSize(const SizeSettings& settings, std::int64_t size, bool withUnit,
                                  bool pad, bool withByteUnit) {
  return FormatSize(settings, size, withUnit, pad, withByteUnit);
}

/// A size for aligned columns of text, with blanks in front up to `width` characters. The automatic
/// format gives only blanks.
Text xFormatFileSizeWithSpacer(std::int32_t format, std::int64_t size, std::int32_t width,
                               bool withUnit, std::uint8_t decimals);

/// The same with format 0, for values with a fraction such as a percentage, which are rounded to a
/// whole number.
Text xFormatFileSizeWithSpacer(double value, std::int32_t width);

/// A size as a plain number for exports: no groups, no unit.
Text FormatFileSizeSave(const SizeSettings& settings, std::int64_t size);

}  // namespace ombrelian
