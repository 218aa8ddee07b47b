#include "filters/LikePattern.h"

#include <algorithm>

namespace ombrelian {
namespace {

/// Takes the code point at `at` and moves on; a lone surrogate is one by itself.
char32_t takeCodePoint(TextView text, std::size_t& at) {
  const char16_t unit = text[at++];
  const bool isPair = unit >= 0xD800 && unit <= 0xDBFF && at < text.size() && text[at] >= 0xDC00 &&
                      text[at] <= 0xDFFF;
  if (!isPair) return unit;
  return 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (char32_t(text[at++]) - 0xDC00);
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
}

/// `at` stands behind the "["; false if the set is malformed.
bool LikePattern::compileSet(std::size_t& at) {
  const std::size_t close = text_.find(u']', at);
  if (close == Text::npos) return false;
  const TextView content = TextView(text_).substr(at, close - at);
  at = close + 1;
  if (content.empty()) return true;  // "[]" stands for nothing
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
  std::size_t token = 0;
  std::size_t at = 0;
  // Where to go on when what follows the last "*" does not fit: that run takes one more.
  std::size_t retryToken = tokens_.size() + 1;
  std::size_t retryAt = 0;
  for (;;) {
    if (token < tokens_.size() && tokens_[token].kind == Kind::AnyRun) {
      retryToken = ++token;
      retryAt = at;
      continue;
    }
    if (at == subject.size() && token == tokens_.size()) return true;
    std::size_t next = at;
    if (at < subject.size() && token < tokens_.size() &&
        matchesOne(tokens_[token], takeCodePoint(subject, next))) {
      ++token;
      at = next;
      continue;
    }
    if (retryToken > tokens_.size() || retryAt == subject.size()) return false;
    takeCodePoint(subject, retryAt);
    token = retryToken;
    at = retryAt;
  }
}

}  // namespace ombrelian
