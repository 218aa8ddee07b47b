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
  Fchmodat,
  Fdatasync,
  Fsync
};

/// A kind of call that fails, and the error.
struct Fault {
  Call call;
  std::string name = {};  // part of the name argument; empty: any. Calls on descriptors: none
  int error = 0;          // errno of the call; 0: the call is executed and counted
  int skip = 0;           // number of matching calls that succeed first
  int times = INT_MAX;    // number of calls that fail after those
  int exceptThread = 0;   // id of a thread whose calls succeed, as from gettid(); 0: no thread
  std::function<void()> meanwhile = {};  // a change by another program, made just before the call
};

/// Makes calls fail during its life.
class ScopedFault {
 public:
  explicit ScopedFault(Fault fault);
  ~ScopedFault();
  ScopedFault(const ScopedFault&) = delete;
  ScopedFault& operator=(const ScopedFault&) = delete;

  /// Number of failed calls so far.
  int hits() const;

 private:
  std::size_t slot_;
};

}  // namespace ombrelian::testing
