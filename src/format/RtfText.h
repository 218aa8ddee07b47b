#pragma once

#include "support/Text.h"

namespace ombrelian {

/// `text` as rich text in which every unit is escaped, for programs that accept only rich text:
/// units up to 255 as "\'" and their hexadecimal digits (one digit below 16), others as "\uc1\u",
/// the signed decimal value and "?". With `wrap` the result is a complete document.
Text GetRtfUnicodeEscapedString2(TextView text, bool wrap);

}  // namespace ombrelian
