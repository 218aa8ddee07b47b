#pragma once

#include <cstdint>
#include <vector>

#include "support/Date.h"
#include "support/Text.h"

namespace ombrelian {

/// A date pattern, compiled once. Its letters, in either case:
///
///   d dd ddd dddd    day, with two digits, short and long name of the weekday
///   m mm mmm mmmm    month, with two digits, short and long name; m and mm are minutes where the
///                    field in front of them is the hour
///   yy yyyy          year
///   h hh             hour, of a twelve-hour clock where the pattern has AM/PM or tt
///   n nn, s ss       minute, second
///   AM/PM, tt        half of the day: as written, or as the locale writes it
///
/// Everything else stands for itself, as does what is quoted by "..." or '...' or follows a "\".
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
    std::uint32_t extent;  // its length
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

/// The pattern of dates until the user sets another: the locale's short date and time without its
/// AM/PM, or "dd/MM/yyyy HH:nn:ss" where the locale has none.
Text defaultDateFormat();

/// The locale's short date and time; without the time of day where that is 0, without the date
/// where its day is 0, empty where there is no date. Made for many dates.
class GeneralDate {
 public:
  /// Formats in the locale that is in force.
  GeneralDate();

  void append(Date date, Text& out) const;

 private:
  DatePattern date_;
  DatePattern time_;
};

/// One date in that form.
Text formatGeneralDate(Date date);

/// A span of time as "hh:nn:ss"; the hours go on past 24. A negative span counts as 0.
Text formatTimeSpan(std::int64_t seconds);

}  // namespace ombrelian
