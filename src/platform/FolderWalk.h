#pragma once

#include <functional>
#include <memory>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

inline constexpr int kHelpersByDevice = -1;
inline constexpr int kMaxHelpers = 64;

/// The folders that a walk is going to enter.
enum class WalkReach { Tree, OneFolder };

/// Whether the walk will not enter the folder `name` with the full path `path`. Several threads
/// call it at the same time.
using LeavesOut = std::function<bool(TextView name, TextView path)>;

/// Lists the folders of one source in the order of a depth-first walk. The open folders are a
/// stack, and the innermost folder is read. The depth has no limit, the number of descriptors has
/// one, and no step costs more at a greater depth.
///
/// Entries come in the order of the file system, without "." and "..". Helpers, which are threads
/// of the walk, may read the next folders ahead; the number of helpers never changes the result.
/// The class is not copyable and is used by one thread. Its calls obey the Patience of that thread.
class FolderWalk {
 public:
  /// `helpers` is the number of threads that read ahead; kHelpersByDevice: as many as are useful on
  /// the device of the source. OneFolder: nothing below the source is read ahead, and neither is
  /// what `leavesOut` names; the entries themselves are listed in any case.
  explicit FolderWalk(int helpers = kHelpersByDevice, WalkReach reach = WalkReach::Tree,
                      LeavesOut leavesOut = {});
  ~FolderWalk();
  FolderWalk(const FolderWalk&) = delete;
  FolderWalk& operator=(const FolderWalk&) = delete;

  /// Opens the folder `path` (no trailing wildcard; any length) as the outermost level and follows
  /// links. On failure there is no level.
  ErrorCode openSource(TextView path);

  /// Opens the folder that is the current entry as a new innermost level. A reparse folder is
  /// followed. On failure no level is added. kLinkLoop: the folder is one of its own ancestors,
  /// those above the source included; kNotSupported: a file system that holds no files of its own,
  /// such as proc, is mounted there.
  ErrorCode goIn();

  /// The next entry of the innermost level; null at its end. Valid until the next call of this.
  const FindData* nextEntry();

  /// Why the innermost level ended: kSuccess at its real end or if the folder was removed
  /// meanwhile, else the error that ended the listing early.
  ErrorCode listError() const;

  /// Closes the innermost level. The current entry is then the closed folder, and only nextEntry()
  /// may be called next.
  void goOut();

  /// Name of the current entry. It is converted at the first call, which must happen before the
  /// entry is opened.
  TextView name();

  /// Target of the current entry, which is a reparse folder: the text of the link, or what is
  /// mounted there. `path` is the full path of the entry.
  Text reparseTarget(TextView path, ErrorCode& error) const;

  /// Whether a file system did not answer as long as the Patience of this thread allowed. All calls
  /// then fail with kTimeout or find no entry, and goOut() only removes the levels.
  bool hasGivenUp() const;

  /// Number of open levels.
  std::size_t depth() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

/// Whether a walk that comes to the reparse folder at `path` (absolute) would enter it: kSuccess,
/// or the error that FolderWalk::goIn would return.
ErrorCode CheckReparseFolder(TextView path);

}  // namespace ombrelian::platform
