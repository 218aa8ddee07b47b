#pragma once

#include <fcntl.h>

#include <string>
#include <vector>

#include "platform/FindData.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// A folder on the way from an outermost folder to the one that is being worked on.
struct OpenLevel {
  SharedFolder folder;  // none while the level is detached, or if nothing is opened from it
  FileIdentity identity;
  std::string name;  // name in the level above
};

/// How a level is opened.
inline constexpr int kOpenLevel = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// Opens the folder above the open folder `below`. Null: there is no `below`, or the folder above
/// it is not `expected`, because a link led to it or it was moved meanwhile.
SharedFolder openAbove(const SharedFolder& below, const FileIdentity& expected);

/// A stack of open folders of any depth with a bounded number of descriptors. The innermost levels
/// are open; those farther out are detached, which means that they gave their descriptors up, and
/// are opened again on the way back. `Level` derives from OpenLevel.
template <class Level>
class OpenLevels {
 public:
  bool empty() const { return levels_.empty(); }
  std::size_t size() const { return levels_.size(); }
  Level& back() { return levels_.back(); }
  const Level& back() const { return levels_.back(); }
  auto begin() { return levels_.begin(); }
  auto end() { return levels_.end(); }
  auto begin() const { return levels_.begin(); }
  auto end() const { return levels_.end(); }

  /// Adds an innermost level. If another level has to be detached for it, `prepare` is called with
  /// that level while it is still open.
  template <class Prepare>
  void push(Level level, Prepare prepare) {
    levels_.push_back(std::move(level));
    if (levels_.size() - detached_ <= kMaxOpen) return;
    Level& outermost = levels_[detached_++];
    prepare(outermost);
    outermost.folder.reset();
  }

  void push(Level level) {
    push(std::move(level), [](Level&) {});
  }

  /// Takes the innermost level off. If the level above it was detached, it is opened again from the
  /// level that is left. If that fails, it has no folder.
  Level pop() {
    Level child = std::move(levels_.back());
    levels_.pop_back();
    if (!levels_.empty() && detached_ == levels_.size()) {
      --detached_;
      levels_.back().folder = openAbove(child.folder, levels_.back().identity);
    }
    return child;
  }

  void clear() {
    levels_.clear();
    detached_ = 0;
  }

 private:
  static constexpr std::size_t kMaxOpen = 48;  // descriptors held

  std::vector<Level> levels_;
  std::size_t detached_ = 0;  // levels from the outermost on that are detached
};

}  // namespace ombrelian::platform
