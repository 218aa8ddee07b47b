#pragma once

#include <map>

#include "support/Translate.h"

namespace ombrelian::testing {

/// The texts of a language, in use during the life of the object.
class FewTexts : public LanguageTexts {
 public:
  explicit FewTexts(std::map<int, Text> texts) : texts_(std::move(texts)) {
    setLanguageTexts(this);
  }
  ~FewTexts() { setLanguageTexts(nullptr); }
  Text text(int id) const override {
    const auto found = texts_.find(id);
    return found == texts_.end() ? Text() : found->second;
  }

 private:
  const std::map<int, Text> texts_;
};

}  // namespace ombrelian::testing
