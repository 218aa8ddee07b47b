#include "platform/posix/Medium.h"

#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/posix/Mounts.h"

namespace ombrelian::platform {
namespace {

namespace fs = std::filesystem;

/// The first word of a file in sysfs; empty if there is none.
std::string wordOf(const fs::path& file) {
  std::ifstream stream(file);
  std::string word;
  stream >> word;
  return word;
}

/// Whether the disk is a virtual disk of a hypervisor.
bool isVirtual(const fs::path& disk) {
  constexpr std::string_view kVendors[] = {"QEMU", "VMware", "VBOX", "Msft", "Google"};
  constexpr std::string_view kDrivers[] = {"virtio_blk", "vbd"};
  std::error_code ignored;
  const std::string driver = fs::read_symlink(disk / "device/driver", ignored).filename().string();
  const std::string vendor = wordOf(disk / "device/vendor");
  return std::find(std::begin(kDrivers), std::end(kDrivers), driver) != std::end(kDrivers) ||
         std::find(std::begin(kVendors), std::end(kVendors), vendor) != std::end(kVendors);
}

Medium mediumOfDisk(const fs::path& disk) {
  const std::string name = disk.filename().string();
  if (name.starts_with("zram") || name.starts_with("ram")) return Medium::Memory;
  if (name.starts_with("nbd") || name.starts_with("rbd")) return Medium::Network;
  const bool spins = wordOf(disk / "queue/rotational") == "1" && !isVirtual(disk);
  return spins ? Medium::Spinning : Medium::SolidState;
}

std::string blockFolder(std::uint64_t device) {
  return "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
}

}  // namespace

Medium mediumOfBlockDevice(const std::string& folder) {
  std::error_code ignored;
  std::vector<fs::path> devices = {fs::canonical(folder, ignored)};
  bool isKnown = false;
  Medium slowest = Medium::SolidState;
  while (!devices.empty()) {
    fs::path device = std::move(devices.back());
    devices.pop_back();
    if (fs::exists(device / "partition", ignored)) device = device.parent_path();
    const std::size_t before = devices.size();
    for (const fs::directory_entry& part : fs::directory_iterator(device / "slaves", ignored)) {
      devices.push_back(fs::canonical(part.path(), ignored));
    }
    if (devices.size() > before) continue;
    const Medium medium = mediumOfDisk(device);
    slowest = isKnown ? std::max(slowest, medium) : medium;
    isKnown = true;
  }
  return slowest;
}

Medium mediumOf(int folder, std::uint64_t device) {
  struct statfs system;
  if (fstatfs(folder, &system) == 0 &&
      (system.f_type == TMPFS_MAGIC || system.f_type == RAMFS_MAGIC)) {
    return Medium::Memory;
  }
  const std::vector<Mount> mounts = readMounts();
  const auto mount = std::find_if(mounts.begin(), mounts.end(), [device](const Mount& candidate) {
    return candidate.device == device;
  });
  if (mount != mounts.end() && isNetworkFileSystem(mount->type)) return Medium::Network;
  // Some file systems, such as btrfs, give their files a device number that is not a block device.
  struct stat source;
  if (mount != mounts.end() && stat(mount->source.c_str(), &source) == 0 &&
      S_ISBLK(source.st_mode)) {
    device = source.st_rdev;
  }
  const std::string block = blockFolder(device);
  std::error_code ignored;
  return fs::exists(block, ignored) ? mediumOfBlockDevice(block) : Medium::SolidState;
}

ReadPlan planFor(Medium medium, unsigned cores) {
  ReadPlan plan;
  plan.processors = cores;
  switch (medium) {
    case Medium::Memory:
      plan.helpers = std::clamp(cores, 1U, 16U) - 1;
      break;
    case Medium::SolidState:
      plan.helpers = std::clamp(2 * cores, 8U, 16U);
      break;
    case Medium::Spinning:
      plan.helpers = 1;
      plan.isInInodeOrder = true;
      break;
    case Medium::Network:
      plan.helpers = 16;
      break;
  }
  return plan;
}

std::size_t descriptorLimit() {
  // Programs that this one starts inherit the limit, and some of them cannot use more.
  constexpr rlim_t kEnough = 1024;
  struct rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return kEnough;
  const rlim_t before = limit.rlim_cur;
  limit.rlim_cur = std::max(before, std::min(limit.rlim_max, kEnough));
  if (limit.rlim_cur > before && setrlimit(RLIMIT_NOFILE, &limit) != 0) limit.rlim_cur = before;
  return std::size_t(std::min(limit.rlim_cur, rlim_t(1) << 20));
}

void fitToDescriptors(ReadPlan& plan, std::size_t limit) {
  constexpr std::size_t kOwn = 16;  // descriptors of the rest of the program
  const std::size_t third = (limit - std::min(limit, kOwn)) / 3;
  plan.levels = std::clamp(third, std::size_t(4), std::max(plan.levels, std::size_t(4)));
  plan.descriptors = unsigned(std::min<std::size_t>(plan.descriptors, third));
  plan.helpers = unsigned(std::min<std::size_t>(plan.helpers, third / 2));  // two for each
}

ReadPlan planFor(int folder, std::uint64_t device) {
  return planFor(mediumOf(folder, device), std::max(1U, std::thread::hardware_concurrency()));
}

}  // namespace ombrelian::platform
