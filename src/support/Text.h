#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ombrelian {

/// All text inside the program is UTF-16, which reports, the settings file and both window systems
/// use. A name from a POSIX disk may contain bytes that are not UTF-8; see fromBytes.
using Text = std::u16string;
using TextView = std::u16string_view;

/// Decodes the bytes of a name or a line as UTF-8 without loss: a byte that is not part of
/// well-formed UTF-8 becomes the lone surrogate U+DC00 + byte (U+DC80 to U+DCFF).
Text fromBytes(std::string_view bytes);

/// The same as fromBytes, but replaces the content of `out`, so that a caller can reuse its memory.
void fromBytes(std::string_view bytes, Text& out);

/// The exact inverse of fromBytes for every text that fromBytes made. Any other lone surrogate is
/// written as three bytes, as UTF-8 would if it allowed surrogates.
std::string toBytes(TextView text);

/// The same as toBytes, but appends to `out`.
void appendBytes(TextView text, std::string& out);

/// Converts ASCII to UTF-16; only for literals and numbers.
Text fromAscii(std::string_view ascii);

/// The decimal digits of `value`, with "-" in front of a negative one.
Text toText(std::int64_t value);

/// Reads the whole of `text` as a decimal number. Returns false and does not change `value`, unless
/// the text is an optional sign and digits that fit.
bool parseNumber(TextView text, std::int64_t& value);

/// `text` without blanks (U+0020) at both ends; other white space stays, because names may contain
/// it.
TextView trimBlanks(TextView text);

/// `text` with every `from` replaced by `to`, left to right; an empty `from` replaces nothing.
Text replaceAll(TextView text, TextView from, TextView to);

/// `text` with U+2424 in place of each line feed and carriage return.
Text onOneLine(TextView text);

/// Upper and lower case of the 26 ASCII letters; everything else stays.
char16_t asciiLower(char16_t unit);
Text asciiLower(TextView text);
Text asciiUpper(TextView text);

}  // namespace ombrelian
