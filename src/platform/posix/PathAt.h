#pragma once

#include <string>
#include <string_view>

#include "platform/posix/Descriptor.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// A path of any length in the form for the *at system calls: a folder, and a path below it that is
/// short enough for the kernel.
class PathAt {
 public:
  /// Trailing separators are dropped, so that a link at the end is not followed.
  explicit PathAt(TextView path);
  explicit PathAt(std::string path);

  /// errno if a part of a long path could not be opened, else 0.
  int error() const { return error_; }

  int folder() const;
  const char* name() const { return bytes_.c_str() + nameAt_; }

  /// The last component alone; "/" for the root.
  const char* lastComponent() const;

 private:
  void openLongPart();

  std::string bytes_;
  std::size_t nameAt_ = 0;
  Descriptor opened_;
  int error_ = 0;
};

/// Removes the first component from `path` and returns it; empty: there is none.
std::string takeComponent(std::string_view& path);

}  // namespace ombrelian::platform
