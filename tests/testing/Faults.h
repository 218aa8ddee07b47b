#pragma once

#include <errno.h>

#include <climits>
#include <functional>
#include <string>

namespace ombrelian::testing {

/// The system calls that a test can make fail; the linker routes the program's calls here.
enum class Call {
  Openat,
  Getdents,
  Statx,
  Write,
  Close,
  Renameat,
  Renameat2,
  Mkdirat,
  Unlinkat,
  Fchmodat
};

/// Which calls fail, and how.
struct Fault {
  Call call;
  std::string name = {};  // part of the name argument; empty: any. Calls on descriptors have none
  int error = 0;          // errno that the call answers with; 0: it goes through and counts
  int skip = 0;           // matching calls that go through first
  int times = INT_MAX;    // calls that fail after those
  int exceptThread = 0;   // whose calls go through, as gettid() tells it; 0: none's
  std::function<void()> meanwhile = {};  // done just before the call, as another program may
};

/// Lets calls fail while it lives.
class ScopedFault {
 public:
  explicit ScopedFault(Fault fault);
  ~ScopedFault();
  ScopedFault(const ScopedFault&) = delete;
  ScopedFault& operator=(const ScopedFault&) = delete;

  /// Calls that failed so far.
  int hits() const;

 private:
  std::size_t slot_;
};

}  // namespace ombrelian::testing
