#include "platform/posix/SlowMounts.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "platform/Patience.h"
#include "platform/posix/CMemory.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/PathAt.h"

namespace ombrelian::platform {
namespace {

constexpr int kMostLinks = 40;  // the limit of the system

/// Types of file systems in networks and from other processes, beyond those of
/// isNetworkFileSystem.
constexpr std::string_view kSlowTypes[] = {"autofs",   "beegfs", "fuse",   "fuseblk",
                                           "gfs2",     "gpfs",   "lustre", "ocfs2",
                                           "orangefs", "pvfs2",  "vboxsf", "virtiofs"};

/// The mount points whose calls may never return. The table of mounts is read again only when the
/// kernel reports a change.
class SlowMounts {
 public:
  const std::vector<std::string>& points() {
    if (hasChanged()) read();
    return points_;
  }

  bool isAnyWithFiles() {
    points();
    return isAnyWithFiles_;
  }

 private:
  bool hasChanged() {
    // A child process may have mounts of its own, and so has a process with a new name space.
    struct stat names = {};
    stat("/proc/self/ns/mnt", &names);
    if (process_ != getpid() || names_ != names.st_ino) {
      process_ = getpid();
      names_ = names.st_ino;
      table_.reset(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
      return true;
    }
    pollfd change = {table_.get(), POLLPRI, 0};
    return !table_ || (poll(&change, 1, 0) > 0 && (change.revents & (POLLPRI | POLLERR)) != 0);
  }

  void read() {
    points_.clear();
    isAnyWithFiles_ = false;
    const std::vector<Mount> mounts = readMounts();
    for (const Mount& mount : mounts) {
      // Of several mounts at one place, only the last one is reached.
      if (mayHang(mount) && findMount(mounts, mount.mountPoint) == &mount) {
        points_.push_back(mount.mountPoint);
        isAnyWithFiles_ = isAnyWithFiles_ || !isPseudoFileSystem(mount.type);
      }
    }
  }

  Descriptor table_;
  pid_t process_ = 0;
  ino_t names_ = 0;  // name space of the mounts
  std::vector<std::string> points_;
  bool isAnyWithFiles_ = false;
};

SlowMounts& slowMounts() {
  thread_local SlowMounts mounts;
  return mounts;
}

const std::vector<std::string>& slowPoints() { return slowMounts().points(); }

/// `path` made absolute; the current folder is known without access to it.
std::string absolute(const std::string& path) {
  if (!path.empty() && path[0] == '/') return path;
  const CText folder(getcwd(nullptr, 0));
  return folder == nullptr ? path : std::string(folder.get()).append("/").append(path);
}

/// Text of the link at `path`; empty: it is no link.
std::string linkAt(const std::string& path) {
  char text[PATH_MAX];
  const ssize_t size = readlink(path.c_str(), text, sizeof text);
  return size > 0 ? std::string(text, std::size_t(size)) : std::string();
}

}  // namespace

bool mayHang(const Mount& mount) {
  // The system itself serves its automatic mounts below /proc.
  if (mount.type == "autofs" && holds("/proc", mount.mountPoint)) return false;
  return mount.type.starts_with("fuse.") || isNetworkFileSystem(mount.type) ||
         std::find(std::begin(kSlowTypes), std::end(kSlowTypes), mount.type) !=
             std::end(kSlowTypes);
}

bool isAnyMountSlow() { return slowMounts().isAnyWithFiles(); }

std::optional<std::string> slowMountOf(const std::string& path) {
  const std::vector<std::string>& points = slowPoints();
  if (points.empty()) return {};
  const auto isPoint = [&](const std::string& place) {
    return std::find(points.begin(), points.end(), place) != points.end();
  };
  if (isPoint("/")) return "/";
  std::string rest = absolute(path);
  std::string place;  // the part of the path that is resolved; empty: the root folder
  for (int links = 0; links < kMostLinks;) {
    std::string_view view = rest;
    const std::string step = takeComponent(view);
    if (step.empty()) return {};
    rest = view;
    if (step == ".") continue;
    if (step == "..") {
      place.resize(std::min(place.size(), place.rfind('/')));
      continue;
    }
    place.append("/").append(step);
    if (isPoint(place)) return place;
    if (const std::string link = linkAt(place); !link.empty()) {
      ++links;
      place.resize(link.starts_with('/') ? 0 : place.rfind('/'));
      rest.insert(0, "/").insert(0, link);
    }
  }
  return {};
}

std::string slowMountBelow(const std::string& path) {
  std::string found;
  for (const std::string& point : slowPoints()) {
    if (!holds(path, point)) continue;
    if (!found.empty()) return {};
    found = point;
  }
  return found;
}

bool MayNotAnswer(TextView path) { return slowMountOf(toBytes(path)).has_value(); }

}  // namespace ombrelian::platform
