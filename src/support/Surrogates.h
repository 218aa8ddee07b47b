#pragma once

namespace ombrelian {

// UTF-16 writes a code point beyond U+FFFF as a high and a low surrogate. A lone surrogate is not
// text but an escaped byte of a name; see fromBytes.

constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

/// The code point of a surrogate pair.
constexpr char32_t joinSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((char32_t(high) - 0xD800) << 10) + (char32_t(low) - 0xDC00);
}

}  // namespace ombrelian
