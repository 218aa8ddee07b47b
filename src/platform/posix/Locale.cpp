#include "platform/Locale.h"

#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/udat.h>
#include <unicode/unum.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace ombrelian::platform {
namespace {

constexpr TextView kFixedDate = u"yyyy-MM-dd";
constexpr TextView kFixedTime = u"HH:mm:ss";

/// Locale of one category as the environment names it, without code set and modifier; empty for "C"
/// and "POSIX", and also if the environment names no locale.
std::string namedLocale(const char* category) {
  std::string name;
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value == nullptr || *value == '\0') continue;
    name = value;
    break;
  }
  name.resize(std::min(name.find_first_of(".@"), name.size()));
  return name == "C" || name == "POSIX" ? std::string() : name;
}

/// Whether the name has the form of a locale. ICU reads beyond the end of a part that is too long.
bool isWellFormed(const std::string& name) {
  constexpr std::size_t kLongestPart = 8;
  constexpr std::size_t kLongestName = 32;
  const auto isInPart = [](char unit) { return std::isalnum(static_cast<unsigned char>(unit)); };
  std::string_view rest = name;
  while (!rest.empty()) {
    const std::string_view part = rest.substr(0, rest.find_first_of("_-"));
    if (part.size() > kLongestPart || !std::all_of(part.begin(), part.end(), isInPart))
      return false;
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
  }
  return name.size() <= kLongestName;
}

/// Whether ICU has data for the language of a locale.
bool isKnown(const std::string& name) {
  const std::string_view language = std::string_view(name).substr(0, name.find_first_of("_-"));
  for (std::int32_t i = 0; i < uloc_countAvailable(); ++i) {
    const std::string_view known = uloc_getAvailable(i);
    if (known.substr(0, known.find('_')) == language) return true;
  }
  return false;
}

/// Locale of one category; English for a name that is none.
std::string localeName(const char* category) {
  const std::string name = namedLocale(category);
  return isWellFormed(name) ? name : "en_US";
}

/// Name of the locale for ICU. A locale for which ICU has no data is treated as English, as "C" is.
std::string icuLocale(const std::string& name, std::string_view keyword = {}) {
  UErrorCode status = U_ZERO_ERROR;
  uloc_setDefault("en_US", &status);
  std::string locale = name.empty() ? "en_US" : name;
  return locale.append(keyword);
}

bool isAscii(TextView text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

Text symbolOf(const UNumberFormat* format, UNumberFormatSymbol symbol) {
  char16_t units[16];
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = unum_getSymbol(format, symbol, units, std::size(units), &status);
  return U_SUCCESS(status) ? Text(units, std::size_t(length)) : Text();
}

/// Number of digits that are needed before the first separator. Spanish and Polish do not separate
/// four digits; ICU has no attribute for this, so its output is examined.
int minimumGroupingOf(UNumberFormat* format, TextView group) {
  unum_setAttribute(format, UNUM_MINIMUM_GROUPING_DIGITS, UNUM_MINIMUM_GROUPING_DIGITS_AUTO);
  char16_t units[32];
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      unum_formatInt64(format, 1000, units, std::size(units), nullptr, &status);
  if (U_FAILURE(status)) return 1;
  return TextView(units, std::size_t(length)).find(group) == TextView::npos ? 2 : 1;
}

NumberSymbols readNumberSymbols() {
  NumberSymbols symbols{u".", u",", 3, 3, 1};
  const std::string name = localeName("LC_NUMERIC");
  if (name.empty()) return symbols;
  UErrorCode status = U_ZERO_ERROR;
  // Digits are written in ASCII, so the separators must be those for ASCII digits.
  const std::string locale = icuLocale(name, "@numbers=latn");
  const icu::LocalUNumberFormatPointer format(
      unum_open(UNUM_DECIMAL, nullptr, 0, locale.c_str(), nullptr, &status));
  if (U_FAILURE(status)) return symbols;
  const auto attribute = [&](UNumberFormatAttribute which) {
    return unum_getAttribute(format.getAlias(), which);
  };
  symbols.decimal = symbolOf(format.getAlias(), UNUM_DECIMAL_SEPARATOR_SYMBOL);
  symbols.group = symbolOf(format.getAlias(), UNUM_GROUPING_SEPARATOR_SYMBOL);
  const bool groups = attribute(UNUM_GROUPING_USED) != 0 && !symbols.group.empty();
  symbols.primaryGroup = groups ? std::max(attribute(UNUM_GROUPING_SIZE), 0) : 0;
  const int secondary = attribute(UNUM_SECONDARY_GROUPING_SIZE);
  symbols.secondaryGroup = secondary > 0 ? secondary : symbols.primaryGroup;
  if (groups) symbols.minimumGrouping = minimumGroupingOf(format.getAlias(), symbols.group);
  return symbols;
}

/// Translates a date pattern of ICU into the letters of this program's date patterns.
class PatternTranslator {
 public:
  explicit PatternTranslator(TextView pattern) : pattern_(pattern) {}

  Text translate() {
    while (at_ < pattern_.size()) {
      const char16_t unit = pattern_[at_];
      if (unit == u'\'') {
        quoted();
      } else if (asciiLower(unit) >= u'a' && asciiLower(unit) <= u'z') {
        field(unit, runLength(unit));
      } else {
        separator(unit);
        ++at_;
      }
    }
    return Text(trimBlanks(out_));
  }

 private:
  std::size_t runLength(char16_t unit) {
    const std::size_t begin = at_;
    at_ = std::min(pattern_.find_first_not_of(unit, at_), pattern_.size());
    return at_ - begin;
  }

  void quoted() {
    const std::size_t end = std::min(pattern_.find(u'\'', at_ + 1), pattern_.size());
    const TextView literal = pattern_.substr(at_ + 1, end - at_ - 1);
    at_ = std::min(end + 1, pattern_.size());
    if (literal.empty()) {
      out_ += u"\\'";
    } else {
      out_.append(u"\"").append(literal).append(u"\"");
    }
  }

  void field(char16_t letter, std::size_t length) {
    switch (letter) {
      case u'y':
      case u'u':
        out_ += u"yyyy";
        break;
      case u'M':
      case u'L':
        out_.append(length <= 4 ? length : 3, u'M');
        break;
      case u'E':
      case u'c':
        out_.append(length <= 3 ? 3 : 4, u'd');
        break;
      case u'd':
      case u'm':
      case u's':
        out_.append(std::min(length, std::size_t(2)), letter);
        break;
      case u'H':
      case u'k':
        out_.append(std::min(length, std::size_t(2)), u'H');
        break;
      case u'h':
      case u'K':
        out_.append(std::min(length, std::size_t(2)), u'h');
        break;
      case u'a':
      case u'b':
      case u'B':
        out_ += u"tt";
        break;
      default:  // there are no letters for eras, zones and so on
        break;
    }
  }

  void separator(char16_t unit) {
    const bool isBlank = unit == u'\u00A0' || unit == u'\u202F' || unit == u'\u2009';
    const bool isMark = unit == u'\u200E' || unit == u'\u200F' || unit == u'\u061C';
    if (!isMark) out_ += isBlank ? u' ' : unit;
  }

  TextView pattern_;
  std::size_t at_ = 0;
  Text out_;
};

Text patternOf(const UDateFormat* format) {
  char16_t units[128];
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = udat_toPattern(format, false, units, std::size(units), &status);
  if (U_FAILURE(status)) return {};
  return PatternTranslator(TextView(units, std::size_t(length))).translate();
}

Text nameOf(const UDateFormat* format, UDateFormatSymbolType type, std::size_t index) {
  char16_t units[64];
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      udat_getSymbols(format, type, std::int32_t(index), units, std::size(units), &status);
  return U_SUCCESS(status) ? Text(units, std::size_t(length)) : Text();
}

DateSymbols readDateSymbols() {
  DateSymbols symbols;
  const std::string name = localeName("LC_TIME");
  // All dates are Gregorian, and "C" uses the English names.
  const std::string locale = icuLocale(name, "@calendar=gregorian");
  UErrorCode status = U_ZERO_ERROR;
  const auto open = [&](UDateFormatStyle time, UDateFormatStyle date) {
    return udat_open(time, date, locale.c_str(), nullptr, 0, nullptr, 0, &status);
  };
  const icu::LocalUDateFormatPointer date(open(UDAT_NONE, UDAT_SHORT));
  const icu::LocalUDateFormatPointer time(open(UDAT_MEDIUM, UDAT_NONE));
  if (U_FAILURE(status)) return symbols;
  symbols.shortDate = name.empty() ? Text(kFixedDate) : patternOf(date.getAlias());
  symbols.time = name.empty() ? Text(kFixedTime) : patternOf(time.getAlias());
  for (std::size_t i = 0; i < 12; ++i) {
    // The standalone short names have no point at the end, which other short names have in some
    // languages.
    symbols.shortMonths[i] = nameOf(date.getAlias(), UDAT_STANDALONE_SHORT_MONTHS, i);
    symbols.longMonths[i] = nameOf(date.getAlias(), UDAT_MONTHS, i);
  }
  for (std::size_t i = 0; i < 7; ++i) {
    symbols.shortDays[i] = nameOf(date.getAlias(), UDAT_STANDALONE_SHORT_WEEKDAYS, i + 1);
    symbols.longDays[i] = nameOf(date.getAlias(), UDAT_WEEKDAYS, i + 1);
  }
  symbols.am = nameOf(date.getAlias(), UDAT_AM_PMS, 0);
  symbols.pm = nameOf(date.getAlias(), UDAT_AM_PMS, 1);
  return symbols;
}

using CaseMapping = UChar32 (*)(UChar32 codePoint);

class LocaleRules : public TextRules {
 public:
  LocaleRules() {
    const std::string locale = localeName("LC_CTYPE");
    dotlessI_ = locale.starts_with("tr") || locale.starts_with("az");
  }

  Text lower(TextView text) const override {
    return !dotlessI_ && isAscii(text) ? asciiLower(text) : mapCase(text, u_tolower);
  }

  Text upper(TextView text) const override {
    return !dotlessI_ && isAscii(text) ? asciiUpper(text) : mapCase(text, u_toupper);
  }

  char32_t fold(char32_t codePoint) const override {
    const auto options = dotlessI_ ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
    return char32_t(u_foldCase(UChar32(codePoint), options));
  }

  int compare(TextView a, TextView b, bool binary) const override {
    if (binary) return a.compare(b);
    if (!collator_.isValid()) openCollator();
    if (!collator_.isValid()) return lower(a).compare(lower(b));
    return ucol_strcoll(collator_.getAlias(), a.data(), std::int32_t(a.size()), b.data(),
                        std::int32_t(b.size()));
  }

  std::string sortKey(TextView text) const override {
    if (!collator_.isValid()) openCollator();
    if (!collator_.isValid()) return toBytes(lower(text));
    std::string key(text.size() * 3 + 16, '\0');
    const auto make = [&] {
      return ucol_getSortKey(collator_.getAlias(), text.data(), std::int32_t(text.size()),
                             reinterpret_cast<std::uint8_t*>(key.data()), std::int32_t(key.size()));
    };
    std::int32_t size = make();
    if (std::size_t(size) > key.size()) {
      key.resize(std::size_t(size));
      size = make();
    }
    key.resize(std::size_t(size));
    return key;
  }

 private:
  /// Maps each code point to exactly one code point, so that padded text keeps its width. A sharp s
  /// therefore has no capital letter.
  Text mapCase(TextView text, CaseMapping map) const {
    Text result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
      UChar32 codePoint = 0;
      U16_NEXT(text.data(), at, text.size(), codePoint);
      const UChar32 mapped = dotlessI_ ? mapTurkish(codePoint, map) : map(codePoint);
      if (mapped < 0x10000) {
        result.push_back(char16_t(mapped));
      } else {
        result.push_back(U16_LEAD(mapped));
        result.push_back(U16_TRAIL(mapped));
      }
    }
    return result;
  }

  /// In Turkish and Azeri, the capital letter of "i" has a dot, and the small letter of "I" has
  /// none.
  static UChar32 mapTurkish(UChar32 codePoint, CaseMapping map) {
    const bool isUpper = map == u_toupper;
    if (codePoint == u'i' && isUpper) return 0x130;
    if (codePoint == u'I' && !isUpper) return 0x131;
    return map(codePoint);
  }

  void openCollator() const {
    const std::string locale = icuLocale(localeName("LC_COLLATE"));
    UErrorCode status = U_ZERO_ERROR;
    collator_.adoptInstead(ucol_open(locale.c_str(), &status));
    if (collator_.isValid()) ucol_setStrength(collator_.getAlias(), UCOL_SECONDARY);
  }

  bool dotlessI_ = false;
  mutable icu::LocalUCollatorPointer collator_;  // opened at the first comparison
};

/// Data that were read so far. Each part is read at its first use, so that a run that formats
/// nothing never loads the locale data.
struct LocaleCache {
  std::optional<NumberSymbols> numbers;
  std::optional<DateSymbols> dates;
  std::optional<LocaleRules> rules;
};

LocaleCache& cache() {
  static LocaleCache instance;
  return instance;
}

}  // namespace

const NumberSymbols& numberSymbols() {
  auto& numbers = cache().numbers;
  if (!numbers) numbers.emplace(readNumberSymbols());
  return *numbers;
}

const DateSymbols& dateSymbols() {
  auto& dates = cache().dates;
  if (!dates) dates.emplace(readDateSymbols());
  return *dates;
}

const TextRules& localeTextRules() {
  auto& rules = cache().rules;
  if (!rules) rules.emplace();
  return *rules;
}

Text UnknownLocaleName() {
  for (const char* category : {"LC_CTYPE", "LC_NUMERIC", "LC_TIME", "LC_COLLATE"}) {
    const std::string name = namedLocale(category);
    if (!name.empty() && !(isWellFormed(name) && isKnown(name))) return fromBytes(name);
  }
  return {};
}

int GetUserDefaultLangID() {
  constexpr int kEnglish = 9;
  static constexpr struct {
    std::string_view language;
    int number;
  } kLanguages[] = {{"de", 7},  {"en", kEnglish}, {"fr", 12}, {"it", 16}, {"ko", 18},
                    {"nl", 19}, {"pl", 21},       {"ru", 25}, {"sv", 29}};
  const std::string name = namedLocale("LC_MESSAGES");
  if (name.empty()) return kEnglish;
  // "LANGUAGE" is a list of languages by preference, which counts unless the locale is "C".
  const char* const preferred = std::getenv("LANGUAGE");
  std::string list = preferred == nullptr ? std::string() : preferred;
  list.append(":").append(name);
  for (std::string_view rest = list; !rest.empty();) {
    const std::string_view entry = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    for (const auto& known : kLanguages)
      if (known.language == entry.substr(0, entry.find_first_of("_.@"))) return known.number;
  }
  return 0;
}

void reloadLocale() { cache() = LocaleCache(); }

}  // namespace ombrelian::platform
