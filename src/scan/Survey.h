#pragma once

#include <functional>
#include <unordered_map>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian {

/// Counts the objects that a deletion would remove, as they are on the disk now. A scan may be old,
/// and its filters do not apply to a deletion.
class Survey {
 public:
  /// Called for every object with the number of objects counted so far; false ends the survey.
  using GoOn = std::function<bool(std::uint64_t)>;

  /// `helpers` is the number of helpers of FolderWalk.
  explicit Survey(int helpers) : helpers_(helpers) {}

  /// Counts the object at `path` with the data `data`, and all content of a folder; links and mount
  /// points are not entered. False: the survey was ended early.
  bool add(TextView path, const platform::FindData& data, const GoOn& goOn);

  std::uint64_t objects() const { return files + folders; }

  std::uint64_t files = 0;    // all objects that are not folders, including links to files
  std::uint64_t folders = 0;  // folders, including links to folders, without mount points
  std::int64_t bytes = 0;     // logical sizes of all names
  std::uint64_t links = 0;
  std::uint64_t mountPoints = 0;
  std::uint64_t hardlinks = 0;   // number of names of files that have several names
  std::uint64_t unreadable = 0;  // number of folders whose content is not counted
  bool isSilent = false;         // the survey was ended because a file system does not answer

  /// The part of `bytes` that is not freed: data with further names that remain, and data that was
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

  int helpers_;
  std::unordered_map<platform::FileIdentity, Names, Hash> names_;
};

}  // namespace ombrelian
