#include "tree/HardlinkNames.h"

#include <algorithm>

namespace ombrelian {

std::size_t HardlinkNames::KeyHash::operator()(const Key& key) const {
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
  return std::size_t((key.file.index * kSpread) ^ (key.file.device << 8) ^ key.run);
}

bool HardlinkNames::add(Run run, const platform::FileIdentity& file, NodeIndex folder,
                        std::int64_t size) {
  File& names = files_[{run, file}];
  names.folders.push_back(folder);
  if (names.counted != kNoNode) return false;
  names.counted = folder;
  names.size = size;
  return true;
}

std::optional<std::int64_t> HardlinkNames::remove(Run run, const platform::FileIdentity& file,
                                                  NodeIndex folder) {
  const auto entry = files_.find({run, file});
  if (entry == files_.end()) return std::nullopt;
  File& names = entry->second;
  const auto name = std::find(names.folders.begin(), names.folders.end(), folder);
  if (name == names.folders.end()) return std::nullopt;
  names.folders.erase(name);
  const auto isIn = [&](NodeIndex wanted) {
    return std::find(names.folders.begin(), names.folders.end(), wanted) != names.folders.end();
  };
  const bool staysCounted = names.counted != folder || isIn(folder);
  const std::int64_t size = staysCounted ? 0 : names.size;
  if (names.folders.empty()) {
    files_.erase(entry);
  } else if (!staysCounted) {
    names.counted = kNoNode;
    unsettled_.push_back(entry->first);
  }
  return size;
}

void HardlinkNames::removeFolders(const std::function<bool(NodeIndex)>& isGone) {
  for (auto entry = files_.begin(); entry != files_.end();) {
    File& names = entry->second;
    std::erase_if(names.folders, isGone);
    if (names.counted != kNoNode && isGone(names.counted)) {
      names.counted = kNoNode;
      unsettled_.push_back(entry->first);
    }
    // A rescan may add names to a file that has none for the moment, and is then counted there.
    entry = names.folders.empty() ? files_.erase(entry) : std::next(entry);
  }
}

void HardlinkNames::moveFolder(NodeIndex from, NodeIndex to) {
  for (auto& [key, names] : files_) {
    std::replace(names.folders.begin(), names.folders.end(), from, to);
    if (names.counted == from) names.counted = to;
  }
}

std::vector<HardlinkNames::TakenOver> HardlinkNames::settle() {
  std::vector<TakenOver> changes;
  for (const Key& key : unsettled_) {
    const auto entry = files_.find(key);
    if (entry == files_.end() || entry->second.counted != kNoNode) continue;
    File& names = entry->second;
    names.counted = names.folders.front();
    changes.push_back({names.counted, names.size});
  }
  unsettled_.clear();
  return changes;
}

}  // namespace ombrelian
