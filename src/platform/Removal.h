#pragma once

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// An object as a list or the tree shows it, so that nothing that took its place meanwhile is
/// touched.
struct ShownObject {
  Text path;  // absolute, without final separator

  /// So many units of `path` may lead over links: those of the source, and what a walk entered. No
  /// folder behind them may be a link. npos: all of them may.
  std::size_t linksUpTo = Text::npos;

  /// Identity of the object itself, also of a link; index 0: unknown, so that nothing is compared.
  FileIdentity identity = {};
};

// A link is removed, never its target. kObjectReplaced: another object is in the object's
// place. kIsMountPoint: a file system is mounted there.

/// Removes one file or link.
ErrorCode DeleteFileW(const ShownObject& object);

/// Removes one empty folder.
ErrorCode RemoveDirectoryW(const ShownObject& object);

/// While it lives, this process may remove `object` as far as rights can be had: the folder that it
/// lies in is made writable, and its mode is put back at the end.
class ForcedRights {
 public:
  explicit ForcedRights(const ShownObject& object);
  ~ForcedRights();
  ForcedRights(const ForcedRights&) = delete;
  ForcedRights& operator=(const ForcedRights&) = delete;

  /// kSuccess too where there was nothing to change.
  ErrorCode error() const { return error_; }

 private:
  static constexpr std::intptr_t kNone = -1;
  std::intptr_t folder_ = kNone;
  std::uint32_t mode_ = 0;
  ErrorCode error_ = kSuccess;
};

/// Follows the removal of a folder.
class RemovalProgress {
 public:
  virtual ~RemovalProgress() = default;

  /// Called at every object, with the number of objects removed so far; false ends the removal.
  virtual bool goOn(std::uint64_t files, std::uint64_t folders) = 0;

  /// Called where an object stays, and with it the folders above it; the removal goes on.
  virtual void failed(TextView path, ErrorCode error) = 0;
};

/// What came of the removal of a folder.
struct Removal {
  bool isGone = false;
  bool wasStopped = false;
  std::uint64_t files = 0;  // removed objects that are no folders, links included
  std::uint64_t folders = 0;
};

/// Removes a folder with all that it holds, or a link to a folder alone, at any depth and without
/// ever crossing a mount point. Folders that lack the rights get them for the moment. One that is
/// not there counts as gone.
Removal RemoveTree(const ShownObject& folder, RemovalProgress& progress);

// The recycle bin.

inline constexpr ErrorCode kShellErrorOnDestination =
    0x10000;  // added to a system error that the bin caused

/// Moves an object to the recycle bin of its file system, or of this user if both share one. It is
/// never copied and never deleted. `detail` tells which folder of the bin failed; empty: none did.
/// Also answers with the codes of ShellCodes.h: for the root of all, an object without the rights
/// to move it, one that lies in the bin or holds it (with `detail` the bin). kIsMountPoint too for
/// a folder that something is mounted in; kNotSameDevice: no bin can take the object as it is.
ErrorCode RecycleObject(const ShownObject& object, Text& detail);

}  // namespace ombrelian::platform
