#pragma once

#include "platform/Files.h"
#include "support/Error.h"

namespace ombrelian::platform {

/// A file that takes the place of its target only when it is whole: it is written under another
/// name in the target's folder and renamed at the end. Until then an older file of the target's
/// name stays as it is; without commit() nothing remains.
class ReplacingFile {
 public:
  ReplacingFile() = default;
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /// Whether a file could be put at `target` (absolute) now, as far as that can be known: its
  /// folder is there and can be written, and what has the name now is a file.
  static Failure check(TextView target);

  /// Begins the file; a link at `target` is kept, and what it leads to is replaced.
  Failure open(TextView target);

  /// Gives the file, after open(), the access rights of the one that it replaces, if there is one.
  void keepAccess();

  /// Paths by which a library that opens files by itself can write the file under way instead of
  /// write(), and put temporary files beside it; valid from open() to commit().
  std::string libraryPath() const { return GetHandlePath(file_, temporary_); }
  std::string libraryFolder();

  /// Once a write failed, every later one says the same and commit() puts nothing in place.
  Failure write(std::string_view bytes);

  /// Puts the file in place.
  Failure commit();

 private:
  void discard();

  platform::FileHandle file_;
  platform::FileHandle folder_;  // open while a library needs it
  Text target_;
  Text temporary_;  // empty: nothing to remove
  Failure failure_;
};

}  // namespace ombrelian::platform
