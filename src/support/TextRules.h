#pragma once

#include <string>

#include "support/Text.h"

namespace ombrelian {

/// Rules of a locale for the case and the order of texts. platform/Locale.h has the rules of the
/// user; code that must not depend on the platform gets them as a parameter.
class TextRules {
 public:
  virtual ~TextRules() = default;

  /// Lower case for all scripts; the length may change.
  virtual Text lower(TextView text) const = 0;
  virtual Text upper(TextView text) const = 0;

  /// A value that is the same for code points that differ only in case. The value of a lone
  /// surrogate is the surrogate itself.
  virtual char32_t fold(char32_t codePoint) const = 0;

  /// Order of two texts: negative, 0 or positive. With `binary` code units are compared; otherwise
  /// the locale's collation without regard to case is used.
  virtual int compare(TextView a, TextView b, bool binary) const = 0;

  /// Bytes that have the same order as the texts have in compare() with the locale's collation. It
  /// is faster if a text is compared more than a few times.
  virtual std::string sortKey(TextView text) const = 0;
};

}  // namespace ombrelian
