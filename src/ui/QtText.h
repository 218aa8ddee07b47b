#pragma once

#include <QString>

#include "support/Text.h"

namespace ombrelian::ui {

inline QString toQString(TextView text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), qsizetype(text.size()));
}

/// A view of `text`, valid as long as `text` is.
inline QStringView toQStringView(TextView text) { return {text.data(), qsizetype(text.size())}; }

inline TextView toTextView(QStringView text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), std::size_t(text.size())};
}

inline Text toText(const QString& text) { return Text(toTextView(text)); }

/// The text with its control characters replaced by their pictures (U+2400 and on), so that a name
/// that contains a line break takes only one line.
QString shownOnOneLine(TextView text);

/// The text for a message box, which may break it after each separator of a path. A very long text
/// loses its middle.
QString shownInMessage(TextView text);

}  // namespace ombrelian::ui
