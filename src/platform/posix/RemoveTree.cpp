#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/posix/EntryReader.h"
#include "platform/posix/Errors.h"
#include "platform/posix/ObjectAt.h"
#include "platform/posix/OpenLevels.h"
#include "platform/posix/PatientCalls.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr std::size_t kBatch = 100'000;      // number of entries that are sorted by inode at a time
constexpr std::size_t kFewEntries = 10'000;  // entries below this number are not sorted by inode
constexpr std::chrono::milliseconds kTimeToStop(300);
constexpr int kMostPasses = 16;  // passes over a folder that other programs fill meanwhile

bool isRefused(int error) { return error == EACCES || error == EPERM; }

/// One folder on the path from the folder to remove to the folder that is being emptied.
struct Level : OpenLevel {
  std::string pending;  // names of the remaining subfolders, each with its NUL
  std::size_t at = 0;   // offset of the next name in pending
  int passes = 0;
  bool stays = false;              // an object in the folder could not be removed
  std::optional<mode_t> mode;      // mode to restore if the folder stays
  bool wasAskedForRights = false;  // getRights() was already called once

  bool hasPending() const { return at < pending.size(); }
  const char* nextPending() {
    const char* const next = pending.c_str() + at;
    at = pending.find('\0', at) + 1;
    return next;
  }
};

/// Names of entries that are not folders, in one piece of memory.
class Batch {
 public:
  void add(const dirent64& entry) {
    entries_.push_back({entry.d_ino, names_.size()});
    names_.append(entry.d_name).push_back('\0');
  }
  std::size_t size() const { return entries_.size(); }

  /// Sorts the entries by inode, because the file system finds inodes faster in this order.
  void order() {
    if (entries_.size() < kFewEntries) return;
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& a, const Entry& b) { return a.inode < b.inode; });
  }
  const char* name(std::size_t i) const { return names_.c_str() + entries_[i].name; }
  void clear() {
    entries_.clear();
    names_.clear();
  }

 private:
  struct Entry {
    std::uint64_t inode;
    std::size_t name;
  };
  std::vector<Entry> entries_;
  std::string names_;
};

/// Opens the folder `name` below `above`. Null: errno contains the error.
SharedFolder openFolder(int above, const char* name) {
  Descriptor folder(openat(above, name, kOpenLevel | O_NOFOLLOW));
  return folder ? std::make_shared<const Descriptor>(std::move(folder)) : nullptr;
}

class TreeRemoval {
 public:
  TreeRemoval(const ShownObject& object, RemovalProgress& progress)
      : object_(object), progress_(progress), outside_(object) {}

  Removal run();

 private:
  void removeTop(const FindData& data);
  void enter(int above, const std::string& name, const FileIdentity* expected);
  ErrorCode openLevel(int above, const FileIdentity* expected, Level& level);
  ErrorCode inspect(int folder, const FileIdentity* expected, Level& level);
  void empty(Level& level);
  bool readBatch(Level& level, Batch& batch);
  void removeFile(Level& level, const char* name);
  bool getRights(int folder, Level& level);
  int removeAt(int above, const char* name, int flags);
  void leave();
  bool isOpenAgain(const Level& child);
  void fail(ErrorCode error, const char* name = nullptr);
  bool goesOn();

  const ShownObject& object_;
  RemovalProgress& progress_;
  const ObjectAt outside_;
  std::optional<ForcedRights> rightsOutside_;
  OpenLevels<Level> levels_;
  std::unique_ptr<char[]> buffer_;
  Batch batch_;
  bool marksEnd_ = false;
  Removal removal_;
};

Removal TreeRemoval::run() {
  FindData data;
  ErrorCode error = outside_.error();
  if (error == kSuccess) error = outside_.read(data);
  if (error == kSuccess && data.dwReserved0 == kTagMountPoint) error = kIsMountPoint;
  if (isMissing(error)) {
    removal_.isGone = true;
  } else if (error != kSuccess) {
    fail(error);
  } else {
    removeTop(data);
  }
  return removal_;
}

void TreeRemoval::removeTop(const FindData& data) {
  if (!data.isFolder() || data.isReparse()) {
    const int error = removeAt(outside_.folder(), outside_.name(), 0);
    removal_.isGone = error == 0 || error == ENOENT;
    removal_.files += error == 0 ? 1 : 0;
    if (!removal_.isGone) fail(translateErrno(error));
    return;
  }
  buffer_ = std::make_unique_for_overwrite<char[]>(kEntryBufferSize);
  enter(outside_.folder(), outside_.name(), &data.identity);
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.hasPending() && goesOn()) {
      const std::string name = level.nextPending();
      enter(level.folder->get(), name, nullptr);
    } else {
      leave();
    }
  }
}

/// Whether the removal may continue. After the first refusal the result stays false.
bool TreeRemoval::goesOn() {
  if (!removal_.wasStopped) {
    removal_.wasStopped = !progress_.goOn(removal_.files, removal_.folders);
  }
  return !removal_.wasStopped;
}

/// Opens a folder and removes all objects in it that are not folders.
void TreeRemoval::enter(int above, const std::string& name, const FileIdentity* expected) {
  Level level;
  level.name = name;
  const ErrorCode error = openLevel(above, expected, level);
  if (isMissing(error)) {
    removal_.isGone = levels_.empty();
  } else if (error == kNotADirectory && !levels_.empty()) {
    removeFile(levels_.back(), name.c_str());
  } else if (error != kSuccess) {
    fail(error, name.c_str());
  } else {
    if (levels_.empty()) marksEnd_ = marksEndOfFolder(level.folder->get());
    levels_.push(std::move(level));
    empty(levels_.back());
  }
}

/// Opens the folder of this level below `above`. kNotADirectory: the object is not a folder, or not
/// any more.
ErrorCode TreeRemoval::openLevel(int above, const FileIdentity* expected, Level& level) {
  const char* const name = level.name.c_str();
  level.folder = openFolder(above, name);
  if (level.folder) return inspect(level.folder->get(), expected, level);
  if (errno == ELOOP) return kNotADirectory;
  if (errno != EACCES) return translateErrno(errno);
  // A folder that may not be listed gets the right for it, but only after it was checked that it is
  // a folder to empty.
  const Descriptor plain(openat(above, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!plain) return translateErrno(errno);
  const ErrorCode error = inspect(plain.get(), expected, level);
  if (error != kSuccess || !getRights(plain.get(), level)) {
    return error != kSuccess ? error : kAccessDenied;
  }
  level.folder = openFolder(above, name);
  if (level.folder) return inspect(level.folder->get(), &level.identity, level);
  const int refused = errno;
  changeMode(plain.get(), *level.mode);
  return translateErrno(refused);
}

/// Stores the identity of the open folder, and refuses a folder that must not be emptied.
ErrorCode TreeRemoval::inspect(int folder, const FileIdentity* expected, Level& level) {
  FindData data;
  const std::uint64_t device = levels_.empty() ? 0 : levels_.back().identity.device;
  const int error = readFindData(folder, "", AT_EMPTY_PATH, device, data);
  if (error != 0) return translateErrno(error);
  if (data.dwReserved0 == kTagMountPoint) return kIsMountPoint;
  if (expected != nullptr && !(data.identity == *expected)) return kObjectReplaced;
  level.identity = data.identity;
  return kSuccess;
}

/// Removes all objects that are not folders, and stores the names of the subfolders.
void TreeRemoval::empty(Level& level) {
  ++level.passes;
  level.pending.clear();
  level.at = 0;
  bool hasMore = true;
  while (hasMore && goesOn()) {
    batch_.clear();
    hasMore = readBatch(level, batch_);
    batch_.order();
    for (std::size_t i = 0; i < batch_.size() && goesOn(); ++i)
      removeFile(level, batch_.name(i));
  }
}

/// Reads the next entries of the folder; false: there are no more.
bool TreeRemoval::readBatch(Level& level, Batch& batch) {
  while (batch.size() < kBatch) {
    const EntriesRead read = readEntries(level.folder->get(), buffer_.get(), marksEnd_);
    for (std::size_t at = 0; at < read.size;) {
      const auto& entry = *reinterpret_cast<const dirent64*>(buffer_.get() + at);
      at += entry.d_reclen;
      if (isDotEntry(entry)) continue;
      if (entry.d_type == DT_DIR) {
        level.pending.append(entry.d_name).push_back('\0');
      } else {
        batch.add(entry);
      }
    }
    if (read.error != 0) fail(translateErrno(read.error));
    if (read.isEnd) return false;
  }
  return true;
}

void TreeRemoval::removeFile(Level& level, const char* name) {
  const int error = removeAt(level.folder->get(), name, 0);
  if (error == 0) {
    ++removal_.files;
  } else if (error == EISDIR) {  // some file systems do not report the kind of entries
    level.pending.append(name).push_back('\0');
  } else if (error != ENOENT) {
    fail(translateErrno(error), name);
  }
}

/// Gives this process the rights to list a folder and to remove objects from it; false: nothing was
/// changed.
bool TreeRemoval::getRights(int folder, Level& level) {
  if (level.wasAskedForRights) return false;
  level.wasAskedForRights = true;
  struct stat told;
  if (fstat(folder, &told) != 0 || (told.st_mode & S_IRWXU) == S_IRWXU) return false;
  if (!changeMode(folder, told.st_mode | S_IRWXU)) return false;
  level.mode = told.st_mode;
  return true;
}

/// Removes one object from the innermost level, or from the folder outside if there is no level.
/// Returns 0 or errno.
int TreeRemoval::removeAt(int above, const char* name, int flags) {
  if (unlinkat(above, name, flags) == 0) return 0;
  const int error = errno;
  if (!isRefused(error)) return error;
  if (!levels_.empty()) {
    Level& level = levels_.back();
    if (!getRights(level.folder->get(), level)) return error;
  } else {
    if (rightsOutside_) return error;
    rightsOutside_.emplace(object_);
    if (rightsOutside_->error() != kSuccess) return error;
  }
  return unlinkat(above, name, flags) == 0 ? 0 : errno;
}

/// Leaves the innermost folder, and removes it if it is empty and need not stay.
void TreeRemoval::leave() {
  Level child = levels_.pop();
  bool isGone = false;
  if (!isOpenAgain(child)) {
    child.stays = true;
  } else if (!child.stays && !removal_.wasStopped) {
    const int above = levels_.empty() ? outside_.folder() : levels_.back().folder->get();
    const int error = removeAt(above, child.name.c_str(), AT_REMOVEDIR);
    isGone = error == 0 || error == ENOENT;
    removal_.folders += error == 0 ? 1 : 0;
    const bool wasFilled = error == ENOTEMPTY || error == EEXIST;
    if (wasFilled && child.passes < kMostPasses && lseek(child.folder->get(), 0, SEEK_SET) == 0) {
      levels_.push(std::move(child));
      empty(levels_.back());
      return;
    }
    if (!isGone) {
      fail(error == ENOTDIR ? kObjectReplaced : translateErrno(error), child.name.c_str());
    }
  }
  if (isGone) {
    removal_.isGone = levels_.empty();
    return;
  }
  if (child.mode && child.folder != nullptr) changeMode(child.folder->get(), *child.mode);
  if (!levels_.empty()) levels_.back().stays = true;
}

/// Whether the innermost level is open after `child` was left. If it could not be opened again, its
/// remaining objects stay.
bool TreeRemoval::isOpenAgain(const Level& child) {
  if (levels_.empty() || levels_.back().folder != nullptr) return true;
  if (child.folder != nullptr) fail(kObjectReplaced);  // one report for all lost levels
  Level& level = levels_.back();
  level.pending.clear();
  level.at = 0;
  level.stays = true;
  return false;
}

/// Reports that `name` in the innermost level, or that level itself, stays.
void TreeRemoval::fail(ErrorCode error, const char* name) {
  if (!levels_.empty()) levels_.back().stays = true;
  Text path = object_.path;
  for (auto level = levels_.begin(); level != levels_.end(); ++level)
    if (level != levels_.begin()) path.append(u"/").append(fromBytes(level->name));
  if (name != nullptr && !levels_.empty()) path.append(u"/").append(fromBytes(name));
  progress_.failed(path, error);
}

/// Brings the progress of a removal from the thread that removes to the thread that shows it.
class Relay : public RemovalProgress {
 public:
  bool goOn(std::uint64_t files, std::uint64_t folders) override {
    files_ = files;
    folders_ = folders;
    return !isStopped_;
  }

  void failed(TextView path, ErrorCode error) override {
    const std::lock_guard lock(mutex_);
    failures_.emplace_back(path, error);
  }

  /// Passes on what came since the last call; false: the user stopped the removal.
  bool pass(RemovalProgress& progress) {
    passFailures(progress);
    if (!progress.goOn(files_, folders_)) isStopped_ = true;
    return !isStopped_;
  }

  void passFailures(RemovalProgress& progress) {
    std::vector<std::pair<Text, ErrorCode>> failures;
    {
      const std::lock_guard lock(mutex_);
      failures.swap(failures_);
    }
    for (const auto& [path, error] : failures)
      progress.failed(path, error);
  }

  /// What was removed before the file system stopped answering.
  Removal unfinished() const { return {false, true, files_, folders_}; }

 private:
  std::atomic<std::uint64_t> files_ = 0;
  std::atomic<std::uint64_t> folders_ = 0;
  std::atomic<bool> isStopped_ = false;
  std::mutex mutex_;
  std::vector<std::pair<Text, ErrorCode>> failures_;
};

/// Removes the folder in another thread. If the user stops the removal, the thread gets a moment to
/// end it orderly.
Removal removePatiently(const ShownObject& folder, RemovalProgress& progress,
                        const std::string& mount) {
  const auto relay = std::make_shared<Relay>();
  const auto removal = std::make_shared<Removal>();
  std::optional<std::chrono::milliseconds> stopped;
  const Patience patience([&](std::chrono::milliseconds waited) {
    if (!relay->pass(progress) && !stopped) stopped = waited;
    return !stopped || waited - *stopped < kTimeToStop;
  });
  PatientCalls calls(mount);
  const bool isAnswered =
      calls.run([folder, relay, removal] { *removal = TreeRemoval(folder, *relay).run(); });
  relay->passFailures(progress);
  if (isAnswered) return *removal;
  progress.failed(folder.path, kTimeout);
  return relay->unfinished();
}

}  // namespace

Removal RemoveTree(const ShownObject& folder, RemovalProgress& progress) {
  if (const auto mount = patientMountAround(folder.path)) {
    return removePatiently(folder, progress, *mount);
  }
  return TreeRemoval(folder, progress).run();
}

}  // namespace ombrelian::platform
