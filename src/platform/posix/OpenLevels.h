#pragma once

#include <fcntl.h>

#include <string>
#include <type_traits>
#include <vector>

#include "platform/FindData.h"
#include "platform/posix/Descriptor.h"

namespace ombrelian::platform {

/// One folder on the path from the outermost folder to the folder that is being processed.
struct OpenLevel {
  SharedFolder folder;  // null while the level is detached, or if nothing is opened from it
  FileIdentity identity;
  std::string name;  // name in the level above
};

/// Flags with which a level is opened.
inline constexpr int kOpenLevel = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// Greatest number of open levels if there is no shortage of descriptors.
inline constexpr std::size_t kMostOpenLevels = 48;

/// Opens the folder above the open folder `below`. Null: `below` is null, or the folder above it is
/// not `expected`, because `below` was reached by a link or was moved meanwhile.
SharedFolder openAbove(const SharedFolder& below, const FileIdentity& expected);

/// A stack of open folders of any depth with a bounded number of descriptors. The innermost levels
/// are open. The outer levels may be detached: their descriptors are closed, and they are opened
/// again on the way back. `Level` derives from OpenLevel.
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

  /// Whether another level can only be added if one is detached.
  bool isFull() const { return levels_.size() - detached_ >= mostOpen_; }

  /// Sets the greatest number of open descriptors. Levels above it are detached, the outermost
  /// first, each after a call of `prepare`. Returns whether there were any.
  template <class Prepare>
  bool keepOpen(std::size_t most, Prepare prepare) {
    mostOpen_ = most;
    const std::size_t before = detached_;
    while (levels_.size() - detached_ > mostOpen_)
      detachOne(prepare);
    return detached_ > before;
  }

  /// Adds an innermost level. If another level has to be detached for it, `prepare` is called with
  /// that level while it is still open. If there is no memory, `level` is as before.
  template <class Prepare>
  void push(Level&& level, Prepare prepare) {
    static_assert(std::is_nothrow_move_constructible_v<Level>);
    levels_.push_back(std::move(level));
    if (levels_.size() - detached_ > mostOpen_) detachOne(prepare);
  }

  void push(Level&& level) {
    push(std::move(level), [](Level&) {});
  }

  /// Removes and returns the innermost level. If the level above it was detached, that level is
  /// opened again from the removed level. If this fails, the level above has no folder.
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
  template <class Prepare>
  void detachOne(Prepare prepare) {
    Level& outermost = levels_[detached_++];
    prepare(outermost);
    outermost.folder.reset();
  }

  std::vector<Level> levels_;
  std::size_t mostOpen_ = kMostOpenLevels;
  std::size_t detached_ = 0;  // number of detached levels, counted from the outermost
};

}  // namespace ombrelian::platform
