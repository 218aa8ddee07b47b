#pragma once

#include "platform/Files.h"
#include "support/Error.h"

namespace ombrelian::platform {

/// A file that replaces its target only when it is complete. Until then it has no name, or, where
/// the file system requires one, a temporary name in the folder of the target. An older file at the
/// target does not change before commit(). Without commit() nothing remains, even if the process is
/// killed; a file with a temporary name then remains until the next file is opened in that folder.
class ReplacingFile {
 public:
  ReplacingFile() = default;
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /// Checks whether a file could be placed at `target` (absolute) now: its folder must exist and be
  /// writable, and an existing object of that name must be a file.
  static Failure check(TextView target);

  /// Begins the file. A link at `target` is kept, and the target of the link is replaced.
  Failure open(TextView target);

  /// Gives the file the access rights of the file that it replaces, if there is one. Call it after
  /// open().
  void keepAccess();

  /// After a failed write, every later write returns the same failure, and commit() replaces
  /// nothing.
  Failure write(std::string_view bytes);

  /// Closes the file and replaces the target with it.
  Failure commit();

 private:
  template <class Take>
  ErrorCode takeName(Take take);
  ErrorCode create(TextView path);
  ErrorCode hold(TextView path);
  ErrorCode nameFile();
  ErrorCode replaceTarget();
  void discard();

  FileHandle file_;
  FileHandle hold_;  // the same file with its lock; stays open until the file has its name
  Text target_;
  Text temporary_;  // empty: the file has no name, or there is none
  Failure failure_;
};

}  // namespace ombrelian::platform
