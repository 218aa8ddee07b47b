#include "format/Sizes.h"

#include <array>

#include "format/Mask.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kWhole = u"###,###,##0";
constexpr TextView kTwoDecimals = u"###,##0.00";

constexpr std::int64_t kKB = 1024;
constexpr std::int64_t kMB = kKB * 1024;
constexpr std::int64_t kTB = kMB * kMB;
/// 999 MB; larger sizes are easier to read in GB.
constexpr std::int64_t kMostShownInMB = 999 * kMB;

struct UnitFacts {
  SizeUnit unit;
  int shift;  // the divisor is 2^shift
  TextView word;
  int headerTextId;    // text number of the unit in grids; 0: not translated
  int statusTextId;    // text number of the unit in status lines and the log
  std::int32_t width;  // width to which FormatSize pads
};

constexpr std::array<UnitFacts, 5> kUnits = {{
    {kUnitBytes, 0, u"Bytes", 3515, 3887, 15},
    {kUnitKB, 10, u"KB", 3516, 3888, 17},
    {kUnitMB, 20, u"MB", 3517, 3889, 13},
    {kUnitGB, 30, u"GB", 3518, 3890, 9},
    {kUnitTB, 40, u"TB", 0, 0, 0},
}};

/// The unit of a code; null: the code names no fixed unit.
const UnitFacts* findUnit(std::int32_t code) {
  for (const UnitFacts& facts : kUnits) {
    if (facts.unit == code) return &facts;
  }
  return nullptr;
}

/// The fixed unit that names the columns of a list.
const UnitFacts& fixedUnit(const SizeSettings& settings) {
  const SizeUnit unit = listUnit(settings.unit);
  return kUnits[unit == kUnitFitting ? kUnitBytes : unit];
}

Text withWord(Text number, const UnitFacts& unit, bool withUnit) {
  if (withUnit) number.append(u" ").append(TL(unit.statusTextId, unit.word));
  return number;
}

void padFront(Text& text, std::int32_t width) {
  if (width > 0 && text.size() < std::size_t(width)) {
    text.insert(0, std::size_t(width) - text.size(), u' ');
  }
}

Text formatIn(const UnitFacts& unit, std::int64_t size, bool withUnit) {
  const TextView mask = unit.unit == kUnitBytes ? kWhole : kTwoDecimals;
  return withWord(formatQuotient(mask, size, unit.shift), unit, withUnit);
}

/// The unit of the automatic format; a size exactly at a border has the smaller unit.
const UnitFacts& readableUnit(std::int64_t size) {
  if (size > kMostShownInMB) return kUnits[kUnitGB];
  if (size > kMB) return kUnits[kUnitMB];
  return kUnits[size > kKB ? kUnitKB : kUnitBytes];
}

Text columnMask(const SizeSettings& settings, TextView unitWord) {
  if (settings.unit == kUnitFitting) return {};
  const bool decimals = settings.decimals && fixedUnit(settings).unit != kUnitBytes;
  Text mask = decimals ? u"*###,###,##0.00*" : u"*###,###,##0*";
  if (settings.unitText) mask.append(u" ").append(unitWord);
  return mask += u";;;";
}

/// The names of one kind of size column.
struct ColumnNames {
  int plainId;
  TextView plain;  // header if the cells have the unit
  int unitId;
  TextView withUnit;
  TextView fields[4];  // key of the field for each unit
};

/// The texts of each SizeKind, in its order.
constexpr ColumnNames kColumnNames[] = {
    {3583, u"Größe", 3519, u"Größe (%1)", {u"size", u"sizeK", u"sizeM", u"sizeG"}},
    {3579,
     u"Belegt",
     3520,
     u"Belegt (%1)",
     {u"SizeUsedBytes", u"SizeUsedKB", u"SizeUsedMB", u"SizeUsedGB"}},
    {3580,
     u"Frei",
     3521,
     u"Frei (%1)",
     {u"SizeFreeBytes", u"SizeFreeKB", u"SizeFreeMB", u"SizeFreeGB"}},
    {3581,
     u"Gesamt",
     3522,
     u"Gesamt (%1)",
     {u"SizeTotalBytes", u"SizeTotalKB", u"SizeTotalMB", u"SizeTotalGB"}},
};

/// Returns the next decimal digit of remainder / whole and sets `remainder` to the new remainder.
/// It adds instead of multiplying by ten, which could overflow.
std::uint64_t nextDigit(std::uint64_t& remainder, std::uint64_t whole) {
  std::uint64_t digit = 0;
  std::uint64_t sum = 0;
  for (int i = 0; i < 10; ++i) {
    sum += remainder;
    if (sum < whole) continue;
    sum -= whole;
    ++digit;
  }
  remainder = sum;
  return digit;
}

}  // namespace

SizeUnit listUnit(std::int32_t code) {
  const bool isOffered = (code >= kUnitBytes && code <= kUnitGB) || code == kUnitFitting;
  return isOffered ? SizeUnit(code) : kUnitBytes;
}

SizeColumn sizeColumn(const SizeSettings& settings, SizeKind kind) {
  const ColumnNames& names = kColumnNames[std::size_t(kind)];
  const UnitFacts& unit = fixedUnit(settings);
  const Text word = TL(unit.headerTextId, unit.word);
  const bool hasUnitInCells = settings.unitText || settings.unit == kUnitFitting;
  return {
      hasUnitInCells ? TL(names.plainId, names.plain) : TL(names.unitId, names.withUnit, {word}),
      columnMask(settings, word), names.fields[unit.unit]};
}

TextView percentMask(const SizeSettings& settings) {
  return settings.decimals ? u"*##0.00*%" : u"*##0*%";
}

double sizeInUnit(std::int64_t size, SizeUnit unit) {
  const UnitFacts* const facts = findUnit(unit);
  if (facts == nullptr) return 0;
  if (facts->shift == 0) return double(size);
  const Decimal rounded = divideByPowerOfTwo(size, facts->shift, 2, Ties::ToEven);
  // The double that is nearest to the value with two decimals, up to 80 PB; a larger double cannot
  // have two decimals.
  const double value = double(rounded.whole * 100 + rounded.fraction) / 100.0;
  return rounded.negative ? -value : value;
}

double percentOf(std::int64_t part, std::int64_t whole) {
  if (part == 0 || whole == 0) return 0;
  constexpr std::uint64_t kScale = 10'000;  // hundredths of a percent
  const std::uint64_t size = magnitude(part);
  const std::uint64_t of = magnitude(whole);
  std::uint64_t hundredths = 0;
  std::uint64_t left = 0;
  if (size <= UINT64_MAX / kScale) {
    hundredths = size * kScale / of;
    left = size * kScale % of;
  } else {
    hundredths = size / of;
    left = size % of;
    for (int digit = 0; digit < 4; ++digit) {
      hundredths = hundredths * 10 + nextDigit(left, of);
    }
  }
  const std::uint64_t rest = of - left;
  if (left > rest || (left == rest && hundredths % 2 != 0)) ++hundredths;
  const double percent = double(hundredths) / 100.0;
  return (part < 0) != (whole < 0) ? -percent : percent;
}

Text xFormatFileSize(std::uint8_t format, std::int64_t size, bool withUnit, bool shortBytes) {
  const UnitFacts* unit = findUnit(format);
  if (format == kUnitAutomatic) {
    unit = &readableUnit(size);
    withUnit = true;
  }
  if (unit == nullptr) return {};
  if (unit->unit == kUnitBytes && shortBytes) {
    return formatNumber(kWhole, size).append(withUnit ? u" BS" : u"");
  }
  return formatIn(*unit, size, withUnit);
}

Text xFormatFileSizeAuto(std::int64_t size, bool withUnit) {
  return formatIn(size > kTB ? *findUnit(kUnitTB) : readableUnit(size), size, withUnit);
}

void appendFittingSize(std::int64_t size, Text& out) {
  constexpr NumberMask kMask = {1, 0, true};
  const UnitFacts* unit = kUnits.begin();
  Decimal number{size < 0, magnitude(size), 0, 0};
  while (number.whole >= 1000 && unit != kUnits.end() - 1) {
    ++unit;
    number = divideByPowerOfTwo(size, unit->shift, 1, Ties::AwayFromZero);
    if (number.whole >= 100) number = divideByPowerOfTwo(size, unit->shift, 0, Ties::AwayFromZero);
  }
  appendNumber({kMask.minimumDigits, number.decimals, kMask.grouped}, number, out);
  out.append(u" ").append(unit == kUnits.begin() ? Text(u"B") : TL(unit->headerTextId, unit->word));
}

Text FormatSize(const SizeSettings& settings, std::int64_t size, bool withUnit, bool pad,
                bool withByteUnit) {
  if (settings.unit == kUnitFitting) {
    Text text;
    appendFittingSize(size, text);
    return text;
  }
  if (settings.unit > kUnitGB) return {};
  const UnitFacts& unit = kUnits[settings.unit];
  Text text = formatIn(unit, size, false);
  // The unit words belong to a fixed layout and are not translated.
  if (withUnit && (unit.unit != kUnitBytes || withByteUnit)) text.append(u" ").append(unit.word);
  if (pad) padFront(text, unit.width);
  return text;
}

Text xFormatFileSizeWithSpacer(std::int32_t format, std::int64_t size, std::int32_t width,
                               bool withUnit, std::uint8_t decimals) {
  Text text;
  if (const UnitFacts* const unit = findUnit(format)) {
    const bool whole = unit->unit == kUnitBytes || decimals != 1;
    text =
        withWord(formatQuotient(whole ? kWhole : kTwoDecimals, size, unit->shift), *unit, withUnit);
  }
  padFront(text, width);
  return text;
}

Text xFormatFileSizeWithSpacer(double value, std::int32_t width) {
  Text text = formatNumber(kWhole, value);
  padFront(text, width);
  return text;
}

Text FormatFileSizeSave(const SizeSettings& settings, std::int64_t size) {
  const UnitFacts* const unit = findUnit(settings.unit);
  if (unit == nullptr) return {};
  const bool whole = unit->unit == kUnitBytes || !settings.decimals;
  return formatQuotient(whole ? u"#####0" : u"#####0.00", size, unit->shift);
}

}  // namespace ombrelian
