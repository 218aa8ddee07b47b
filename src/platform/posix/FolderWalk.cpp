#include "platform/FolderWalk.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/posix/Errors.h"
#include "platform/posix/Links.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr std::size_t kBufferSize =
    std::size_t(64) * 1024;                 // bytes of entries that one question brings
constexpr std::size_t kMaxOpenLevels = 48;  // descriptors held; deeper walks reopen on the way up
constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

using Buffer = std::unique_ptr<char[]>;

/// One folder on the way from the source to the one being read.
struct Level {
  Descriptor folder;  // none while more than kMaxOpenLevels lie below
  FileIdentity identity;
  std::string name;          // below the level above; of the outermost level the whole path
  Buffer buffer;             // entries as getdents64 gave them
  std::size_t size = 0;      // bytes of entries in it
  std::size_t at = 0;        // where the next entry begins
  bool complete = false;     // the kernel has no more of them
  bool wasDetached = false;  // the buffer is no larger than what it holds
  int error = 0;             // errno that broke the listing off
};

const dirent64* entryAt(const Level& level) {
  return reinterpret_cast<const dirent64*>(level.buffer.get() + level.at);
}

bool isDotEntry(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

class FolderWalk::Implementation {
 public:
  ErrorCode openSource(TextView path);
  ErrorCode openCurrent();
  const FindData* next();
  void close();
  ErrorCode listError() const;
  TextView name();
  Text reparseTarget(TextView path, ErrorCode& error) const;
  std::size_t depth() const { return levels_.size(); }

 private:
  ErrorCode push(Level level);
  ErrorCode checkReparse(const Level& level) const;
  bool fill(Level& level);
  void detachOutermostOpen();
  void reattach(const Level& child);
  Descriptor reopenByNames() const;
  bool readEntry(const Level& level);
  Buffer takeBuffer();

  std::vector<Level> levels_;
  std::size_t detached_ = 0;  // levels from the outermost on that hold no descriptor
  std::vector<Buffer> spareBuffers_;
  const char* currentName_ = "";
  FindData current_;
  Text name_;
  bool nameConverted_ = false;
};

Buffer FolderWalk::Implementation::takeBuffer() {
  if (spareBuffers_.empty()) return std::make_unique_for_overwrite<char[]>(kBufferSize);
  Buffer buffer = std::move(spareBuffers_.back());
  spareBuffers_.pop_back();
  return buffer;
}

/// Reads the next entries into the level's buffer; false when there are none.
bool FolderWalk::Implementation::fill(Level& level) {
  if (level.complete) return false;
  const ssize_t got = getdents64(level.folder.get(), level.buffer.get(), kBufferSize);
  level.at = 0;
  level.size = got > 0 ? std::size_t(got) : 0;
  if (got > 0) return true;
  level.complete = true;
  // A folder that was removed under the walk has no entries left; that is no failure.
  if (got < 0 && errno != ENOENT) level.error = errno;
  return false;
}

/// Reads what is left of the outermost level that is open, and closes it.
void FolderWalk::Implementation::detachOutermostOpen() {
  Level& level = levels_[detached_++];
  std::string left(level.buffer.get() + level.at, level.size - level.at);
  while (fill(level))
    left.append(level.buffer.get(), level.size);
  spareBuffers_.push_back(std::move(level.buffer));
  if (!left.empty()) {
    level.buffer = std::make_unique_for_overwrite<char[]>(left.size());
    std::memcpy(level.buffer.get(), left.data(), left.size());
  }
  level.at = 0;
  level.size = left.size();
  level.wasDetached = true;
  level.folder.reset();
}

ErrorCode FolderWalk::Implementation::push(Level level) {
  level.buffer = takeBuffer();
  if (!fill(level) && level.error != 0) {
    spareBuffers_.push_back(std::move(level.buffer));
    return translateErrno(level.error);
  }
  levels_.push_back(std::move(level));
  if (levels_.size() - detached_ > kMaxOpenLevels) detachOutermostOpen();
  return kSuccess;
}

ErrorCode FolderWalk::Implementation::openSource(TextView path) {
  levels_.clear();
  detached_ = 0;
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  Level level;
  level.folder.reset(openat(at.folder(), at.name(), kOpenFolder));
  if (!level.folder) return translateErrno(errno);
  if (const int error = readIdentity(level.folder.get(), level.identity); error != 0) {
    return translateErrno(error);
  }
  level.name = toBytes(path);
  return push(std::move(level));
}

ErrorCode FolderWalk::Implementation::openCurrent() {
  Level level;
  const int follow = current_.isReparse() ? 0 : O_NOFOLLOW;
  level.folder.reset(openat(levels_.back().folder.get(), currentName_, kOpenFolder | follow));
  if (!level.folder) return translateErrno(errno);
  level.identity = current_.identity;
  if (current_.isReparse() || current_.statError != kSuccess) {
    if (const int error = readIdentity(level.folder.get(), level.identity); error != 0) {
      return translateErrno(error);
    }
    if (const ErrorCode error = checkReparse(level); error != kSuccess) return error;
  }
  level.name = currentName_;
  return push(std::move(level));
}

/// Whether a reparse folder that was just opened may be walked.
ErrorCode FolderWalk::Implementation::checkReparse(const Level& level) const {
  const bool isAncestor = std::any_of(levels_.begin(), levels_.end(), [&](const Level& above) {
    return above.identity == level.identity;
  });
  if (isAncestor) return kLinkLoop;
  if (level.identity.device == levels_.back().identity.device) return kSuccess;
  for (const Mount& mount : readMounts()) {
    if (mount.device == level.identity.device && isPseudoFileSystem(mount.type)) {
      return kNotSupported;
    }
  }
  return kSuccess;
}

/// Asks about the entry that the level stands at; false if it is gone.
bool FolderWalk::Implementation::readEntry(const Level& level) {
  const dirent64* const entry = entryAt(level);
  currentName_ = entry->d_name;
  nameConverted_ = false;
  const int error = readFindData(level.folder.get(), entry->d_name, AT_SYMLINK_NOFOLLOW,
                                 level.identity.device, current_);
  if (error == 0) return true;
  if (error == ENOENT) return false;
  fillFromKind(entry->d_type, entry->d_name, current_);
  current_.statError = translateErrno(error);
  return true;
}

const FindData* FolderWalk::Implementation::next() {
  Level& level = levels_.back();
  for (;;) {
    if (level.at == level.size && !fill(level)) return nullptr;
    const dirent64* const entry = entryAt(level);
    const bool isWanted = !isDotEntry(entry->d_name) && readEntry(level);
    level.at += entry->d_reclen;
    if (isWanted) return &current_;
  }
}

/// Opens the innermost level again, which `child` was left for.
void FolderWalk::Implementation::reattach(const Level& child) {
  Level& level = levels_.back();
  Descriptor folder(openat(child.folder.get(), "..", kOpenFolder));
  FileIdentity identity;
  // Behind a link, or when the child was moved meanwhile, ".." is another folder.
  if (!folder || readIdentity(folder.get(), identity) != 0 || identity != level.identity) {
    folder = reopenByNames();
  }
  level.folder = std::move(folder);
  if (level.folder) return;
  if (level.at != level.size) level.error = ENOENT;
  level.at = level.size;
}

Descriptor FolderWalk::Implementation::reopenByNames() const {
  std::string path;
  for (const Level& level : levels_) {
    if (!path.empty() && path.back() != '/') path.push_back('/');
    path += level.name;
  }
  const PathAt at(std::move(path));
  if (at.error() != 0) return Descriptor();
  Descriptor folder(openat(at.folder(), at.name(), kOpenFolder));
  FileIdentity identity;
  if (folder && readIdentity(folder.get(), identity) == 0 && identity == levels_.back().identity) {
    return folder;
  }
  return Descriptor();
}

void FolderWalk::Implementation::close() {
  Level child = std::move(levels_.back());
  levels_.pop_back();
  if (!child.wasDetached) spareBuffers_.push_back(std::move(child.buffer));
  if (!levels_.empty() && detached_ == levels_.size()) {
    reattach(child);
    --detached_;
  }
}

ErrorCode FolderWalk::Implementation::listError() const {
  return translateErrno(levels_.back().error);
}

TextView FolderWalk::Implementation::name() {
  if (!nameConverted_) {
    fromBytes(currentName_, name_);
    nameConverted_ = true;
  }
  return name_;
}

Text FolderWalk::Implementation::reparseTarget(TextView path, ErrorCode& error) const {
  if (current_.dwReserved0 == kTagMountPoint) return mountedSource(toBytes(path), error);
  return linkText(levels_.back().folder.get(), currentName_, error);
}

FolderWalk::FolderWalk() : implementation_(std::make_unique<Implementation>()) {}
FolderWalk::~FolderWalk() = default;
ErrorCode FolderWalk::FindFirstFileW(TextView path) { return implementation_->openSource(path); }
ErrorCode FolderWalk::FindFirstFileW() { return implementation_->openCurrent(); }
const FindData* FolderWalk::FindNextFileW() { return implementation_->next(); }
ErrorCode FolderWalk::listError() const { return implementation_->listError(); }
void FolderWalk::FindClose() { implementation_->close(); }
TextView FolderWalk::name() { return implementation_->name(); }
std::size_t FolderWalk::depth() const { return implementation_->depth(); }

Text FolderWalk::reparseTarget(TextView path, ErrorCode& error) const {
  return implementation_->reparseTarget(path, error);
}

}  // namespace ombrelian::platform
