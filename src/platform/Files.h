#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian::platform {

/// Path separator of this system: "/" or "\".
extern const char16_t kNativeSeparator;

// Paths may have any length and may contain any name that fromBytes can make.

/// Reads the data of the object `path` itself: a link is not followed, and a trailing separator is
/// ignored. On Windows the last component may contain wildcards.
ErrorCode FindFirstFileW(TextView path, FindData& data);

/// The same as FindFirstFileW, but a link is followed, and the data are those of its target.
ErrorCode GetFileInformation(TextView path, FindData& data);

/// Text of a symbolic link, or what is mounted on a mount point; `tag` is FindData::dwReserved0.
Text GetReparseTarget(TextView path, std::uint32_t tag, ErrorCode& error);

/// Renames `from` to `to` and replaces `to` if it exists. Both must be on one volume, unless the
/// system can copy by itself.
ErrorCode MoveFileExW(TextView from, TextView to);

/// Makes a folder; kAlreadyExists if the name is taken.
ErrorCode CreateDirectoryW(TextView path);

/// Lets its owner execute the file `path`, and nobody else open it.
ErrorCode AllowExecution(TextView path);

/// Whether this process may make and rename files in the folder `path`.
ErrorCode CheckFolderWritable(TextView path);

/// `path` with all links in it resolved; empty on failure.
Text GetFinalPathNameW(TextView path);

/// `path` made absolute with the current folder, without ".", "..", doubled or trailing separators.
/// If a link is before a "..", the existing objects decide what the path means; a link at the end
/// stays.
Text GetFullPathNameW(TextView path);

/// An open file. The destructor closes it and ignores errors; a caller that must know whether
/// everything was written calls CloseHandle.
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
  friend FileHandle OpenStandardOutput(ErrorCode&);
  friend FileHandle DuplicateHandle(const FileHandle&, ErrorCode&);
  friend ErrorCode FlushFileBuffers(FileHandle&);
  friend ErrorCode GetFileInformationByHandle(const FileHandle&, FindData&);
  friend ErrorCode LockFile(FileHandle&);
  friend std::string GetHandlePath(const FileHandle&, TextView);
  friend class FilePlace;

  /// Result of a call on the open file, which owns all its other data.
  template <class Call>
  ErrorCode ask(Call call) const;
  ErrorCode close();

  static constexpr std::intptr_t kNone = -1;
  std::intptr_t handle_ = kNone;
  std::optional<std::string> slowMount_;  // mount point of the file if calls on it may never return
};

inline constexpr int kCreateNew = 1;     // opens for writing; kAlreadyExists if the name is taken
inline constexpr int kOpenExisting = 3;  // opens for reading and writing in place
inline constexpr int kOpenAppend = 4;    // opens for writing at the end; makes a missing file
inline constexpr int kOpenRead = 5;      // opens for reading

/// Opens or makes a file, and does not wait for the other end of a pipe. The file mask of the
/// process decides who may read a new file. A folder can be opened with kOpenRead for LockFile
/// alone.
FileHandle CreateFileW(TextView path, int disposition, ErrorCode& error);

/// The standard output of the process.
FileHandle OpenStandardOutput(ErrorCode& error);

/// A second handle of the open file. Both share a lock, which ends when both are closed.
FileHandle DuplicateHandle(const FileHandle& file, ErrorCode& error);

/// Waits until all that was written is on the disk. Success also if the file system cannot say so.
ErrorCode FlushFileBuffers(FileHandle& file);

/// Reads the data of the open file.
ErrorCode GetFileInformationByHandle(const FileHandle& file, FindData& data);

/// Locks the open file or folder until it is closed, without waiting. kSharingViolation: another
/// handle holds the lock. Only callers of this function respect the lock, and some file systems
/// have none.
ErrorCode LockFile(FileHandle& file);

/// Writes all of `bytes`, or returns an error.
ErrorCode WriteFile(FileHandle& file, std::string_view bytes);

/// Reads up to `size` bytes; `got` is 0 at the end of the file.
ErrorCode ReadFile(FileHandle& file, char* buffer, std::size_t size, std::size_t& got);

/// A path with which the open file `file` can be opened again, even if it has no name; `path` is
/// its own path. Valid while `file` is open.
std::string GetHandlePath(const FileHandle& file, TextView path);

/// Closes the file. Some file systems report only here that the written data did not reach the
/// disk.
ErrorCode CloseHandle(FileHandle& file);

}  // namespace ombrelian::platform
