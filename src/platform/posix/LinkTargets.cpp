#include "platform/posix/LinkTargets.h"

#include <errno.h>
#include <unistd.h>

#include "platform/Files.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Retried.h"

namespace ombrelian::platform {

Text linkText(int folder, const char* name, ErrorCode& error) {
  std::string buffer(256, '\0');
  for (;;) {
    const ssize_t got =
        retried([&] { return readlinkat(folder, name, buffer.data(), buffer.size()); });
    if (got < 0) {
      error = translateErrno(errno);
      return {};
    }
    if (std::size_t(got) < buffer.size()) {
      buffer.resize(std::size_t(got));
      error = kSuccess;
      return fromBytes(buffer);
    }
    buffer.resize(buffer.size() * 2);
  }
}

Text mountedSource(std::string mountPoint, ErrorCode& error) {
  while (mountPoint.size() > 1 && mountPoint.back() == '/')
    mountPoint.pop_back();
  const std::vector<Mount> mounts = readMounts();
  const Mount* const mount = findMount(mounts, mountPoint);
  error = mount != nullptr ? kSuccess : kFileNotFound;
  return mount != nullptr ? fromBytes(describeSource(*mount)) : Text();
}

Text GetReparseTarget(TextView path, std::uint32_t tag, ErrorCode& error) {
  if (tag == kTagMountPoint) return mountedSource(toBytes(path), error);
  using Target = std::pair<Text, ErrorCode>;
  const auto read = [path = toBytes(path)] {
    Target target;
    const PathAt at(path);
    target.second = translateErrno(at.error());
    if (at.error() == 0) target.first = linkText(at.folder(), at.name(), target.second);
    return target;
  };
  Target target = askPatiently(patientMountOf(path), read, Target(Text(), kTimeout));
  error = target.second;
  return std::move(target.first);
}

}  // namespace ombrelian::platform
