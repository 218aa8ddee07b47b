#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace ombrelian::testing {

/// Sets the time zone while it lives.
class ScopedZone {
 public:
  explicit ScopedZone(const char* zone) {
    const char* const old = getenv("TZ");
    had_ = old != nullptr;
    if (had_) old_ = old;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ScopedZone() {
    had_ ? setenv("TZ", old_.c_str(), 1) : unsetenv("TZ");
    tzset();
  }
  ScopedZone(const ScopedZone&) = delete;
  ScopedZone& operator=(const ScopedZone&) = delete;

 private:
  bool had_ = false;
  std::string old_;
};

}  // namespace ombrelian::testing
