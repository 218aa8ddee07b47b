#include "platform/FolderWalk.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "platform/posix/EntryReader.h"
#include "platform/posix/Errors.h"
#include "platform/posix/LinkTargets.h"
#include "platform/posix/Medium.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/ReadAhead.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

constexpr std::size_t kMaxOpenLevels = 48;  // descriptors held; deeper walks reopen on the way up
constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

using Buffer = std::unique_ptr<char[]>;

/// One folder on the way from the source to the one being read. It comes as parts that were read
/// ahead or, without helpers, as a buffer of entries that are asked about one by one.
struct Level {
  SharedFolder folder;  // none while more than kMaxOpenLevels lie below, or when it has no use
  FileIdentity identity;
  std::string name;  // name in the level above; the outermost level has the whole path
  int error = 0;     // errno that broke the listing off

  ListingPointer listing;        // source of further parts; null: there are none
  std::list<ListingPart> parts;  // the first is being read
  std::size_t entry = 0;         // index of the next entry in the first part
  std::size_t subfolder =
      0;  // index in the first part of the first subfolder from the current entry on

  Buffer buffer;             // entries as getdents64 gave them
  std::size_t size = 0;      // bytes of entries in it
  std::size_t at = 0;        // offset of the next entry
  bool marksEnd = false;     // see marksEndOfFolder
  bool complete = false;     // the kernel has no more of them
  bool wasDetached = false;  // the buffer is no larger than what it holds
};

const dirent64* entryAt(const Level& level) {
  return reinterpret_cast<const dirent64*>(level.buffer.get() + level.at);
}

}  // namespace

class FolderWalk::Implementation {
 public:
  Implementation(int helpers, WalkReach reach) : helpers_(helpers), reach_(reach) {}
  ~Implementation();
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  ErrorCode openSource(TextView path);
  ErrorCode openCurrent();
  const FindData* next();
  void close();
  ErrorCode listError() const;
  TextView name();
  Text reparseTarget(TextView path, ErrorCode& error) const;
  std::size_t depth() const { return levels_.size(); }

 private:
  void prepare(const Level& source);
  ErrorCode openByName(Level& level) const;
  ErrorCode push(Level level);
  bool begin(Level& level);
  ErrorCode checkReparse(const Level& level) const;
  bool fill(Level& level);
  void detachOutermostOpen();
  void detachBuffer(Level& level);
  void reattach(const Level& child);
  Descriptor reopenByNames() const;
  const FindData* nextAsked(Level& level);
  const FindData* nextListed(Level& level);
  bool takePart(Level& level);
  ListingPointer* currentListing(Level& level);
  void passBy(Level& level);
  void dropFarthest();
  void drop(Level& level);
  Buffer takeBuffer();

  const int helpers_;
  const WalkReach reach_;
  std::unique_ptr<ReadAhead> readAhead_;  // null: the walk reads everything itself
  std::vector<Level> levels_;
  std::size_t detached_ = 0;  // levels from the outermost on that hold no descriptor
  std::vector<Buffer> spareBuffers_;
  const char* currentName_ = "";
  const FindData* current_ = nullptr;
  FindData asked_;  // record of the current entry if entries are asked about one by one
  Text name_;
  bool nameConverted_ = false;
};

FolderWalk::Implementation::~Implementation() {
  for (Level& level : levels_)
    drop(level);
}

/// Chooses how the source, which was just opened, is read.
void FolderWalk::Implementation::prepare(const Level& source) {
  while (!levels_.empty()) {
    drop(levels_.back());
    levels_.pop_back();
  }
  detached_ = 0;
  ReadPlan plan = planFor(source.folder->get(), source.identity.device);
  if (helpers_ >= 0) plan.helpers = unsigned(helpers_);
  plan.entersFolders = reach_ == WalkReach::Tree;
  readAhead_ = plan.helpers > 0 ? std::make_unique<ReadAhead>(plan) : nullptr;
}

Buffer FolderWalk::Implementation::takeBuffer() {
  if (spareBuffers_.empty()) return std::make_unique_for_overwrite<char[]>(kEntryBufferSize);
  Buffer buffer = std::move(spareBuffers_.back());
  spareBuffers_.pop_back();
  return buffer;
}

/// Reads the next entries into the level's buffer; false when there are none.
bool FolderWalk::Implementation::fill(Level& level) {
  if (level.complete) return false;
  const EntriesRead read = readEntries(level.folder->get(), level.buffer.get(), level.marksEnd);
  level.at = 0;
  level.size = read.size;
  level.complete = read.isEnd;
  level.error = read.error;
  return read.size > 0;
}

/// Moves the next part that was read to the level; false when there are none.
bool FolderWalk::Implementation::takePart(Level& level) {
  if (level.listing == nullptr) return false;
  const bool isTaken = readAhead_->take(level.listing, level.parts);
  if (readAhead_->wasStarved()) dropFarthest();
  if (isTaken) return true;
  level.error = level.listing->error;
  level.listing.reset();
  return false;
}

/// Gives up what lies farthest ahead, for the sake of what comes next. The walk reads it again.
void FolderWalk::Implementation::dropFarthest() {
  for (Level& level : levels_) {
    for (auto part = level.parts.rbegin(); part != level.parts.rend(); ++part) {
      for (auto at = part->subfolders.rbegin(); at != part->subfolders.rend(); ++at) {
        if (readAhead_->isHalfEmpty()) return;
        if (at->listing != nullptr) readAhead_->drop(std::move(at->listing));
      }
    }
  }
}

void FolderWalk::Implementation::drop(Level& level) {
  if (level.listing != nullptr) readAhead_->drop(std::move(level.listing));
  if (!level.parts.empty()) readAhead_->drop(level.parts);
}

/// Reads what is left of the outermost level that is open, and closes it.
void FolderWalk::Implementation::detachOutermostOpen() {
  Level& level = levels_[detached_++];
  if (level.buffer != nullptr) {
    detachBuffer(level);
  } else {
    while (takePart(level)) {
    }
    readAhead_->dropWaiting(level.parts);
  }
  level.folder.reset();
}

void FolderWalk::Implementation::detachBuffer(Level& level) {
  std::string left(level.buffer.get() + level.at, level.size - level.at);
  while (fill(level))
    left.append(level.buffer.get(), level.size);
  spareBuffers_.push_back(std::move(level.buffer));
  level.buffer = std::make_unique_for_overwrite<char[]>(left.size());
  std::memcpy(level.buffer.get(), left.data(), left.size());
  level.at = 0;
  level.size = left.size();
  level.wasDetached = true;
}

/// Reads the first entries; false if there are none.
bool FolderWalk::Implementation::begin(Level& level) {
  if (readAhead_ == nullptr) {
    level.buffer = takeBuffer();
    level.marksEnd = marksEndOfFolder(level.folder->get());
    return fill(level);
  }
  if (level.listing == nullptr) {
    level.listing = ReadAhead::begin(level.folder, level.identity.device);
  }
  const ListingPointer listing = level.listing;
  const bool hasEntries = takePart(level);
  level.folder = listing->folder;
  return hasEntries;
}

/// Adds a level whose folder is open, or which is read ahead.
ErrorCode FolderWalk::Implementation::push(Level level) {
  if (!begin(level) && level.error != 0) {
    if (level.buffer != nullptr) spareBuffers_.push_back(std::move(level.buffer));
    return translateErrno(level.error);
  }
  levels_.push_back(std::move(level));
  if (levels_.size() - detached_ > kMaxOpenLevels) detachOutermostOpen();
  return kSuccess;
}

ErrorCode FolderWalk::Implementation::openSource(TextView path) {
  const PathAt at(path);
  if (at.error() != 0) return translateErrno(at.error());
  Descriptor folder(openat(at.folder(), at.name(), kOpenFolder));
  if (!folder) return translateErrno(errno);
  Level level;
  level.folder = std::make_shared<Descriptor>(std::move(folder));
  if (const int error = readIdentity(level.folder->get(), level.identity); error != 0) {
    return translateErrno(error);
  }
  level.name = toBytes(path);
  prepare(level);
  return push(std::move(level));
}

ErrorCode FolderWalk::Implementation::openCurrent() {
  Level level;
  level.identity = current_->identity;
  level.name = currentName_;
  if (ListingPointer* const listing = currentListing(levels_.back())) {
    level.listing = std::move(*listing);
  } else if (const ErrorCode error = openByName(level); error != kSuccess) {
    return error;
  }
  return push(std::move(level));
}

ErrorCode FolderWalk::Implementation::openByName(Level& level) const {
  const int follow = current_->isReparse() ? 0 : O_NOFOLLOW;
  Descriptor folder(openat(levels_.back().folder->get(), currentName_, kOpenFolder | follow));
  if (!folder) return translateErrno(errno);
  level.folder = std::make_shared<Descriptor>(std::move(folder));
  if (!current_->isReparse() && current_->statError == kSuccess) return kSuccess;
  if (const int error = readIdentity(level.folder->get(), level.identity); error != 0) {
    return translateErrno(error);
  }
  return checkReparse(level);
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

const FindData* FolderWalk::Implementation::next() {
  Level& level = levels_.back();
  nameConverted_ = false;
  return current_ = level.buffer != nullptr ? nextAsked(level) : nextListed(level);
}

const FindData* FolderWalk::Implementation::nextAsked(Level& level) {
  for (;;) {
    if (level.at == level.size && !fill(level)) return nullptr;
    const dirent64& entry = *entryAt(level);
    currentName_ = entry.d_name;
    level.at += entry.d_reclen;
    // A level that could not be opened again has nothing left to ask about.
    if (!isDotEntry(entry) && askEntry(level.folder->get(), level.identity.device, entry, asked_)) {
      return &asked_;
    }
  }
}

const FindData* FolderWalk::Implementation::nextListed(Level& level) {
  passBy(level);
  while (level.parts.empty() || level.entry == level.parts.front().batch.entries().size()) {
    if (!level.parts.empty()) level.parts.pop_front();
    level.entry = 0;
    level.subfolder = 0;
    if (level.parts.empty() && !takePart(level)) return nullptr;
  }
  const EntryBatch& batch = level.parts.front().batch;
  const EntryBatch::Entry& entry = batch.entries()[level.entry++];
  currentName_ = batch.nameOf(entry);
  return &entry;
}

/// Where the listing of the current entry is kept; null if it is not read ahead.
ListingPointer* FolderWalk::Implementation::currentListing(Level& level) {
  if (level.parts.empty()) return nullptr;
  auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder == subfolders.size()) return nullptr;
  ListingPart::Subfolder& subfolder = subfolders[level.subfolder];
  return subfolder.entry + 1 == level.entry && subfolder.listing != nullptr ? &subfolder.listing
                                                                            : nullptr;
}

/// Leaves the current entry behind; it was opened or never will be.
void FolderWalk::Implementation::passBy(Level& level) {
  if (ListingPointer* const listing = currentListing(level)) readAhead_->drop(std::move(*listing));
  if (level.parts.empty()) return;
  const auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder < subfolders.size() && subfolders[level.subfolder].entry + 1 == level.entry) {
    ++level.subfolder;
  }
}

/// Opens the innermost level again, which `child` was left for.
void FolderWalk::Implementation::reattach(const Level& child) {
  Level& level = levels_.back();
  Descriptor folder(child.folder ? openat(child.folder->get(), "..", kOpenFolder) : -1);
  FileIdentity identity;
  // Behind a link, or when the child was moved meanwhile, ".." is another folder.
  if (!folder || readIdentity(folder.get(), identity) != 0 || identity != level.identity) {
    folder = reopenByNames();
  }
  if (folder) {
    level.folder = std::make_shared<Descriptor>(std::move(folder));
    return;
  }
  const bool isRead =
      level.parts.empty() ||
      (level.parts.size() == 1 && level.entry == level.parts.front().batch.entries().size());
  if (level.at != level.size || !isRead) level.error = ENOENT;
  level.at = level.size;
  drop(level);
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
  drop(child);
  if (child.buffer != nullptr && !child.wasDetached)
    spareBuffers_.push_back(std::move(child.buffer));
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
  if (current_->dwReserved0 == kTagMountPoint) return mountedSource(toBytes(path), error);
  return linkText(levels_.back().folder->get(), currentName_, error);
}

FolderWalk::FolderWalk(int helpers, WalkReach reach)
    : implementation_(std::make_unique<Implementation>(helpers, reach)) {}
FolderWalk::~FolderWalk() = default;
ErrorCode FolderWalk::openSource(TextView path) { return implementation_->openSource(path); }
ErrorCode FolderWalk::goIn() { return implementation_->openCurrent(); }
const FindData* FolderWalk::nextEntry() { return implementation_->next(); }
ErrorCode FolderWalk::listError() const { return implementation_->listError(); }
void FolderWalk::goOut() { implementation_->close(); }
TextView FolderWalk::name() { return implementation_->name(); }
std::size_t FolderWalk::depth() const { return implementation_->depth(); }

Text FolderWalk::reparseTarget(TextView path, ErrorCode& error) const {
  return implementation_->reparseTarget(path, error);
}

}  // namespace ombrelian::platform
