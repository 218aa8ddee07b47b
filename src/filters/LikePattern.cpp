#include "filters/LikePattern.h"

#include <algorithm>

#include "support/Surrogates.h"

namespace ombrelian {
namespace {

/// Returns the code point at `at` and moves `at` past it; a lone surrogate counts as a code point.
char32_t takeCodePoint(TextView text, std::size_t& at) {
  const char16_t unit = text[at++];
  if (!isHighSurrogate(unit) || at == text.size() || !isLowSurrogate(text[at])) return unit;
  return joinSurrogates(unit, text[at++]);
}

/// Returns the code point that ends at `end` and moves `end` before it.
char32_t takeCodePointBefore(TextView text, std::size_t& end) {
  const char16_t unit = text[--end];
  if (!isLowSurrogate(unit) || end == 0 || !isHighSurrogate(text[end - 1])) return unit;
  return joinSurrogates(text[--end], unit);
}

}  // namespace

LikePattern::LikePattern(TextView pattern, const TextRules& rules)
    : rules_(&rules), text_(pattern) {
  for (char16_t unit = 0; unit < 128; ++unit)
    asciiFold_[unit] = char16_t(rules.fold(unit));
  compile();
}

char32_t LikePattern::fold(char32_t codePoint) const {
  return codePoint < 128 ? asciiFold_[codePoint] : rules_->fold(codePoint);
}

void LikePattern::compile() {
  std::size_t at = 0;
  while (at < text_.size() && !isMalformed_) {
    switch (text_[at]) {
      case u'?':
        tokens_.push_back({Kind::AnyCharacter});
        ++at;
        break;
      case u'*':
        tokens_.push_back({Kind::AnyRun});
        ++at;
        break;
      case u'#':
        tokens_.push_back({Kind::Digit});
        ++at;
        break;
      case u'[':
        isMalformed_ = !compileSet(++at);
        break;
      default:
        tokens_.push_back({Kind::Character, false, fold(takeCodePoint(text_, at))});
    }
  }
  const auto isRun = [](const Token& token) { return token.kind == Kind::AnyRun; };
  headEnd_ = std::size_t(std::find_if(tokens_.begin(), tokens_.end(), isRun) - tokens_.begin());
  tailBegin_ = std::size_t(tokens_.rend() - std::find_if(tokens_.rbegin(), tokens_.rend(), isRun));
}

/// Compiles a set; `at` is after the "["; false if the set is malformed.
bool LikePattern::compileSet(std::size_t& at) {
  const std::size_t close = text_.find(u']', at);
  if (close == Text::npos) return false;
  const TextView content = TextView(text_).substr(at, close - at);
  at = close + 1;
  if (content.empty()) return true;  // "[]" matches the empty text
  Token token{Kind::Set, content.size() > 1 && content[0] == u'!', std::uint32_t(ranges_.size())};
  std::size_t in = token.isNegated ? 1 : 0;
  while (in < content.size()) {
    const char32_t first = fold(takeCodePoint(content, in));
    char32_t last = first;
    // A hyphen at the end of the list is one of its characters.
    if (in + 1 < content.size() && content[in] == u'-') last = fold(takeCodePoint(content, ++in));
    if (last < first) return false;
    ranges_.push_back({first, last});
  }
  token.rangeEnd = std::uint32_t(ranges_.size());
  tokens_.push_back(token);
  return true;
}

bool LikePattern::matchesOne(const Token& token, char32_t codePoint) const {
  switch (token.kind) {
    case Kind::Character:
      return fold(codePoint) == token.begin;
    case Kind::AnyCharacter:
      return true;
    case Kind::Digit:
      return codePoint >= U'0' && codePoint <= U'9';
    default:
      break;
  }
  const char32_t folded = fold(codePoint);
  const bool isListed = std::any_of(
      ranges_.begin() + token.begin, ranges_.begin() + token.rangeEnd,
      [&](const Range& range) { return folded >= range.first && folded <= range.last; });
  return isListed != token.isNegated;
}

bool LikePattern::matches(TextView subject) const {
  // Most patterns are decided at one of the two ends.
  std::size_t at = 0;
  if (!matchesHead(subject, at)) return false;
  if (headEnd_ == tokens_.size()) return at == subject.size();
  std::size_t end = subject.size();
  return matchesTail(subject, at, end) && matchesMiddle(subject, at, end);
}

/// Whether the part before the first run matches the beginning; moves `at` past it.
bool LikePattern::matchesHead(TextView subject, std::size_t& at) const {
  for (std::size_t token = 0; token < headEnd_; ++token) {
    if (at == subject.size() || !matchesOne(tokens_[token], takeCodePoint(subject, at))) {
      return false;
    }
  }
  return true;
}

/// Whether the part after the last run matches the end, not before `at`; moves `end` before it.
bool LikePattern::matchesTail(TextView subject, std::size_t at, std::size_t& end) const {
  for (std::size_t token = tokens_.size(); token-- > tailBegin_;) {
    if (end <= at || !matchesOne(tokens_[token], takeCodePointBefore(subject, end))) return false;
  }
  return end >= at;
}

/// Whether the part between the first and the last run matches somewhere between `at` and `end`.
bool LikePattern::matchesMiddle(TextView subject, std::size_t at, std::size_t end) const {
  std::size_t token = headEnd_ + 1;
  // Positions for the next try if the part after a run does not match: the run then takes one more
  // character.
  std::size_t retryToken = token;
  std::size_t retryAt = at;
  while (token < tailBegin_) {
    if (tokens_[token].kind == Kind::AnyRun) {
      retryToken = ++token;
      retryAt = at;
      continue;
    }
    if (at == end) return false;  // a longer run would leave even less
    std::size_t next = at;
    if (matchesOne(tokens_[token], takeCodePoint(subject, next))) {
      ++token;
      at = next;
    } else {
      takeCodePoint(subject, retryAt);
      token = retryToken;
      at = retryAt;
    }
  }
  return true;
}

}  // namespace ombrelian
