#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/FindData.h"
#include "tree/NodeIndex.h"

namespace ombrelian {

/// The names of files with several names by folder, and which name of each file was counted, so
/// that a file's size counts once in a run of scans. If the counted name leaves the tree, another
/// name takes the count over.
class HardlinkNames {
 public:
  /// Number of a run; the same file may count once in each.
  using Run = std::uint32_t;

  /// A size in bytes that counts in `folder` from now on.
  struct TakenOver {
    NodeIndex folder;
    std::int64_t size;
  };

  bool empty() const { return files_.empty(); }

  /// Adds a name in `folder`. Returns whether the size counts there.
  bool add(Run run, const platform::FileIdentity& file, NodeIndex folder, std::int64_t size);

  /// Removes one name in `folder`. Returns the bytes that no longer count there, which are 0 if
  /// another name was counted; nothing if there is no such name.
  std::optional<std::int64_t> remove(Run run, const platform::FileIdentity& file, NodeIndex folder);

  /// Removes the names in all folders for which `isGone` holds.
  void removeFolders(const std::function<bool(NodeIndex)>& isGone);

  /// The names in `from` are in `to` from now on.
  void moveFolder(NodeIndex from, NodeIndex to);

  /// Gives the count of each file whose counted name was removed to one of its other names.
  std::vector<TakenOver> settle();

 private:
  struct Key {
    Run run;
    platform::FileIdentity file;

    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  struct File {
    std::int64_t size = 0;
    NodeIndex counted = kNoNode;     // folder of the counted name; kNoNode: to be settled
    std::vector<NodeIndex> folders;  // one entry for each name
  };

  std::unordered_map<Key, File, KeyHash> files_;
  std::vector<Key> unsettled_;
};

}  // namespace ombrelian
