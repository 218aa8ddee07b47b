#pragma once

#include <string>

#include "support/Text.h"

namespace ombrelian {

/// How a locale folds and orders text. platform/Locale.h has the user's own; code that must not
/// know of the platform gets one handed in.
class TextRules {
 public:
  virtual ~TextRules() = default;

  /// Lower case of every script; the length may change.
  virtual Text lower(TextView text) const = 0;
  virtual Text upper(TextView text) const = 0;

  /// What is the same for code points that differ in case alone; a lone surrogate is itself.
  virtual char32_t fold(char32_t codePoint) const = 0;

  /// Order of two texts: negative, 0 or positive. Binary compares code units; otherwise the
  /// locale's collation without regard to case.
  virtual int compare(TextView a, TextView b, bool binary) const = 0;

  /// Bytes that stand to each other as compare() with the locale's collation has the texts; pays
  /// where a text is compared more than a few times.
  virtual std::string sortKey(TextView text) const = 0;
};

}  // namespace ombrelian
