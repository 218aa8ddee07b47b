#pragma once

#include <memory>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

inline constexpr int kHelpersByDevice = -1;
inline constexpr int kMaxHelpers = 64;

/// What a walk is going to enter.
enum class WalkReach { Tree, OneFolder };

/// Lists the folders of one source in the order of a depth-first walk: a stack of open folders, of
/// which the innermost is read. It goes to any depth with a bounded number of descriptors, and no
/// step costs more the deeper the walk is.
///
/// Entries come in the order of the file system, without "." and "..". Helpers, which are threads
/// of the walk, may read the folders that come next ahead; how many there are changes no answer.
/// Not copyable; used by one thread.
class FolderWalk {
 public:
  /// `helpers`: how many threads read ahead; kHelpersByDevice: as many as pay on the source's
  /// device. OneFolder: nothing below the source is read ahead.
  explicit FolderWalk(int helpers = kHelpersByDevice, WalkReach reach = WalkReach::Tree);
  ~FolderWalk();
  FolderWalk(const FolderWalk&) = delete;
  FolderWalk& operator=(const FolderWalk&) = delete;

  /// Opens the folder `path` (no trailing wildcard; any length) as the outermost level, following
  /// links. On failure there is no level.
  ErrorCode openSource(TextView path);

  /// Opens the folder that is the current entry as a new innermost level. A reparse folder is
  /// followed. On failure no level is added. kLinkLoop: the folder is one of its own ancestors,
  /// those above the source included; kNotSupported: a file system that holds no files of its own,
  /// such as proc, is mounted there.
  ErrorCode goIn();

  /// The next entry of the innermost level; null at its end. Valid until the next call of this.
  const FindData* nextEntry();

  /// Why the innermost level ended: kSuccess at its real end or when the folder was removed
  /// meanwhile, else what broke the listing off.
  ErrorCode listError() const;

  /// Closes the innermost level. The current entry is then the folder that was left, which only
  /// nextEntry() may be called for.
  void goOut();

  /// Name of the current entry; converted at the first call for it, which must come before the
  /// entry is opened.
  TextView name();

  /// Where the current entry, a reparse folder, leads: the link's text, or what is mounted there.
  /// `path` is the entry's full path.
  Text reparseTarget(TextView path, ErrorCode& error) const;

  /// Number of open levels.
  std::size_t depth() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace ombrelian::platform
