#pragma once

#include <string>

#include "platform/Removal.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// Where a shown object lies: its folder, open, and its name there. What happens to the path
/// afterwards does not matter.
class ObjectAt {
 public:
  explicit ObjectAt(const ShownObject& object);

  /// Why the folder could not be opened; kObjectReplaced: there is a link on the way that was none.
  ErrorCode error() const { return error_; }

  /// Opened with O_PATH.
  int folder() const { return folder_.get(); }
  const char* name() const { return name_.c_str(); }

  /// Asks about the object itself; kObjectReplaced: it is not the one that was shown. Only without
  /// error().
  ErrorCode read(FindData& data) const;

 private:
  ErrorCode open(const ShownObject& object);

  const FileIdentity identity_;
  Descriptor folder_;
  std::string name_;
  ErrorCode error_ = kSuccess;
};

/// Access mode of a folder that is open, even with O_PATH; false: errno tells why not.
bool changeMode(int folder, unsigned mode);

}  // namespace ombrelian::platform
