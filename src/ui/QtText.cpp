#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr char16_t kControlPictures = 0x2400;
constexpr char16_t kDeletePicture = 0x2421;

bool isControl(QChar unit) { return unit.unicode() < 0x20 || unit.unicode() == 0x7F; }

}  // namespace

QString shownInMessage(TextView text) {
  constexpr qsizetype kLongest = 400;
  QString shown = shownOnOneLine(text);
  if (shown.size() > kLongest) {
    shown = shown.left(kLongest / 2) + QStringLiteral(" \u2026 ") + shown.right(kLongest / 2);
  }
  return shown.replace(u'/', QStringLiteral("/\u200B"));
}

QString shownOnOneLine(TextView text) {
  QString shown = toQString(text);
  for (QChar& unit : shown) {
    if (!isControl(unit)) continue;
    unit = unit.unicode() == 0x7F ? QChar(kDeletePicture)
                                  : QChar(char16_t(kControlPictures + unit.unicode()));
  }
  return shown;
}

}  // namespace ombrelian::ui
