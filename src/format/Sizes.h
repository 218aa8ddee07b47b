#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// Units of sizes, as the settings file and the commands number them; frozen.
enum SizeUnit : std::uint8_t {
  kUnitBytes = 0,
  kUnitKB = 1,
  kUnitMB = 2,
  kUnitGB = 3,
  kUnitAutomatic = 4,  // kUnitAutomatic and kUnitTB are for formatters only
  kUnitTB = 5,
};

/// How a list shows its sizes.
struct SizeSettings {
  std::uint8_t unit = kUnitBytes;  // kUnitBytes to kUnitGB
  bool decimals = false;           // two, or none
  bool unitText = false;           // the unit stands in each cell, else in the header
};

/// What the settings of a list make of one of its size columns.
struct SizeColumn {
  Text header;
  Text mask;       // mask for CellMask
  TextView field;  // key of the value that the column shows and sorts by
};

/// Which size a column shows: that of the row, or one of the three of a drive.
enum class SizeKind : std::uint8_t { OfRow, Used, Free, Total };

SizeColumn sizeColumn(const SizeSettings& settings, SizeKind kind = SizeKind::OfRow);

/// The mask of the percent column beside a size column.
TextView percentMask(const SizeSettings& settings);

/// `size` in a unit other than kUnitAutomatic, with two decimals, ties going to the even digit:
/// the values "sizeK", "sizeM" and "sizeG" of a row.
double sizeInUnit(std::int64_t size, SizeUnit unit);

/// The share of `part` in `whole`, above 100 where it is the larger of the two, in percent with two
/// decimals, ties going to the even digit; 0 where either is 0.
double percentOf(std::int64_t part, std::int64_t whole);

/// A size, or with format 0 a count, for status lines and the log. The automatic format always
/// shows its unit; `shortBytes` writes bytes as "BS". Another format gives an empty text.
Text xFormatFileSize(std::uint8_t format, std::int64_t size, bool withUnit, bool shortBytes);

/// Formats like the automatic format, but up to terabytes, and with the unit only where `withUnit`.
Text xFormatFileSizeAuto(std::int64_t size, bool withUnit);

/// A size in the unit of a list, right-aligned at that unit's width with `pad`. "Bytes" stands
/// behind it only with both `withUnit` and `withByteUnit`.
Text FormatSize(const SizeSettings& settings, std::int64_t size, bool withUnit, bool pad,
                bool withByteUnit);

/// The same for totals of the file list, whose settings the caller passes.
inline Text List_Files_FormatSize(const SizeSettings& settings, std::int64_t size, bool withUnit,
                                  bool pad, bool withByteUnit) {
  return FormatSize(settings, size, withUnit, pad, withByteUnit);
}

/// A size for aligned columns of text: blanks in front up to `width` characters. The automatic
/// format gives blanks alone.
Text xFormatFileSizeWithSpacer(std::int32_t format, std::int64_t size, std::int32_t width,
                               bool withUnit, std::uint8_t decimals);

/// As above with format 0, for values with a fraction such as a percentage: rounded to a whole
/// number.
Text xFormatFileSizeWithSpacer(double value, std::int32_t width);

/// A size as a plain number for exports: no groups, no unit.
Text FormatFileSizeSave(const SizeSettings& settings, std::int64_t size);

}  // namespace ombrelian
