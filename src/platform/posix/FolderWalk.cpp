#include "platform/FolderWalk.h"

#include <errno.h>
#include <fcntl.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/posix/Errors.h"
#include "platform/posix/FoldersAbove.h"
#include "platform/posix/LinkTargets.h"
#include "platform/posix/Medium.h"
#include "platform/posix/Mounts.h"
#include "platform/posix/OpenLevels.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/ReadAhead.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

/// One folder on the path from the source to the folder that is being read. The name of the
/// outermost level is the whole path.
struct Level : OpenLevel {
  int error = 0;                 // errno that ended the listing early
  ListingPointer listing;        // listing that gives further parts; null: there are none
  std::list<ListingPart> parts;  // read parts; the walk is in the first
  std::size_t entry = 0;         // index of the next entry in the first part
  std::size_t subfolder = 0;     // index in the first part of the first subfolder from the current
                                 // entry on

  /// Whether the first part has no more entries.
  bool isPartRead() const { return entry == parts.front().batch.entries().size(); }
};

/// kNotSupported: the file system of the device holds no files of its own.
ErrorCode checkDevice(std::uint64_t device) {
  for (const Mount& mount : readMounts()) {
    if (mount.device == device && isPseudoFileSystem(mount.type)) return kNotSupported;
  }
  return kSuccess;
}

/// Opens the folder `path`, follows links, and reads which folder it is.
ErrorCode openFolder(std::string path, OpenLevel& level) {
  const PathAt at(std::move(path));
  if (at.error() != 0) return translateErrno(at.error());
  Descriptor folder(openat(at.folder(), at.name(), kOpenLevel));
  if (!folder) return translateErrno(errno);
  level.folder = std::make_shared<const Descriptor>(std::move(folder));
  return translateErrno(readIdentity(level.folder->get(), level.identity));
}

bool contains(const std::vector<FileIdentity>& folders, const FileIdentity& folder) {
  return std::find(folders.begin(), folders.end(), folder) != folders.end();
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
  ErrorCode openByName(Level& level);
  ErrorCode push(Level level);
  ErrorCode checkReparse(const Level& level);
  void readRest(Level& level);
  void reopenByNames();
  bool takePart(Level& level);
  ListingPointer* currentListing(Level& level);
  void passBy(Level& level);
  void dropFarthest();
  void drop(Level& level);

  const int helpers_;
  const WalkReach reach_;
  std::unique_ptr<ReadAhead> reader_;
  OpenLevels<Level> levels_;
  std::optional<std::vector<FileIdentity>> above_;  // folders that the source is in; empty: not
                                                    // needed yet
  const char* currentName_ = "";
  const FindData* current_ = nullptr;
  Text name_;
  bool nameConverted_ = false;
};

FolderWalk::Implementation::~Implementation() {
  for (Level& level : levels_)
    drop(level);
}

/// Chooses how to read the source, which was just opened.
void FolderWalk::Implementation::prepare(const Level& source) {
  for (Level& level : levels_)
    drop(level);
  levels_.clear();
  ReadPlan plan = planFor(source.folder->get(), source.identity.device);
  if (helpers_ >= 0) plan.helpers = unsigned(helpers_);
  plan.entersFolders = reach_ == WalkReach::Tree && plan.helpers > 0;
  reader_ = std::make_unique<ReadAhead>(plan);
}

/// Moves the next part of the listing to the level; false: there are no more parts.
bool FolderWalk::Implementation::takePart(Level& level) {
  if (level.listing == nullptr) return false;
  const bool isTaken = reader_->take(level.listing, level.parts);
  if (reader_->wasStarved()) dropFarthest();
  if (isTaken) return true;
  level.error = level.listing->error;
  level.listing.reset();
  return false;
}

/// Drops the listings that the walk needs last, to make room for those that it needs next. The walk
/// reads the dropped folders again.
void FolderWalk::Implementation::dropFarthest() {
  for (Level& level : levels_) {
    for (auto part = level.parts.rbegin(); part != level.parts.rend(); ++part) {
      for (auto at = part->subfolders.rbegin(); at != part->subfolders.rend(); ++at) {
        if (reader_->isHalfEmpty()) return;
        if (at->listing != nullptr) reader_->drop(std::move(at->listing));
      }
    }
  }
}

void FolderWalk::Implementation::drop(Level& level) {
  if (level.listing != nullptr) reader_->drop(std::move(level.listing));
  if (!level.parts.empty()) reader_->drop(level.parts);
}

/// Reads the rest of a level before its descriptor is closed.
void FolderWalk::Implementation::readRest(Level& level) {
  while (takePart(level)) {
  }
  reader_->dropWaiting(level.parts);
}

/// Adds a level whose folder is open or is read ahead.
ErrorCode FolderWalk::Implementation::push(Level level) {
  if (level.listing == nullptr) {
    level.listing = ReadAhead::begin(level.folder, level.identity.device);
  }
  const ListingPointer listing = level.listing;
  if (!takePart(level) && level.error != 0) return translateErrno(level.error);
  level.folder = listing->folder;
  levels_.push(std::move(level), [this](Level& outermost) { readRest(outermost); });
  return kSuccess;
}

ErrorCode FolderWalk::Implementation::openSource(TextView path) {
  Level level;
  level.name = toBytes(path);
  if (const ErrorCode error = openFolder(level.name, level); error != kSuccess) return error;
  above_.reset();
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

ErrorCode FolderWalk::Implementation::openByName(Level& level) {
  const int follow = current_->isReparse() ? 0 : O_NOFOLLOW;
  Descriptor folder(openat(levels_.back().folder->get(), currentName_, kOpenLevel | follow));
  if (!folder) return translateErrno(errno);
  level.folder = std::make_shared<const Descriptor>(std::move(folder));
  if (!current_->isReparse() && current_->statError == kSuccess) return kSuccess;
  if (const int error = readIdentity(level.folder->get(), level.identity); error != 0) {
    return translateErrno(error);
  }
  return checkReparse(level);
}

/// Whether a reparse folder that was just opened may be walked.
ErrorCode FolderWalk::Implementation::checkReparse(const Level& level) {
  const bool isOnTheWay = std::any_of(levels_.begin(), levels_.end(), [&](const Level& above) {
    return above.identity == level.identity;
  });
  if (!above_) above_ = foldersAbove(levels_.begin()->name);
  if (isOnTheWay || contains(*above_, level.identity)) return kLinkLoop;
  if (level.identity.device == levels_.back().identity.device) return kSuccess;
  return checkDevice(level.identity.device);
}

const FindData* FolderWalk::Implementation::next() {
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
ListingPointer* FolderWalk::Implementation::currentListing(Level& level) {
  if (level.parts.empty()) return nullptr;
  auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder == subfolders.size()) return nullptr;
  ListingPart::Subfolder& subfolder = subfolders[level.subfolder];
  return subfolder.entry + 1 == level.entry && subfolder.listing != nullptr ? &subfolder.listing
                                                                            : nullptr;
}

/// Moves past the current entry, which was opened or will never be opened.
void FolderWalk::Implementation::passBy(Level& level) {
  if (ListingPointer* const listing = currentListing(level)) reader_->drop(std::move(*listing));
  if (level.parts.empty()) return;
  const auto& subfolders = level.parts.front().subfolders;
  if (level.subfolder < subfolders.size() && subfolders[level.subfolder].entry + 1 == level.entry) {
    ++level.subfolder;
  }
}

void FolderWalk::Implementation::close() {
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

/// Opens the innermost level by its path, if the same folder is still there.
void FolderWalk::Implementation::reopenByNames() {
  std::string path;
  for (const Level& level : levels_) {
    if (!path.empty() && path.back() != '/') path.push_back('/');
    path += level.name;
  }
  OpenLevel found;
  const ErrorCode error = openFolder(std::move(path), found);
  if (error == kSuccess && found.identity == levels_.back().identity)
    levels_.back().folder = std::move(found.folder);
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

ErrorCode CheckReparseFolder(TextView path) {
  OpenLevel folder;
  if (const ErrorCode error = openFolder(toBytes(path), folder); error != kSuccess) return error;
  if (contains(foldersAbove(toBytes(path)), folder.identity)) return kLinkLoop;
  return checkDevice(folder.identity.device);
}

}  // namespace ombrelian::platform
