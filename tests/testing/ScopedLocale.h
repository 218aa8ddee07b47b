#pragma once

#include <cstdlib>
#include <string>

#include "platform/Locale.h"

namespace ombrelian {

/// Puts a locale in force for the life of the object, by an environment variable.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name, const char* variable = "LC_ALL") : variable_(variable) {
    const char* const old = std::getenv(variable);
    had_ = old != nullptr;
    if (had_) old_ = old;
    setenv(variable, name, 1);
    platform::reloadLocale();
  }
  ~ScopedLocale() {
    had_ ? setenv(variable_, old_.c_str(), 1) : unsetenv(variable_);
    platform::reloadLocale();
  }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  const char* variable_;
  bool had_ = false;
  std::string old_;
};

}  // namespace ombrelian
