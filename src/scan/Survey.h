#pragma once

#include <functional>
#include <unordered_map>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian {

/// What goes when chosen objects go, as the disk has it at this moment: a scan may be old, and its
/// filters leave out what a deletion does not.
class Survey {
 public:
  /// Called at every object, with the number of objects counted so far; false ends the survey.
  using GoOn = std::function<bool(std::uint64_t)>;

  /// `helpers` as FolderWalk has it.
  explicit Survey(int helpers) : helpers_(helpers) {}

  /// Counts the object at `path`, of which `data` was told, and of a folder all that it holds;
  /// links and mount points are not entered. False: it was ended.
  bool add(TextView path, const platform::FindData& data, const GoOn& goOn);

  std::uint64_t objects() const { return files + folders; }

  std::uint64_t files = 0;    // links to files and whatever else is no folder too
  std::uint64_t folders = 0;  // links to folders too, unlike mount points
  std::int64_t bytes = 0;     // logical sizes of all names
  std::uint64_t links = 0;
  std::uint64_t mountPoints = 0;
  std::uint64_t hardlinks = 0;   // names of files that have several
  std::uint64_t unreadable = 0;  // folders whose content is not counted

  /// The part of `bytes` that is not freed, because the data has further names that stay, or was
  /// counted once for each of several names.
  std::int64_t keptBytes() const;

 private:
  struct Names {
    std::uint64_t counted = 0;
    std::uint64_t all = 0;
    std::int64_t size = 0;
  };
  struct Hash {
    std::size_t operator()(const platform::FileIdentity& identity) const {
      return std::hash<std::uint64_t>()(identity.index * 31 + identity.device);
    }
  };

  void count(const platform::FindData& data);
  bool walk(TextView folder, const GoOn& goOn);

  const int helpers_;
  std::unordered_map<platform::FileIdentity, Names, Hash> names_;
};

}  // namespace ombrelian
