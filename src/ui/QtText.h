#pragma once

#include <QString>

#include "support/Text.h"

namespace ombrelian::ui {

inline QString toQString(TextView text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), qsizetype(text.size()));
}

/// A view of `text`, valid as long as that is.
inline QStringView toQStringView(TextView text) { return {text.data(), qsizetype(text.size())}; }

inline TextView toTextView(QStringView text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), std::size_t(text.size())};
}

inline Text toText(const QString& text) { return Text(toTextView(text)); }

/// The text on one line: control characters are shown by their pictures (U+2400 and on), so that a
/// name with a line break in it takes no second line.
QString shownOnOneLine(TextView text);

/// A line for a message box, which breaks it behind the separators of paths too; one that is very
/// long loses its middle.
QString shownInMessage(TextView text);

}  // namespace ombrelian::ui
