#include "platform/posix/DirectWalk.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/posix/Errors.h"
#include "platform/posix/FoldersAbove.h"
#include "platform/posix/LinkTargets.h"
#include "platform/posix/Medium.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

/// Number of open levels during a shortage of descriptors.
constexpr std::size_t kLevelsInShortage = 2;

/// kNotSupported: the file system of the device holds no files of its own.
ErrorCode checkDevice(std::uint64_t device) {
  int error = 0;
  for (const Mount& mount : readMounts(&error)) {
    if (mount.device == device && isPseudoFileSystem(mount.type)) return kNotSupported;
  }
  return isShortage(error) ? translateErrno(error) : kSuccess;
}

/// Opens the folder `path`, follows links, and reads which folder it is.
ErrorCode openFolder(std::string path, OpenLevel& level) {
  const PathAt at(std::move(path));
  if (at.error() != 0) return translateErrno(at.error());
  Descriptor folder(retried([&] { return openat(at.folder(), at.name(), kOpenLevel); }));
  if (!folder) return translateErrno(errno);
  level.folder = std::make_shared<const Descriptor>(std::move(folder));
  return translateErrno(readIdentity(level.folder->get(), level.identity));
}

bool isRemoved(int folder) {
  struct stat told;
  return fstat(folder, &told) == 0 && told.st_nlink == 0;
}

bool contains(const std::vector<FileIdentity>& folders, const FileIdentity& folder) {
  return std::find(folders.begin(), folders.end(), folder) != folders.end();
}

std::string& appendStep(std::string& path, const std::string& name) {
  if (!path.empty() && path.back() != '/') path.push_back('/');
  return path += name;
}

}  // namespace

DirectWalk::~DirectWalk() {
  for (Level& level : levels_)
    drop(level);
}

/// Chooses how to read the source, which was just opened.
void DirectWalk::prepare(const Level& source) {
  for (Level& level : levels_)
    drop(level);
  levels_.clear();
  ReadPlan plan = planFor(source.folder->get(), source.identity.device);
  if (helpers_ >= 0) plan.helpers = unsigned(helpers_);
  fitToDescriptors(plan, descriptorLimit());
  plan.leavesOut = leavesOut_;
  plan.entersFolders = reach_ == WalkReach::Tree && plan.helpers > 0;
  if (mayHang_ && plan.helpers > 0) {
    // One more helper works in place of the walk.
    ++plan.helpers;
    ++plan.processors;
    plan.walkHelps = false;
  }
  levels_.keepOpen(plan.levels, [](Level&) {});
  reader_ = std::make_unique<ReadAhead>(plan);
}

/// Frees descriptors and memory when there is a shortage: from now on nothing is read ahead, and
/// few levels stay open. False: nothing is left to free.
bool DirectWalk::makeRoom(bool forDescriptors) {
  if (reader_->standAlone()) {
    for (Level& level : levels_) {
      reader_->dropSubfolders(level.parts);
      if (level.listing != nullptr) reader_->dropSubfolders(level.listing->parts);
    }
    return true;
  }
  if (!forDescriptors) return false;
  return levels_.keepOpen(kLevelsInShortage, [this](Level& outermost) { readRest(outermost); });
}

/// Result of `call`, which is repeated while it fails for a shortage and there is room to make.
template <class Call>
ErrorCode DirectWalk::withRoom(Call call) {
  for (;;) {
    const ErrorCode error = call();
    const bool lacksDescriptors = error == kTooManyOpenFiles;
    if (!lacksDescriptors && error != kNotEnoughMemory) return error;
    if (!makeRoom(lacksDescriptors)) return error;
  }
}

/// Moves the next part of the listing to the level; false: there are no more parts.
bool DirectWalk::takePart(Level& level) {
  if (level.listing == nullptr) return false;
  Listing& listing = *level.listing;
  for (;;) {
    const bool isTaken = reader_->take(level.listing, level.parts);
    if (reader_->wasStarved()) dropFarthest();
    if (isTaken) return true;
    if (listing.isComplete || !makeRoom(listing.error != ENOMEM)) break;
    listing.error = 0;
  }
  level.error = listing.error;
  reader_->drop(std::move(level.listing));
  return false;
}

/// Drops the listings that the walk needs last, to make room for those that it needs next. The walk
/// reads the dropped folders again.
void DirectWalk::dropFarthest() {
  for (Level& level : levels_) {
    for (auto part = level.parts.rbegin(); part != level.parts.rend(); ++part) {
      for (auto at = part->subfolders.rbegin(); at != part->subfolders.rend(); ++at) {
        if (reader_->isHalfEmpty()) return;
        if (at->listing != nullptr) reader_->drop(std::move(at->listing));
      }
    }
  }
}

void DirectWalk::drop(Level& level) {
  if (level.listing != nullptr) reader_->drop(std::move(level.listing));
  if (!level.parts.empty()) reader_->drop(level.parts);
}

/// Reads the rest of a level before its descriptor is closed.
void DirectWalk::readRest(Level& level) {
  while (takePart(level)) {
  }
  reader_->dropWaiting(level.parts);
}

/// Adds a level whose folder is open or is read ahead.
ErrorCode DirectWalk::push(Level level) {
  try {
    return enter(level);
  } catch (...) {
    drop(level);
    throw;
  }
}

ErrorCode DirectWalk::enter(Level& level) {
  if (level.listing == nullptr) {
    level.listing = ReadAhead::begin(level.folder, level.identity.device);
    if (leavesOut_) {
      std::string path = pathOfLevels();
      appendStep(path, level.name);
      level.listing->path = fromBytes(appendStep(path, {}));
    }
  }
  const ListingPointer listing = level.listing;
  if (!takePart(level) && level.error != 0) return translateErrno(level.error);
  level.folder = listing->folder;
  levels_.push(std::move(level), [this](Level& outermost) { readRest(outermost); });
  return kSuccess;
}

ErrorCode DirectWalk::openSource(TextView path) {
  Level level;
  level.name = toBytes(path);
  if (const ErrorCode error = openFolder(level.name, level); error != kSuccess) return error;
  // A removed folder that somebody still has open, such as ".", would look empty.
  if (isRemoved(level.folder->get())) return kFileNotFound;
  above_.reset();
  prepare(level);
  return push(std::move(level));
}

ErrorCode DirectWalk::openCurrent() {
  Level level;
  level.identity = current_->identity;
  level.name = currentName_;
  if (ListingPointer* const listing = currentListing(levels_.back())) {
    level.listing = std::move(*listing);
  } else if (const ErrorCode error = withRoom([&] { return openByName(level); });
             error != kSuccess) {
    return error;
  }
  return push(std::move(level));
}

ErrorCode DirectWalk::openByName(Level& level) {
  const int follow = current_->isReparse() ? 0 : O_NOFOLLOW;
  Descriptor folder(retried(
      [&] { return openat(levels_.back().folder->get(), currentName_, kOpenLevel | follow); }));
  if (!folder) return translateErrno(errno);
  level.folder = std::make_shared<const Descriptor>(std::move(folder));
  if (!current_->isReparse() && current_->statError == kSuccess) return kSuccess;
  if (const int error = readIdentity(level.folder->get(), level.identity); error != 0) {
    return translateErrno(error);
  }
  return checkReparse(level);
}

/// Whether a reparse folder that was just opened may be walked.
ErrorCode DirectWalk::checkReparse(const Level& level) {
  const bool isOnTheWay = std::any_of(levels_.begin(), levels_.end(), [&](const Level& above) {
    return above.identity == level.identity;
  });
  if (!above_) {
    std::vector<FileIdentity> above;
    const int error = foldersAbove(levels_.begin()->name, above);
    if (isShortage(error)) return translateErrno(error);
    above_ = std::move(above);
  }
  if (isOnTheWay || contains(*above_, level.identity)) return kLinkLoop;
  if (level.identity.device == levels_.back().identity.device) return kSuccess;
  return checkDevice(level.identity.device);
}

const FindData* DirectWalk::next() {
  Level& level = levels_.back();
  nameConverted_ = false;
  current_ = nullptr;
  passBy(level);
  while (level.parts.empty() || level.isPartRead()) {
    if (!level.parts.empty()) level.parts.pop_front();
    level.entry = 0;
    level.subfolder = 0;
    if (level.parts.empty() && !takePart(level)) return nullptr;
  }
  const EntryBatch& batch = level.parts.front().batch;
  const EntryBatch::Entry& entry = batch.entries()[level.entry++];
  currentName_ = batch.nameOf(entry);
  return current_ = &entry;
}

/// Place of the listing of the current entry; null if the entry is not read ahead.
ListingPointer* DirectWalk::currentListing(Level& level) {
  if (level.parts.empty()) return nullptr;
  auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder == subfolders.size()) return nullptr;
  ListingPart::Subfolder& subfolder = subfolders[level.subfolder];
  return subfolder.entry + 1 == level.entry && subfolder.listing != nullptr ? &subfolder.listing
                                                                            : nullptr;
}

/// Moves past the current entry, which was opened or will never be opened.
void DirectWalk::passBy(Level& level) {
  if (ListingPointer* const listing = currentListing(level)) reader_->drop(std::move(*listing));
  if (level.parts.empty()) return;
  const auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder < subfolders.size() && subfolders[level.subfolder].entry + 1 == level.entry) {
    ++level.subfolder;
  }
}

bool DirectWalk::isNextQuick() {
  Level& level = levels_.back();
  if (currentListing(level) != nullptr) return false;
  if (!level.parts.empty() && !level.isPartRead()) return true;
  return level.listing == nullptr || level.listing->isWhole.load(std::memory_order_acquire);
}

bool DirectWalk::isOpenCurrentQuick() {
  ListingPointer* const listing = currentListing(levels_.back());
  return listing != nullptr && (*listing)->isWhole.load(std::memory_order_acquire) &&
         !levels_.isFull();
}

bool DirectWalk::isCloseQuick() const {
  if (levels_.size() < 2) return false;
  const Level& level = levels_.back();
  const Level& above = *(levels_.end() - 2);
  // A local source answers always, unless the walk left it by a link or a mount point.
  const std::uint64_t source = levels_.begin()->identity.device;
  if (!mayHang_ && level.identity.device == source && above.identity.device == source) return true;
  return level.folder == nullptr && level.listing == nullptr && level.parts.empty() &&
         above.folder != nullptr;
}

void DirectWalk::close() {
  Level child = levels_.pop();
  drop(child);
  if (levels_.empty() || levels_.back().folder != nullptr) return;
  reopenByNames();
  Level& level = levels_.back();
  if (level.folder != nullptr) return;
  const bool isRead = level.parts.empty() || (level.parts.size() == 1 && level.isPartRead());
  if (!isRead) level.error = ENOENT;
  drop(level);
}

/// Path of the innermost level; empty: there is none.
std::string DirectWalk::pathOfLevels() const {
  std::string path;
  for (const Level& level : levels_)
    appendStep(path, level.name);
  return path;
}

/// Opens the innermost level by its path, if the same folder is still there.
void DirectWalk::reopenByNames() {
  OpenLevel found;
  const ErrorCode error = withRoom([&] { return openFolder(pathOfLevels(), found); });
  if (error == kSuccess && found.identity == levels_.back().identity)
    levels_.back().folder = std::move(found.folder);
}

ErrorCode DirectWalk::listError() const { return translateErrno(levels_.back().error); }

TextView DirectWalk::name() {
  if (!nameConverted_) {
    fromBytes(currentName_, name_);
    nameConverted_ = true;
  }
  return name_;
}

Text DirectWalk::reparseTarget(TextView path, ErrorCode& error) const {
  if (current_->dwReserved0 == kTagMountPoint) return mountedSource(toBytes(path), error);
  return linkText(levels_.back().folder->get(), currentName_, error);
}

ErrorCode checkReparseFolder(const std::string& path) {
  OpenLevel folder;
  if (const ErrorCode error = openFolder(path, folder); error != kSuccess) return error;
  std::vector<FileIdentity> above;
  foldersAbove(path, above);
  if (contains(above, folder.identity)) return kLinkLoop;
  return checkDevice(folder.identity.device);
}

}  // namespace ombrelian::platform
