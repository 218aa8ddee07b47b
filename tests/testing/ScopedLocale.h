#pragma once

#include "platform/Locale.h"
#include "tests/testing/ScopedVariable.h"

namespace ombrelian {

/// Sets a locale in an environment variable during the life of the object.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name, const char* variable = "LC_ALL") {
    variable_.emplace(variable, name);
    platform::reloadLocale();
  }
  ~ScopedLocale() {
    variable_.reset();
    platform::reloadLocale();
  }

 private:
  testing::ScopedVariable language_{"LANGUAGE", ""};  // it would win over the locale
  std::optional<testing::ScopedVariable> variable_;
};

}  // namespace ombrelian
