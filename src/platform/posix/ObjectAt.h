#pragma once

#include <string>

#include "platform/Removal.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// Place of a shown object: its open folder and its name in that folder. Later changes of the path
/// have no effect.
class ObjectAt {
 public:
  explicit ObjectAt(const ShownObject& object);

  /// Why the folder could not be opened; kObjectReplaced: a folder of the path is now a link.
  ErrorCode error() const { return error_; }

  /// The folder, opened with O_PATH.
  int folder() const { return folder_.get(); }
  const char* name() const { return name_.c_str(); }

  /// Reads the data of the object itself; kObjectReplaced: it is not the object that was shown.
  /// Call it only if error() is kSuccess.
  ErrorCode read(FindData& data) const;

 private:
  ErrorCode open(const ShownObject& object);

  const FileIdentity identity_;
  Descriptor folder_;
  std::string name_;
  ErrorCode error_ = kSuccess;
};

/// Renames an object and replaces nothing; returns 0, EEXIST if the name is taken, or another
/// errno.
int renameToNew(int fromFolder, const char* from, int toFolder, const char* to);

/// Changes the access mode of an open folder, also of one opened with O_PATH; false: errno contains
/// the error.
bool changeMode(int folder, unsigned mode);

}  // namespace ombrelian::platform
