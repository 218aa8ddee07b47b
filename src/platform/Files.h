#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// "/" or "\".
extern const char16_t kNativeSeparator;

// Paths may be of any length and hold any name that fromBytes can make.

/// Tells about the object `path` itself (a link is not followed, a trailing separator is ignored).
/// On Windows the last component may hold wildcards.
ErrorCode FindFirstFileW(TextView path, FindData& data);

/// The same as FindFirstFileW, but about the object that a link leads to.
ErrorCode GetFileInformation(TextView path, FindData& data);

/// Text of a symbolic link, or what is mounted on a mount point; `tag` as FindData::dwReserved0.
Text GetReparseTarget(TextView path, std::uint32_t tag, ErrorCode& error);

/// Replaces `to` if it exists; both on one volume, except where the system copies by itself.
ErrorCode MoveFileExW(TextView from, TextView to);

/// Makes a folder; kAlreadyExists if the name is taken.
ErrorCode CreateDirectoryW(TextView path);

/// Whether this process may make and rename files in the folder `path`.
ErrorCode CheckFolderWritable(TextView path);

/// `path` with every link on its way resolved; empty on failure.
Text GetFinalPathNameW(TextView path);

/// `path` made absolute by the present folder, without ".", "..", doubled or trailing separators.
/// Where a link lies before a "..", what exists decides what the path means.
Text GetFullPathNameW(TextView path);

/// An open file. Closes itself without a word; whoever must know that everything was written calls
/// CloseHandle.
class FileHandle {
 public:
  FileHandle() = default;
  FileHandle(FileHandle&& other) noexcept;
  FileHandle& operator=(FileHandle&& other) noexcept;
  ~FileHandle();

  bool isOpen() const { return handle_ != kNone; }

 private:
  friend FileHandle CreateFileW(TextView, int, ErrorCode&);
  friend ErrorCode WriteFile(FileHandle&, std::string_view);
  friend ErrorCode ReadFile(FileHandle&, char*, std::size_t, std::size_t&);
  friend ErrorCode CloseHandle(FileHandle&);
  friend ErrorCode CopyFileSecurity(TextView, FileHandle&);
  friend std::string GetHandlePath(const FileHandle&, TextView);

  static constexpr std::intptr_t kNone = -1;
  std::intptr_t handle_ = kNone;
};

inline constexpr int kCreateNew = 1;     // opens for writing; kAlreadyExists if the name is taken
inline constexpr int kOpenExisting = 3;  // opens for reading and writing in place
inline constexpr int kOpenAppend = 4;    // opens for writing behind the end; makes a missing file
inline constexpr int kOpenRead = 5;      // opens for reading
inline constexpr int kOpenFolder = 6;    // a folder, for GetHandlePath

/// A new file is readable by whom the process's file mask says.
FileHandle CreateFileW(TextView path, int disposition, ErrorCode& error);

/// Writes all of `bytes`, or says why not.
ErrorCode WriteFile(FileHandle& file, std::string_view bytes);

/// Reads up to `size` bytes; `got` 0 at the end.
ErrorCode ReadFile(FileHandle& file, char* buffer, std::size_t size, std::size_t& got);

/// Gives `file` the access rights of what `path` leads to, and its owner where this user may.
ErrorCode CopyFileSecurity(TextView path, FileHandle& file);

/// A path by which code that opens files by itself can open once more what `file` is open for, or
/// files in it if it is a folder; short whatever the length of `path`, its own. Valid while `file`
/// is open.
std::string GetHandlePath(const FileHandle& file, TextView path);

/// Some file systems tell only here that what was written did not reach the disk.
ErrorCode CloseHandle(FileHandle& file);

}  // namespace ombrelian::platform
