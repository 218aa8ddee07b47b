#pragma once

#include "support/TextRules.h"

namespace ombrelian {

/// Lowers ASCII and a few other letters. With the Turkish option, capital I becomes a letter beyond
/// ASCII unless a dot above follows.
class TestRules : public TextRules {
 public:
  explicit TestRules(bool turkish = false) : turkish_(turkish) {}

  Text lower(TextView text) const override {
    Text result;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool dotted = i + 1 < text.size() && text[i + 1] == u'\u0307';
      if (turkish_ && text[i] == u'I') {
        result += dotted ? u'i' : u'\u0131';
        i += dotted ? 1 : 0;
      } else {
        result += text[i] == u'\u00C4' ? u'\u00E4' : asciiLower(text[i]);
      }
    }
    return result;
  }
  Text upper(TextView text) const override { return asciiUpper(text); }
  char32_t fold(char32_t codePoint) const override {
    return lower(Text(1, char16_t(codePoint)))[0];
  }
  int compare(TextView a, TextView b, bool binary) const override {
    return binary ? a.compare(b) : asciiLower(a).compare(asciiLower(b));
  }
  std::string sortKey(TextView text) const override { return toBytes(asciiLower(text)); }

 private:
  bool turkish_;
};

}  // namespace ombrelian
