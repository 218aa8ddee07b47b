#pragma once

#include "platform/FilePlace.h"
#include "support/Error.h"

namespace ombrelian::platform {

/// Who may open a file that was written.
enum class FileAccess {
  AsBefore,   // as FilePlace::giveAccess describes, for reports
  OwnersOnly  // only this user, for files of the program itself; only own files are replaced
};

/// A file that replaces its target only when it is complete and on the disk. Until then it has no
/// name, or, where the file system requires one, a temporary name in the folder of the target. An
/// older file at the target does not change before commit(). Without commit() nothing remains, even
/// if the process is killed; a file with a temporary name then remains until the next file is
/// opened in that folder. The folder is opened once, and only trusted links are followed, see
/// FilePlace.
class ReplacingFile {
 public:
  ReplacingFile() = default;
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /// Checks whether a file could be placed at `target` (absolute) now: its folder must exist and be
  /// writable, and an existing object of that name must be a file.
  static Failure check(TextView target);

  /// Whether there is a file at `target` to which this user must not write. It can be replaced
  /// nevertheless, because only the folder decides about that.
  static bool isProtected(TextView target);

  /// Begins the file. A trusted link at `target` is kept, and the target of the link is replaced.
  Failure open(TextView target, FileAccess access = FileAccess::AsBefore);

  /// After a failed write, every later write returns the same failure, and commit() replaces
  /// nothing.
  Failure write(std::string_view bytes);

  /// Waits until the file is on the disk, closes it and replaces the target with it. For files of
  /// the program itself, the new name is on the disk too.
  Failure commit();

 private:
  template <class Take>
  ErrorCode takeName(Take take);
  Failure lookAt(TextView target);
  ErrorCode begin();
  ErrorCode create(TextView name);
  ErrorCode hold();
  ErrorCode finish();
  ErrorCode nameFile();
  ErrorCode replaceTarget();
  void discard();

  FilePlace place_;
  FileAccess access_ = FileAccess::AsBefore;
  FileHandle file_;
  FileHandle hold_;  // the same file with its lock; stays open until the file has its name
  Text temporary_;   // empty: the file has no name, or there is none
  Failure failure_;
};

}  // namespace ombrelian::platform
