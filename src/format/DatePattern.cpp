#include "format/DatePattern.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/Locale.h"

namespace ombrelian {
namespace {

constexpr TextView kAmPm = u"am/pm";

void appendDigits(std::int64_t value, std::size_t least, Text& out) {
  char16_t digits[20];
  char16_t* const end = std::end(digits);
  char16_t* at = end;
  const bool negative = value < 0;
  for (auto left = std::uint64_t(negative ? -value : value);
       left != 0 || std::size_t(end - at) < least; left /= 10) {
    *--at = char16_t(u'0' + left % 10);
  }
  if (negative) out += u'-';
  out.append(at, end);
}

template <std::size_t Count>
void appendName(const std::array<Text, Count>& names, int index, Text& out) {
  out += names[std::size_t(index)];
}

void appendDay(const DateParts& parts, std::size_t length, Text& out) {
  const platform::DateSymbols& symbols = platform::dateSymbols();
  if (length <= 2) return appendDigits(parts.day, length, out);
  appendName(length == 3 ? symbols.shortDays : symbols.longDays, parts.weekday, out);
}

void appendMonth(const DateParts& parts, std::size_t length, Text& out) {
  const platform::DateSymbols& symbols = platform::dateSymbols();
  if (length <= 2) return appendDigits(parts.month, length, out);
  appendName(length == 3 ? symbols.shortMonths : symbols.longMonths, parts.month - 1, out);
}

bool isDateLike(Date date) {
  constexpr double kFarthest = 1e8;  // days; no file system has a date beyond this
  return std::fabs(date) < kFarthest;
}

}  // namespace

DatePattern::DatePattern(TextView pattern) {
  for (std::size_t at = 0; at < pattern.size();) {
    const TextView rest = pattern.substr(at);
    const char16_t letter = asciiLower(rest[0]);
    std::size_t taken = 1;
    if (asciiLower(rest.substr(0, kAmPm.size())) == kAmPm) {
      taken = kAmPm.size();
      addText(Field::AmPm, rest.substr(0, taken));
    } else if (asciiLower(rest.substr(0, 2)) == u"tt") {
      taken = 2;
      addText(Field::Half, {});
    } else if (TextView(u"dmyhns").find(letter) != TextView::npos) {
      while (taken < rest.size() && asciiLower(rest[taken]) == letter) {
        ++taken;
      }
      taken = std::min(taken, std::size_t(4));
      addField(rest.substr(0, taken));
    } else if (letter == u'"' || letter == u'\'' || letter == u'\\') {
      taken = skipQuoted(rest);
    } else {
      addText(Field::Literal, rest.substr(0, 1));
    }
    at += taken;
  }
}

/// Reads the quoted or escaped text at the beginning of `rest`; returns its length in `rest`.
std::size_t DatePattern::skipQuoted(TextView rest) {
  if (rest[0] == u'\\') {
    addText(Field::Literal, rest.substr(1, 1));
    return std::min(rest.size(), std::size_t(2));
  }
  const std::size_t end = rest.find(rest[0], 1);
  if (end == TextView::npos) {  // a quote that is not closed is an ordinary character
    addText(Field::Literal, rest.substr(0, 1));
    return 1;
  }
  addText(Field::Literal, rest.substr(1, end - 1));
  return end + 1;
}

void DatePattern::addField(TextView run) {
  const Field field = fieldOf(asciiLower(run[0]), run.size());
  tokens_.push_back({field, std::uint8_t(run.size()), 0, 0});
}

void DatePattern::addText(Field field, TextView text) {
  if (field != Field::Literal) twelveHours_ = true;
  tokens_.push_back({field, 0, std::uint32_t(literals_.size()), std::uint32_t(text.size())});
  literals_ += text;
}

DatePattern::Field DatePattern::fieldOf(char16_t letter, std::size_t length) const {
  switch (letter) {
    case u'd':
      return Field::Day;
    case u'y':
      return Field::Year;
    case u'h':
      return Field::Hour;
    case u'n':
      return Field::Minute;
    case u's':
      return Field::Second;
    default:
      break;
  }
  // Locale patterns contain "HH:mm": after an hour, an m is a minute.
  const auto last = std::find_if(tokens_.rbegin(), tokens_.rend(),
                                 [](const Token& token) { return token.field != Field::Literal; });
  const bool behindHour = last != tokens_.rend() && last->field == Field::Hour;
  return behindHour && length <= 2 ? Field::Minute : Field::Month;
}

TextView DatePattern::textOf(const Token& token) const {
  return TextView(literals_).substr(token.begin, token.extent);
}

void DatePattern::appendHalf(const Token& token, const DateParts& parts, Text& out) const {
  const bool morning = parts.hour < 12;
  if (token.field == Field::AmPm) {
    out += textOf(token).substr(morning ? 0 : 3, 2);
  } else {
    out += morning ? platform::dateSymbols().am : platform::dateSymbols().pm;
  }
}

void DatePattern::append(Date date, Text& out) const {
  if (!isDateLike(date)) return;
  const DateParts parts = toParts(date);
  for (const Token& token : tokens_) {
    const std::size_t digits = std::min(token.length, std::uint8_t(2));
    switch (token.field) {
      case Field::Literal:
        out += textOf(token);
        break;
      case Field::Day:
        appendDay(parts, token.length, out);
        break;
      case Field::Month:
        appendMonth(parts, token.length, out);
        break;
      case Field::Year:
        token.length <= 2 ? appendDigits(parts.year % 100, 2, out)
                          : appendDigits(parts.year, 4, out);
        break;
      case Field::Hour:
        appendDigits(twelveHours_ ? (parts.hour + 11) % 12 + 1 : parts.hour, digits, out);
        break;
      case Field::Minute:
        appendDigits(parts.minute, digits, out);
        break;
      case Field::Second:
        appendDigits(parts.second, digits, out);
        break;
      case Field::Half:
      case Field::AmPm:
        appendHalf(token, parts, out);
        break;
    }
  }
}

Text DatePattern::format(Date date) const {
  Text out;
  append(date, out);
  return out;
}

Text defaultDateFormat() {
  const platform::DateSymbols& symbols = platform::dateSymbols();
  Text time = replaceAll(symbols.time, u" tt", u"");
  time = replaceAll(time, u" t", u"");
  if (symbols.shortDate.empty() || time.empty()) return u"dd/MM/yyyy HH:nn:ss";
  return symbols.shortDate + u" " + time;
}

GeneralDate::GeneralDate()
    : date_(platform::dateSymbols().shortDate), time_(platform::dateSymbols().time) {}

void GeneralDate::append(Date date, Text& out) const {
  if (date == 0 || !isDateLike(date)) return;
  const DateParts parts = toParts(date);
  const bool hasDate = std::trunc(date) != 0;
  const bool hasTime = parts.hour != 0 || parts.minute != 0 || parts.second != 0;
  const std::size_t before = out.size();
  if (hasDate) date_.append(date, out);
  const bool isEmpty = out.size() == before;
  if (!isEmpty && hasTime) out += u' ';
  if (isEmpty || hasTime) time_.append(date, out);
}

Text formatGeneralDate(Date date) {
  Text out;
  GeneralDate().append(date, out);
  return out;
}

Text formatTimeSpan(std::int64_t seconds) {
  const std::int64_t span = std::max(seconds, std::int64_t(0));
  Text out;
  appendDigits(span / 3600, 2, out);
  out += u':';
  appendDigits(span / 60 % 60, 2, out);
  out += u':';
  appendDigits(span % 60, 2, out);
  return out;
}

Text formatDuration(std::int64_t milliseconds) {
  constexpr std::int64_t kMinute = 60'000;
  if (milliseconds >= kMinute) return formatTimeSpan(milliseconds / 1000);
  const std::int64_t tenths = milliseconds / 100;
  return toText(tenths / 10)
      .append(platform::numberSymbols().decimal)
      .append(toText(tenths % 10))
      .append(u" s");
}

}  // namespace ombrelian
