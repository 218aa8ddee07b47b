#pragma once

#include <initializer_list>

#include "support/Text.h"

namespace ombrelian {

/// Source of the texts of the current language.
class LanguageTexts {
 public:
  virtual ~LanguageTexts() = default;

  /// The text with number `id`; empty if the language has none, or is the built-in German.
  virtual Text text(int id) const = 0;
};

/// Translates every text that a user sees: the result is `german`, unless the current language has
/// a text with the number `id` (0: no language has one). "%!" becomes a line break (CR LF). "%1",
/// "%2", ... are replaced by the arguments, one after the other in the whole text.
Text TL(int id, TextView german, std::initializer_list<TextView> args = {});

/// Sets the language for the rest of the process; called once at start. `texts` is not owned; null:
/// German.
void setLanguageTexts(const LanguageTexts* texts);

}  // namespace ombrelian
