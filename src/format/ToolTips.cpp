#include "format/ToolTips.h"

#include <algorithm>

#include "format/Mask.h"
#include "format/Sizes.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kLineEnd = u"\r\n";

Text sizeLine(std::int64_t size, SizeUnit unit, int textId, TextView word) {
  // All four units have the same mask, so bytes have two decimals as well.
  constexpr TextView kMask = u"###,###,##0.00";
  Text line =
      unit == kUnitBytes ? formatNumber(kMask, size) : formatNumber(kMask, sizeInUnit(size, unit));
  return line.append(u" ").append(TL(textId, word));
}

struct DriveSize {
  Text heading;
  std::int64_t bytes;
};

DriveSize driveSize(const DriveToolTipValues& drive, DriveSizeKind kind) {
  switch (kind) {
    case DriveSizeKind::Used:
      return {TL(2171, u"Belegter Speicherplatz"), drive.used.value_or(0)};
    case DriveSizeKind::Free:
      return {TL(2169, u"Freier Speicherplatz"), drive.free.value_or(0)};
    case DriveSizeKind::Total:
      break;
  }
  return {TL(2168, u"Gesamtgröße"), drive.total.value_or(0)};
}

void addLine(Text& text, TextView label, TextView value) {
  if (!text.empty()) text += kLineEnd;
  text.append(label).append(u": ").append(value);
}

}  // namespace

Text FormatToolTipText_Size(std::optional<std::int64_t> size) {
  if (!size) return {};
  Text text = sizeLine(*size, kUnitBytes, 3515, u"Bytes");
  text.append(kLineEnd).append(sizeLine(*size, kUnitKB, 3516, u"KB"));
  text.append(kLineEnd).append(sizeLine(*size, kUnitMB, 3517, u"MB"));
  return text.append(kLineEnd).append(sizeLine(*size, kUnitGB, 3518, u"GB"));
}

Text FormatToolTipText_DriveSize(const DriveToolTipValues& drive, DriveSizeKind column) {
  if (!drive.total) return {};
  DriveSize size = driveSize(drive, column);
  return size.heading.append(kLineEnd).append(FormatToolTipText_Size(size.bytes));
}

Text FormatToolTipText_DriveInfo(const DriveToolTipValues& drive) {
  Text text;
  if (!drive.total) {
    addLine(text, TL(3576, u"Name"), drive.name);
  } else {
    for (const auto kind : {DriveSizeKind::Used, DriveSizeKind::Free, DriveSizeKind::Total}) {
      const DriveSize size = driveSize(drive, kind);
      addLine(text, size.heading, xFormatFileSizeAuto(size.bytes, true));
    }
  }
  addLine(text, TL(3577, u"Dateisystem"), drive.filesystem);
  addLine(text, TL(2178, u"Laufwerkstyp"), drive.type);
  addLine(text, TL(2173, u"Clustergröße"), drive.cluster);
  constexpr std::size_t kNamedPlaces = 8;  // a container can have hundreds of them
  for (std::size_t i = 0; i < std::min(drive.otherPlaces.size(), kNamedPlaces); ++i)
    addLine(text, TL(9806, u"Auch eingehängt in"), drive.otherPlaces[i]);
  if (drive.otherPlaces.size() > kNamedPlaces) {
    addLine(text, TL(9806, u"Auch eingehängt in"),
            TL(9612, u"und %1 weitere", {toText(drive.otherPlaces.size() - kNamedPlaces)}));
  }
  return text;
}

}  // namespace ombrelian
