#include "support/Text.h"

#include <algorithm>
#include <charconv>

#include "support/Surrogates.h"

namespace ombrelian {
namespace {

constexpr char16_t kEscapeFirst = 0xDC80;
constexpr char16_t kEscapeLast = 0xDCFF;
constexpr char16_t kEscapeBase = 0xDC00;

struct Decoded {
  char32_t codePoint;
  std::size_t length;  // bytes of the sequence; 0: no well-formed sequence begins here
};

/// Decodes a well-formed sequence of Unicode's table 3-7; `at` points to a byte above 0x7F.
Decoded decodeSequence(const unsigned char* at, std::size_t left) {
  const unsigned char lead = at[0];
  const auto isTail = [&](std::size_t i, unsigned char low = 0x80, unsigned char high = 0xBF) {
    return i < left && at[i] >= low && at[i] <= high;
  };
  if (lead >= 0xC2 && lead <= 0xDF) {
    if (!isTail(1)) return {0, 0};
    return {char32_t((lead & 0x1F) << 6 | (at[1] & 0x3F)), 2};
  }
  if (lead >= 0xE0 && lead <= 0xEF) {
    const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
    if (!isTail(1, low, high) || !isTail(2)) return {0, 0};
    return {char32_t((lead & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F)), 3};
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
    if (!isTail(1, low, high) || !isTail(2) || !isTail(3)) return {0, 0};
    return {
        char32_t((lead & 0x07) << 18 | (at[1] & 0x3F) << 12 | (at[2] & 0x3F) << 6 | (at[3] & 0x3F)),
        4};
  }
  return {0, 0};
}

/// Decodes the sequence at `in`, which begins with a byte above 0x7F; moves `in` past it and
/// returns the new end of the output.
char16_t* decodeOne(const unsigned char*& in, const unsigned char* end, char16_t* out) {
  const Decoded decoded = decodeSequence(in, std::size_t(end - in));
  if (decoded.length == 0) {
    *out++ = char16_t(kEscapeBase + *in++);
    return out;
  }
  in += decoded.length;
  if (decoded.codePoint < 0x10000) {
    *out++ = char16_t(decoded.codePoint);
    return out;
  }
  const char32_t offset = decoded.codePoint - 0x10000;
  *out++ = char16_t(0xD800 + (offset >> 10));
  *out++ = char16_t(0xDC00 + (offset & 0x3FF));
  return out;
}

void appendCodePoint(char32_t codePoint, std::string& out) {
  if (codePoint < 0x80) {
    out.push_back(char(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(char(0xC0 | codePoint >> 6));
    out.push_back(char(0x80 | (codePoint & 0x3F)));
  } else if (codePoint < 0x10000) {
    out.push_back(char(0xE0 | codePoint >> 12));
    out.push_back(char(0x80 | (codePoint >> 6 & 0x3F)));
    out.push_back(char(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(char(0xF0 | codePoint >> 18));
    out.push_back(char(0x80 | (codePoint >> 12 & 0x3F)));
    out.push_back(char(0x80 | (codePoint >> 6 & 0x3F)));
    out.push_back(char(0x80 | (codePoint & 0x3F)));
  }
}

}  // namespace

Text fromBytes(std::string_view bytes) {
  Text text;
  fromBytes(bytes, text);
  return text;
}

void fromBytes(std::string_view bytes, Text& out) {
  // A byte never gives more than one unit, so one resize is enough; most names are ASCII.
  out.resize(bytes.size());
  const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
  const unsigned char* const end = in + bytes.size();
  char16_t* to = out.data();
  while (in != end) {
    if (*in < 0x80) {
      *to++ = *in++;
    } else {
      to = decodeOne(in, end, to);
    }
  }
  out.resize(std::size_t(to - out.data()));
}

std::string toBytes(TextView text) {
  std::string bytes;
  appendBytes(text, bytes);
  return bytes;
}

void appendBytes(TextView text, std::string& out) {
  out.reserve(out.size() + text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit < 0x80) {
      out.push_back(char(unit));
    } else if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      appendCodePoint(joinSurrogates(unit, text[i + 1]), out);
      ++i;
    } else if (unit >= kEscapeFirst && unit <= kEscapeLast) {
      out.push_back(char(unit - kEscapeBase));
    } else {
      appendCodePoint(unit, out);
    }
  }
}

Text fromAscii(std::string_view ascii) { return Text(ascii.begin(), ascii.end()); }

Text toText(std::int64_t value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return Text(digits, end);
}

bool parseNumber(TextView text, std::int64_t& value) {
  std::string digits;
  for (const char16_t unit : text) {
    if (unit >= 0x80) return false;
    digits.push_back(char(unit));
  }
  std::int64_t parsed = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, parsed);
  if (error != std::errc() || stop != end) return false;
  value = parsed;
  return true;
}

TextView trimBlanks(TextView text) {
  const auto first = text.find_first_not_of(u' ');
  if (first == TextView::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

Text replaceAll(TextView text, TextView from, TextView to) {
  Text result;
  std::size_t at = 0;
  for (;;) {
    const auto hit = from.empty() ? TextView::npos : text.find(from, at);
    result.append(text.substr(at, hit == TextView::npos ? hit : hit - at));
    if (hit == TextView::npos) return result;
    result.append(to);
    at = hit + from.size();
  }
}

Text onOneLine(TextView text) {
  Text line(text);
  for (char16_t& unit : line) {
    if (unit == u'\n' || unit == u'\r') unit = u'\u2424';
  }
  return line;
}

char16_t asciiLower(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
}

Text asciiLower(TextView text) {
  Text result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char16_t unit) { return asciiLower(unit); });
  return result;
}

Text asciiUpper(TextView text) {
  Text result(text);
  std::transform(result.begin(), result.end(), result.begin(), [](char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? char16_t(unit - 32) : unit;
  });
  return result;
}

}  // namespace ombrelian
