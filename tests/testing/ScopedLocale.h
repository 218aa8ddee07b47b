#pragma once

#include "platform/Locale.h"
#include "tests/testing/ScopedVariable.h"

namespace ombrelian {

/// Puts a locale in force for the life of the object, by an environment variable.
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
  std::optional<testing::ScopedVariable> variable_;
};

}  // namespace ombrelian
