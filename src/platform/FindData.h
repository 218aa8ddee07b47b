#pragma once

#include <cstdint>

#include "platform/SystemError.h"
#include "support/Date.h"

namespace ombrelian::platform {

/// Attribute bits with their values on Windows.
inline constexpr std::uint32_t kAttributeReadOnly = 0x1;
inline constexpr std::uint32_t kAttributeHidden = 0x2;
inline constexpr std::uint32_t kAttributeSystem = 0x4;
inline constexpr std::uint32_t kAttributeDirectory = 0x10;
inline constexpr std::uint32_t kAttributeArchive = 0x20;
inline constexpr std::uint32_t kAttributeTemporary = 0x100;
inline constexpr std::uint32_t kAttributeSparse = 0x200;
inline constexpr std::uint32_t kAttributeReparsePoint = 0x400;
inline constexpr std::uint32_t kAttributeCompressed = 0x800;
inline constexpr std::uint32_t kAttributeOffline = 0x1000;
inline constexpr std::uint32_t kAttributeNotIndexed = 0x2000;
inline constexpr std::uint32_t kAttributeEncrypted = 0x4000;

inline constexpr std::uint32_t kTagMountPoint = 0xA0000003;
inline constexpr std::uint32_t kTagSymbolicLink = 0xA000000C;

/// Identity of an open or listed object on this machine.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t index = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// Data of one entry of a folder, or of one object, read with a single system call. The name is
/// kept elsewhere, so that a walk that needs no names converts none.
struct FindData {
  std::uint32_t dwFileAttributes = 0;
  std::uint32_t nFileSizeHigh = 0;  // logical length; own length of a link; 0 for devices and pipes
  std::uint32_t nFileSizeLow = 0;
  std::uint32_t dwReserved0 = 0;  // reparse tag if the reparse bit is set, else 0
  FileTime ftCreationTime = 0;    // 0 if the file system stores none
  FileTime ftLastAccessTime = 0;
  FileTime ftLastWriteTime = 0;

  std::uint32_t linkCount = 0;     // 0 if it was not read
  std::uint32_t ownerId = 0;       // account number; POSIX only
  std::int64_t allocatedSize = 0;  // bytes on the disk
  FileIdentity identity;

  /// Any value except kSuccess: only the name and the kind of the entry could be read.
  ErrorCode statError = kSuccess;

  bool isFolder() const { return (dwFileAttributes & kAttributeDirectory) != 0; }
  bool isReparse() const { return (dwFileAttributes & kAttributeReparsePoint) != 0; }
};

}  // namespace ombrelian::platform
