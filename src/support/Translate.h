#pragma once

#include <initializer_list>

#include "support/Text.h"

namespace ombrelian {

/// Where the texts of the language in force come from.
class LanguageTexts {
 public:
  virtual ~LanguageTexts() = default;

  /// The text with number `id`; empty where the language has none, or is the built-in German.
  virtual Text text(int id) const = 0;
};

/// Every text that a user sees goes through here: `german` stands unless the language in force has
/// a text numbered `id` (0: none has). "%!" becomes a line break (CR LF), "%1", "%2", ... become
/// the arguments, one after the other over the whole text.
Text TL(int id, TextView german, std::initializer_list<TextView> args = {});

/// Puts a language in force for the rest of the process; set once at start. Not owned; null
/// returns to German.
void setLanguageTexts(const LanguageTexts* texts);

}  // namespace ombrelian
