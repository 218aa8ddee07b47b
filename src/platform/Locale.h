#pragma once

#include <array>

#include "support/Text.h"
#include "support/TextRules.h"

namespace ombrelian::platform {

/// How the user's locale writes numbers. The locales "C" and "POSIX" count as English (US).
struct NumberSymbols {
  Text decimal;             // separator between whole part and fraction
  Text group;               // separator between groups of digits; may be empty
  int primaryGroup = 3;     // digits of the group next to the decimal separator; 0: no groups
  int secondaryGroup = 3;   // digits of the groups before that group
  int minimumGrouping = 1;  // digits that are needed before the first separator
};

/// How the user's locale writes dates, in the letters of date patterns: d, M, y, H, h, m, s, tt.
struct DateSymbols {
  Text shortDate;                    // "yyyy-MM-dd" in "C" and "POSIX"
  Text time;                         // pattern with seconds; "HH:mm:ss" in "C" and "POSIX"
  std::array<Text, 12> shortMonths;  // January is the first
  std::array<Text, 12> longMonths;
  std::array<Text, 7> shortDays;  // Sunday is the first
  std::array<Text, 7> longDays;
  Text am;
  Text pm;
};

/// The locale is read from the environment at the first call and kept.
const NumberSymbols& numberSymbols();
const DateSymbols& dateSymbols();

/// Case and collation of the user's locale.
const TextRules& localeTextRules();

/// The name of a locale in the environment that the system has no data for, and in whose place
/// English is used; empty: there is none.
Text UnknownLocaleName();

/// Language of messages as a Windows primary language number (7 German, 9 English, ...); 9 for
/// "C" and "POSIX", 0 for a language that has no number here.
int GetUserDefaultLangID();

/// Discards the data that were read, so that a test can change the environment. References that
/// were returned before are invalid afterwards.
void reloadLocale();

}  // namespace ombrelian::platform
