#include "tests/testing/Faults.h"

#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstring>
#include <mutex>
#include <vector>

namespace ombrelian::testing {
namespace {

struct Active {
  Fault fault;
  int seen = 0;
  int hits = 0;
  bool isOn = true;
};

std::vector<Active>& actives() {
  static std::vector<Active> list;
  return list;
}

/// Several threads use the faults while a test sets and removes them.
std::mutex& guard() {
  static std::mutex mutex;
  return mutex;
}

/// The error with which the call must fail; 0: the call is executed.
int faultFor(Call call, const char* name) {
  std::unique_lock lock(guard());
  for (Active& active : actives()) {
    const Fault& fault = active.fault;
    if (!active.isOn || fault.call != call) continue;
    if (!fault.name.empty() && (name == nullptr || !std::strstr(name, fault.name.c_str())))
      continue;
    if (fault.exceptThread == gettid()) continue;
    if (active.seen++ < fault.skip || active.hits >= fault.times) continue;
    ++active.hits;
    const Fault found = fault;
    lock.unlock();
    if (found.meanwhile) found.meanwhile();
    return found.error;
  }
  return 0;
}

/// Returns -1 with errno set if the call must fail; otherwise the result of `real`.
template <class Real>
auto guarded(Call call, const char* name, Real real) -> decltype(real()) {
  if (const int error = faultFor(call, name); error != 0) {
    errno = error;
    return -1;
  }
  return real();
}

}  // namespace

ScopedFault::ScopedFault(Fault fault) : slot_(actives().size()) {
  const std::lock_guard lock(guard());
  actives().push_back({std::move(fault)});
}

ScopedFault::~ScopedFault() {
  const std::lock_guard lock(guard());
  actives()[slot_].isOn = false;
  while (!actives().empty() && !actives().back().isOn)
    actives().pop_back();
}

int ScopedFault::hits() const {
  const std::lock_guard lock(guard());
  return actives()[slot_].hits;
}

}  // namespace ombrelian::testing

using ombrelian::testing::Call;
using ombrelian::testing::guarded;

extern "C" {

int __real_openat(int folder, const char* name, int flags, ...);
ssize_t __real_getdents64(int fd, void* buffer, size_t size);
int __real_statx(int folder, const char* name, int flags, unsigned mask, struct statx* told);
ssize_t __real_write(int fd, const void* bytes, size_t size);
int __real_close(int fd);
int __real_renameat(int fromFolder, const char* from, int toFolder, const char* to);
int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags);
int __real_mkdirat(int folder, const char* name, mode_t mode);
int __real_unlinkat(int folder, const char* name, int flags);
int __real_fdatasync(int fd);
int __real_fsync(int fd);
int __real_fchmodat(int folder, const char* name, mode_t mode, int flags);

int __wrap_openat(int folder, const char* name, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return guarded(Call::Openat, name, [&] { return __real_openat(folder, name, flags, mode); });
}

ssize_t __wrap_getdents64(int fd, void* buffer, size_t size) {
  return guarded(Call::Getdents, nullptr, [&] { return __real_getdents64(fd, buffer, size); });
}

int __wrap_statx(int folder, const char* name, int flags, unsigned mask, struct statx* told) {
  return guarded(Call::Statx, name, [&] { return __real_statx(folder, name, flags, mask, told); });
}

ssize_t __wrap_write(int fd, const void* bytes, size_t size) {
  return guarded(Call::Write, nullptr, [&] { return __real_write(fd, bytes, size); });
}

int __wrap_close(int fd) {
  const int result = __real_close(fd);
  return guarded(Call::Close, nullptr, [&] { return result; });
}

int __wrap_renameat(int fromFolder, const char* from, int toFolder, const char* to) {
  return guarded(Call::Renameat, to,
                 [&] { return __real_renameat(fromFolder, from, toFolder, to); });
}

int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags) {
  return guarded(Call::Renameat2, to,
                 [&] { return __real_renameat2(fromFolder, from, toFolder, to, flags); });
}

int __wrap_mkdirat(int folder, const char* name, mode_t mode) {
  return guarded(Call::Mkdirat, name, [&] { return __real_mkdirat(folder, name, mode); });
}

int __wrap_unlinkat(int folder, const char* name, int flags) {
  return guarded(Call::Unlinkat, name, [&] { return __real_unlinkat(folder, name, flags); });
}

int __wrap_fdatasync(int fd) {
  return guarded(Call::Fdatasync, nullptr, [&] { return __real_fdatasync(fd); });
}

int __wrap_fsync(int fd) {
  return guarded(Call::Fsync, nullptr, [&] { return __real_fsync(fd); });
}

int __wrap_fchmodat(int folder, const char* name, mode_t mode, int flags) {
  return guarded(Call::Fchmodat, name, [&] { return __real_fchmodat(folder, name, mode, flags); });
}

}  // extern "C"
