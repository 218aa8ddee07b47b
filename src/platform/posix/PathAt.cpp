#include "platform/posix/PathAt.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>

#include <algorithm>

#include "platform/posix/Retried.h"

namespace ombrelian::platform {

PathAt::PathAt(TextView path) : PathAt(toBytes(path)) {}

PathAt::PathAt(std::string path) : bytes_(std::move(path)) {
  while (bytes_.size() > 1 && bytes_.back() == '/')
    bytes_.pop_back();
  if (bytes_.size() >= PATH_MAX) openLongPart();
}

int PathAt::folder() const { return opened_ ? opened_.get() : AT_FDCWD; }

const char* PathAt::lastComponent() const {
  const auto slash = bytes_.rfind('/');
  if (slash == std::string::npos || slash + 1 == bytes_.size()) return bytes_.c_str();
  return bytes_.c_str() + slash + 1;
}

void PathAt::openLongPart() {
  while (bytes_.size() - nameAt_ >= PATH_MAX) {
    const auto cut = bytes_.rfind('/', nameAt_ + PATH_MAX - 2);
    if (cut == std::string::npos || cut <= nameAt_) {
      error_ = ENAMETOOLONG;
      return;
    }
    const std::string part = bytes_.substr(nameAt_, cut - nameAt_);
    Descriptor next(
        retried([&] { return openat(folder(), part.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    if (!next) {
      error_ = errno;
      return;
    }
    opened_ = std::move(next);
    nameAt_ = bytes_.find_first_not_of('/', cut);
  }
}

std::string takeComponent(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
  std::string component(path.substr(0, path.find('/')));
  path.remove_prefix(component.size());
  return component;
}

}  // namespace ombrelian::platform
