#pragma once

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// An object as a list or the tree shows it. With these data, an object that took its place
/// meanwhile is not touched.
struct ShownObject {
  Text path;  // absolute, without final separator

  /// Length of the first part of `path`, in units, that may contain links: the part with the source
  /// and with the links that a walk entered. No folder after this part may be a link. npos: the
  /// whole path may contain links.
  std::size_t linksUpTo = Text::npos;

  /// Identity of the object itself, also if it is a link; index 0: unknown, so nothing is compared.
  FileIdentity identity = {};
};

// A link is removed, never its target. kObjectReplaced: another object is at the path now.
// kIsMountPoint: a file system is mounted there.

/// Removes one file or link.
ErrorCode DeleteFileW(const ShownObject& object);

/// Removes one empty folder.
ErrorCode RemoveDirectoryW(const ShownObject& object);

/// Gives this process the right to remove `object`, if that is possible: the constructor makes the
/// folder of the object writable, and the destructor restores its mode.
class ForcedRights {
 public:
  explicit ForcedRights(const ShownObject& object);
  ~ForcedRights();
  ForcedRights(const ForcedRights&) = delete;
  ForcedRights& operator=(const ForcedRights&) = delete;

  /// Result of the change; also kSuccess if there was nothing to change.
  ErrorCode error() const { return error_; }

 private:
  static constexpr std::intptr_t kNone = -1;
  const Text path_;
  std::intptr_t folder_ = kNone;
  std::uint32_t mode_ = 0;
  ErrorCode error_ = kSuccess;
};

/// Receives the progress of the removal of a folder.
class RemovalProgress {
 public:
  virtual ~RemovalProgress() = default;

  /// Called for every object with the number of objects removed so far; false ends the removal.
  virtual bool goOn(std::uint64_t files, std::uint64_t folders) = 0;

  /// Called for an object that could not be removed, so that the folders above it stay as well; the
  /// removal continues.
  virtual void failed(TextView path, ErrorCode error) = 0;
};

/// Result of the removal of a folder.
struct Removal {
  bool isGone = false;
  bool wasStopped = false;
  std::uint64_t files = 0;  // removed objects that are not folders, including links
  std::uint64_t folders = 0;
};

/// Removes a folder with all its content, at any depth, and never crosses a mount point. Of a link
/// to a folder, only the link is removed. Folders without the necessary rights get them for the
/// time of the removal. A folder that does not exist counts as gone.
Removal RemoveTree(const ShownObject& folder, RemovalProgress& progress);

// The recycle bin.

inline constexpr ErrorCode kShellErrorOnDestination =
    0x10000;  // bit that is added to a system error that the bin caused

/// Moves an object to the recycle bin of its file system, or to the bin in the home of this user if
/// that is on the same file system. The object is never copied and never deleted. `detail` is the
/// folder of the bin that caused the error; empty: no such folder. The result may also be a code of
/// ShellCodes.h: for the root folder "/", for an object that this user may not move, and for an
/// object that is in the bin or contains it (`detail` is then the bin). kIsMountPoint is also
/// returned for a folder with a mount point inside. kNotSameDevice: no bin can take the object
/// without a copy.
ErrorCode RecycleObject(const ShownObject& object, Text& detail);

}  // namespace ombrelian::platform
