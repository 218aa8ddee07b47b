#include "platform/posix/Mounts.h"
#include "platform/posix/CMemory.h"

#include <errno.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace ombrelian::platform {
namespace {

constexpr std::string_view kPseudoTypes[] = {"autofs",
                                             "binder",
                                             "binfmt_misc",
                                             "bpf",
                                             "cgroup",
                                             "cgroup2",
                                             "configfs",
                                             "debugfs",
                                             "devpts",
                                             "devtmpfs",
                                             "efivarfs",
                                             "fusectl",
                                             "fuse.gvfsd-fuse",
                                             "fuse.lxcfs",
                                             "fuse.portal",
                                             "hugetlbfs",
                                             "mqueue",
                                             "nsfs",
                                             "nfsd",
                                             "pipefs",
                                             "proc",
                                             "pstore",
                                             "resctrl",
                                             "rpc_pipefs",
                                             "securityfs",
                                             "selinuxfs",
                                             "smackfs",
                                             "sockfs",
                                             "sysfs",
                                             "tracefs"};

constexpr std::string_view kNetworkTypes[] = {
    "9p",         "afs",         "ceph", "cifs",  "coda",  "nfs",       "nfs4",
    "fuse.sshfs", "fuse.rclone", "smb3", "smbfs", "ncpfs", "glusterfs", "fuse.glusterfs",
    "davfs",      "fuse.davfs2"};

template <class Names>
bool contains(const Names& names, const std::string& type) {
  return std::find(std::begin(names), std::end(names), type) != std::end(names);
}

/// Takes the next field of a line. A field ends at a blank. In the field, a blank, tab, newline or
/// backslash is written as \ooo.
std::string takeField(const char*& at) {
  std::string field;
  while (*at == ' ')
    ++at;
  while (*at != '\0' && *at != ' ' && *at != '\n') {
    if (at[0] == '\\' && at[1] >= '0' && at[1] <= '3' && at[2] != '\0' && at[3] != '\0') {
      field.push_back(char((at[1] - '0') << 6 | (at[2] - '0') << 3 | (at[3] - '0')));
      at += 4;
    } else {
      field.push_back(*at++);
    }
  }
  return field;
}

/// Format: "id parent major:minor root mountpoint options [optional...] - type source options".
bool parseLine(const char* line, Mount& mount) {
  takeField(line);
  takeField(line);
  const std::string device = takeField(line);
  const auto colon = device.find(':');
  if (colon == std::string::npos) return false;
  mount.device = makedev(unsigned(std::strtoul(device.c_str(), nullptr, 10)),
                         unsigned(std::strtoul(device.c_str() + colon + 1, nullptr, 10)));
  mount.root = takeField(line);
  mount.mountPoint = takeField(line);
  std::string field;
  do {
    field = takeField(line);
  } while (!field.empty() && field != "-");
  mount.type = takeField(line);
  mount.source = takeField(line);
  return !mount.type.empty();
}

}  // namespace

std::vector<Mount> readMounts(int* error) {
  std::vector<Mount> mounts;
  const CFile file = openForReading("/proc/self/mountinfo");
  if (error != nullptr) *error = file == nullptr ? errno : 0;
  if (file == nullptr) return mounts;
  CText line;
  std::size_t capacity = 0;
  const auto readLine = [&] {
    char* text = line.release();  // getline may move the memory
    const bool isRead = getline(&text, &capacity, file.get()) > 0;
    line.reset(text);
    return isRead;
  };
  while (readLine()) {
    Mount mount;
    if (parseLine(line.get(), mount)) mounts.push_back(std::move(mount));
  }
  return mounts;
}

const Mount* findMount(const std::vector<Mount>& mounts, const std::string& mountPoint) {
  const auto hit = std::find_if(mounts.rbegin(), mounts.rend(),
                                [&](const Mount& mount) { return mount.mountPoint == mountPoint; });
  return hit == mounts.rend() ? nullptr : &*hit;
}

const Mount* findMountHolding(const std::vector<Mount>& mounts, const std::string& path) {
  const Mount* best = nullptr;
  for (const Mount& mount : mounts) {
    if (!holds(mount.mountPoint, path)) continue;
    if (best == nullptr || mount.mountPoint.size() >= best->mountPoint.size()) best = &mount;
  }
  return best;
}

bool holds(std::string_view folder, std::string_view path) {
  if (folder == "/") return true;
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string describeSource(const Mount& mount) {
  return mount.root == "/" ? mount.source : mount.source + "[" + mount.root + "]";
}

bool isPseudoFileSystem(const std::string& type) { return contains(kPseudoTypes, type); }

bool isNetworkFileSystem(const std::string& type) { return contains(kNetworkTypes, type); }

}  // namespace ombrelian::platform
