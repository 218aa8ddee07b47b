#pragma once

#include <vector>

#include "support/TextRules.h"

namespace ombrelian {

/// A pattern for whole texts, compiled once. Case is ignored by the rules of the locale.
///
///   ?         one character              *   any number of characters, also none
///   #         one digit                  [a-fx]  one character of the list, [!...] one that is not
///
/// All other characters match themselves. A "[" that is never closed, or a range in descending
/// order, makes the pattern malformed. A character is a code point; a byte that is not UTF-8 counts
/// as one too.
class LikePattern {
 public:
  /// `rules` fold characters that are not ASCII; they must outlive the pattern.
  LikePattern(TextView pattern, const TextRules& rules);

  const Text& text() const { return text_; }
  bool isMalformed() const { return isMalformed_; }

  /// Whether the pattern matches the whole `subject`. Allocates no memory; the time is at most
  /// proportional to the product of both lengths. Do not call it for a malformed pattern.
  bool matches(TextView subject) const;

  /// Whether the pattern begins with "*": if it matches a name, it then matches every path that
  /// ends with this name.
  bool startsWithRun() const { return headEnd_ == 0 && !tokens_.empty(); }

 private:
  enum class Kind : std::uint8_t { Character, AnyCharacter, AnyRun, Digit, Set };

  struct Token {
    Kind kind;
    bool isNegated = false;      // used by Set
    std::uint32_t begin = 0;     // folded code point of Character; first range of Set
    std::uint32_t rangeEnd = 0;  // used by Set
  };

  struct Range {
    char32_t first;  // folded code point; last is folded too
    char32_t last;
  };

  void compile();
  bool matchesHead(TextView subject, std::size_t& at) const;
  bool matchesTail(TextView subject, std::size_t at, std::size_t& end) const;
  bool matchesMiddle(TextView subject, std::size_t at, std::size_t end) const;
  bool compileSet(std::size_t& at);
  char32_t fold(char32_t codePoint) const;
  bool matchesOne(const Token& token, char32_t codePoint) const;

  const TextRules* rules_;
  Text text_;
  std::vector<Token> tokens_;
  std::size_t headEnd_ = 0;    // index of the first AnyRun, or the end
  std::size_t tailBegin_ = 0;  // index of the first element after the last AnyRun
  std::vector<Range> ranges_;  // ranges of all sets
  char16_t asciiFold_[128];
  bool isMalformed_ = false;
};

}  // namespace ombrelian
