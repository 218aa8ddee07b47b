#pragma once

#include <cstdint>
#include <vector>

#include "support/Date.h"
#include "support/Text.h"

namespace ombrelian {

/// A date pattern, compiled once. Its letters, in either case:
///
///   d dd ddd dddd    day, with two digits, short and long name of the weekday
///   m mm mmm mmmm    month, with two digits, short and long name; m and mm are minutes if the
///                    field in front of them is the hour
///   yy yyyy          year
///   h hh             hour; of a twelve-hour clock if the pattern has AM/PM or tt
///   n nn, s ss       minute, second
///   AM/PM, tt        half of the day: as written in the pattern, or in the text of the locale
///
/// All other characters are literal, as are quoted texts ("..." or '...') and a character after
/// "\".
class DatePattern {
 public:
  DatePattern() = default;
  explicit DatePattern(TextView pattern);

  void append(Date date, Text& out) const;
  Text format(Date date) const;

 private:
  enum class Field : std::uint8_t { Literal, Day, Month, Year, Hour, Minute, Second, Half, AmPm };

  struct Token {
    Field field;
    std::uint8_t length;   // repetitions of the letter
    std::uint32_t begin;   // begin of a literal or a written AM/PM in literals_
    std::uint32_t extent;  // length of that literal
  };

  void addField(TextView run);
  void addText(Field field, TextView text);
  Field fieldOf(char16_t letter, std::size_t length) const;
  std::size_t skipQuoted(TextView rest);
  TextView textOf(const Token& token) const;
  void appendHalf(const Token& token, const DateParts& parts, Text& out) const;

  std::vector<Token> tokens_;
  Text literals_;
  bool twelveHours_ = false;
};

/// The date pattern until the user sets another one: the locale's short date and time without its
/// AM/PM, or "dd/MM/yyyy HH:nn:ss" if the locale has none.
Text defaultDateFormat();

/// Formats dates as the locale's short date and time. The time is left out if it is 0, and the date
/// is left out if its day is 0. The text is empty if there is no date. One object serves many
/// dates.
class GeneralDate {
 public:
  /// Formats with the current locale.
  GeneralDate();

  void append(Date date, Text& out) const;

 private:
  DatePattern date_;
  DatePattern time_;
};

/// One date in the form of GeneralDate.
Text formatGeneralDate(Date date);

/// A span of time as "hh:nn:ss"; the hours may exceed 24. A negative span counts as 0.
Text formatTimeSpan(std::int64_t seconds);

/// A measured time for people: "3.4 s" below a minute, else as above.
Text formatDuration(std::int64_t milliseconds);

}  // namespace ombrelian
