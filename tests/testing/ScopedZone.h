#pragma once

#include <ctime>

#include "tests/testing/ScopedVariable.h"

namespace ombrelian::testing {

/// Sets the time zone during its life.
class ScopedZone {
 public:
  explicit ScopedZone(const char* zone) {
    variable_.emplace("TZ", zone);
    tzset();
  }
  ~ScopedZone() {
    variable_.reset();
    tzset();
  }

 private:
  std::optional<ScopedVariable> variable_;
};

}  // namespace ombrelian::testing
