#include "platform/posix/Stat.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/stat.h>
#include <sys/sysmacros.h>

#include "platform/posix/Retried.h"

namespace ombrelian::platform {
namespace {

constexpr unsigned kWanted = STATX_BASIC_STATS | STATX_BTIME;
constexpr std::int64_t kBlockSize = 512;  // bytes for each unit of st_blocks, on every file system

FileTime toFileTime(const struct statx_timestamp& time) {
  return fileTimeFromUnix(time.tv_sec, time.tv_nsec);
}

std::uint64_t deviceOf(const struct statx& told) {
  return makedev(told.stx_dev_major, told.stx_dev_minor);
}

bool isHiddenName(const char* name) { return name[0] == '.' && name[1] != '\0'; }

/// The attributes that both files and folders can have.
std::uint32_t commonAttributes(const struct statx& told, const char* name) {
  std::uint32_t attributes = 0;
  if (isHiddenName(name)) attributes |= kAttributeHidden;
  if ((told.stx_attributes & STATX_ATTR_COMPRESSED) != 0) attributes |= kAttributeCompressed;
  if ((told.stx_attributes & STATX_ATTR_ENCRYPTED) != 0) attributes |= kAttributeEncrypted;
  if ((told.stx_mode & 0222) == 0 || (told.stx_attributes & STATX_ATTR_IMMUTABLE) != 0) {
    attributes |= kAttributeReadOnly;
  }
  return attributes;
}

bool leadsToFolder(int folder, const char* name) {
  struct statx told;
  const auto ask = [&] { return statx(folder, name, AT_NO_AUTOMOUNT, STATX_TYPE, &told); };
  return retried(ask) == 0 && S_ISDIR(told.stx_mode);
}

bool isMountPoint(const struct statx& told, std::uint64_t parentDevice) {
  if ((told.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0) {
    return (told.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  }
  // On layered file systems a file may be on another device than its folder.
  return S_ISDIR(told.stx_mode) && parentDevice != 0 && deviceOf(told) != parentDevice;
}

void setSize(std::uint64_t size, FindData& data) {
  data.nFileSizeHigh = std::uint32_t(size >> 32);
  data.nFileSizeLow = std::uint32_t(size);
}

void setKind(const struct statx& told, int folder, const char* name, std::uint64_t parentDevice,
             FindData& data) {
  if (S_ISDIR(told.stx_mode)) data.dwFileAttributes |= kAttributeDirectory;
  if (isMountPoint(told, parentDevice)) {
    data.dwFileAttributes |= kAttributeReparsePoint;
    data.dwReserved0 = kTagMountPoint;
  } else if (S_ISREG(told.stx_mode)) {
    setSize(told.stx_size, data);
    if (std::uint64_t(data.allocatedSize) < told.stx_size) {
      data.dwFileAttributes |= kAttributeSparse;
    }
  } else if (S_ISLNK(told.stx_mode)) {
    setSize(told.stx_size, data);
    data.dwFileAttributes |= kAttributeReparsePoint;
    data.dwReserved0 = kTagSymbolicLink;
    if (leadsToFolder(folder, name)) data.dwFileAttributes |= kAttributeDirectory;
  } else if (!S_ISDIR(told.stx_mode)) {  // a socket, a pipe or a device holds no bytes of its own
    data.dwFileAttributes |= kAttributeSystem;
  }
}

}  // namespace

int readFindData(int folder, const char* name, int flags, std::uint64_t parentDevice,
                 FindData& data) {
  struct statx told;
  const auto ask = [&] { return statx(folder, name, flags | AT_NO_AUTOMOUNT, kWanted, &told); };
  if (retried(ask) != 0) return errno;
  data = FindData();
  data.dwFileAttributes = commonAttributes(told, name);
  data.allocatedSize = std::int64_t(told.stx_blocks) * kBlockSize;
  data.ftLastWriteTime = toFileTime(told.stx_mtime);
  data.ftLastAccessTime = toFileTime(told.stx_atime);
  // A file system that has a field for the creation time but never filled it reports 0.
  const bool wasBorn = told.stx_btime.tv_sec != 0 || told.stx_btime.tv_nsec != 0;
  if ((told.stx_mask & STATX_BTIME) != 0 && wasBorn) {
    data.ftCreationTime = toFileTime(told.stx_btime);
  }
  data.linkCount = told.stx_nlink;
  data.ownerId = told.stx_uid;
  data.identity = {deviceOf(told), told.stx_ino};
  setKind(told, folder, name, parentDevice, data);
  return 0;
}

int readIdentity(int fd, FileIdentity& identity) {
  struct statx told;
  if (retried([&] { return statx(fd, "", AT_EMPTY_PATH, STATX_INO, &told); }) != 0) return errno;
  identity = {deviceOf(told), told.stx_ino};
  return 0;
}

void fillFromKind(unsigned char kind, const char* name, FindData& data) {
  data = FindData();
  if (isHiddenName(name)) data.dwFileAttributes |= kAttributeHidden;
  if (kind == DT_DIR) {
    data.dwFileAttributes |= kAttributeDirectory;
  } else if (kind == DT_LNK) {
    data.dwFileAttributes |= kAttributeReparsePoint;
    data.dwReserved0 = kTagSymbolicLink;
  } else if (kind != DT_REG && kind != DT_UNKNOWN) {
    data.dwFileAttributes |= kAttributeSystem;
  }
}

}  // namespace ombrelian::platform
