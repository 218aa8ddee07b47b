#include "platform/posix/ReadAhead.h"

#include <errno.h>
#include <fcntl.h>

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "platform/posix/Retried.h"
#include "platform/posix/SignalsBlocked.h"

namespace ombrelian::platform {
namespace {

/// Approximate number of bytes that a subfolder uses in the allocator and in the order of work.
constexpr std::size_t kSubfolderBytes = sizeof(Listing) + 128;

using Clock = std::chrono::steady_clock;

/// Longest time for a part if the kernel has all data in its caches, also on a busy machine. A
/// device needs several times as long for a single block.
constexpr std::chrono::nanoseconds kQuickFolder = std::chrono::microseconds(60);
constexpr std::chrono::nanoseconds kQuickEntry = std::chrono::microseconds(6);
constexpr int kSlowPartWeight = 4;      // a quick part reduces the slowness by 1
constexpr int kSlownessForMore = 16;    // slowness at which one more helper works
constexpr int kSlownessForFewer = -32;  // slowness at which one helper rests

/// Adds a listing to a chain of listings to drop.
void chainUp(ListingPointer listing, ListingPointer& chain) {
  if (listing == nullptr) return;
  listing->nextToDrop = std::move(chain);
  chain = std::move(listing);
}

bool canBeReadAhead(const FindData& entry) {
  return entry.isFolder() && !entry.isReparse() && entry.statError == kSuccess;
}

/// Whether something is later opened or read by the name of the entry.
bool needsFolder(const EntryBatch::Entry& entry) { return entry.isFolder() || entry.isReparse(); }

}  // namespace

bool isShortage(int error) { return error == EMFILE || error == ENFILE || error == ENOMEM; }

void WorkPlace::insertBefore(WorkPlace& place) {
  before = place.before;
  after = &place;
  before->after = this;
  place.before = this;
}

void WorkPlace::remove() {
  before->after = after;
  after->before = before;
  before = nullptr;
  after = nullptr;
}

ReadAhead::ReadAhead(const ReadPlan& plan)
    : plan_(plan), allowed_(std::clamp(plan.processors - 1, 1U, std::max(1U, plan.helpers))) {
  order_.before = &order_;
  order_.after = &order_;
}

ReadAhead::~ReadAhead() { standAlone(); }

bool ReadAhead::standAlone() {
  if (isAlone_) return false;
  {
    const Lock lock(mutex_);
    isStopping_ = true;
  }
  work_.notify_all();
  for (std::thread& helper : helpers_)
    helper.join();
  helpers_.clear();
  isAlone_ = true;
  return plan_.entersFolders;
}

ListingPointer ReadAhead::begin(SharedFolder folder, std::uint64_t device) {
  ListingPointer listing = std::make_shared<Listing>();
  listing->marksEnd = marksEndOfFolder(folder->get());
  listing->folder = std::move(folder);
  listing->device = device;
  return listing;
}

bool ReadAhead::take(const ListingPointer& listing, std::list<ListingPart>& parts) {
  // A whole listing belongs to the walk alone, so most folders need no lock.
  Lock lock(mutex_, std::defer_lock);
  if (!listing->isWhole.load(std::memory_order_acquire)) {
    lock.lock();
    for (;;) {
      const bool isUnderWay = !listing->parts.empty() || listing->isBeingListed;
      if (listing->parts.empty() ? listing->isComplete : listing->parts.front().isReady) break;
      if (isUnderWay) {
        waitFor(lock, *listing);
      } else if (!readOneself(lock, *listing)) {
        return false;
      }
    }
  }
  if (listing->parts.empty()) return false;
  const std::size_t bytes = listing->parts.front().bytes;
  parts.splice(parts.end(), listing->parts, listing->parts.begin());
  if (lock) lock.unlock();
  release(bytes);
  return true;
}

/// Waits for a part of the listing. Meanwhile the walk reads the next listing in the order, if the
/// plan wants this; it sleeps if there is none.
void ReadAhead::waitFor(Lock& lock, const Listing& listing) {
  Listing* const next = plan_.walkHelps ? nextInOrder() : nullptr;
  if (next != nullptr && hasRoom()) {
    read(lock, *next, ownReader_);
    return;
  }
  awaited_ = &listing;
  ready_.wait(lock);
  awaited_ = nullptr;
}

/// False: there was a shortage, and nothing was read.
bool ReadAhead::readOneself(Lock& lock, Listing& listing) {
  if (!listing.place.isInOrder()) listing.place.insertBefore(*order_.after);
  wasStarved_ = wasStarved_ || isResting_;
  const int shortage = read(lock, listing, ownReader_);
  if (shortage != 0) listing.error = shortage;
  if (helpers_.empty() && !isAlone_ && nextInOrder() != nullptr) startHelpers();
  return shortage == 0;
}

void ReadAhead::startHelpers() {
  const SignalsBlocked signals;
  try {
    helpers_.reserve(plan_.helpers);
    while (helpers_.size() < plan_.helpers)
      helpers_.emplace_back([this] { help(); });
  } catch (const std::exception&) {
    return;  // fewer helpers must be enough; without any the walk reads everything
  }
}

void ReadAhead::help() noexcept {
  std::optional<EntryReader> memory;
  try {
    memory.emplace();
  } catch (const std::bad_alloc&) {
    return;
  }
  EntryReader& reader = *memory;
  Lock lock(mutex_);
  while (!isStopping_) {
    Listing* const next = nextInOrder();
    if (next != nullptr && working_ < allowed_) {
      // The walk checks for resting helpers after it made room, so the room is checked once more.
      isResting_ = !hasRoom();
      if (!isResting_ || hasRoom()) {
        ++working_;
        read(lock, *next, reader);
        --working_;
        continue;
      }
    }
    ++idle_;
    work_.wait(lock);
    --idle_;
  }
}

/// The first listing in the order that no thread lists; null: none. Only a few places before it
/// belong to listings in work, so the search is short.
Listing* ReadAhead::nextInOrder() {
  for (WorkPlace* place = order_.after; place != &order_; place = place->after) {
    if (place->listing != nullptr && !place->listing->isBeingListed) return place->listing;
  }
  return nullptr;
}

/// Makes a shared folder, which counts as open until its last owner releases it.
SharedFolder ReadAhead::share(Descriptor folder) {
  struct CountedFolder : Descriptor {
    CountedFolder(Descriptor&& taken, std::shared_ptr<std::atomic<unsigned>> counter)
        : Descriptor(std::move(taken)), count(std::move(counter)) {
      ++*count;
    }
    ~CountedFolder() { --*count; }

    std::shared_ptr<std::atomic<unsigned>> count;
  };
  return std::make_shared<CountedFolder>(std::move(folder), descriptors_);
}

bool ReadAhead::hasRoom() const {
  return bytes_.load() < plan_.memory && descriptors_->load() < plan_.descriptors;
}

void ReadAhead::wakeHelper() {
  if (idle_ > 0 && working_ < allowed_) work_.notify_one();
}

/// Adapts the number of helpers to the device. While a device makes one thread wait, it can serve
/// other threads; without such waiting, more threads would only take processor time from each
/// other.
void ReadAhead::adapt(std::chrono::nanoseconds taken, std::size_t entries) {
  slowness_ += taken > kQuickFolder + kQuickEntry * entries ? kSlowPartWeight : -1;
  if (slowness_ >= kSlownessForMore) {
    slowness_ = 0;
    if (allowed_ < plan_.helpers) ++allowed_;
  } else if (slowness_ <= kSlownessForFewer) {
    slowness_ = 0;
    if (allowed_ > 1 && allowed_ >= plan_.processors) --allowed_;
  }
}

/// One part of a listing on its way to the walk.
struct ReadAhead::Work {
  explicit Work(ListingPointer toRead) : listing(std::move(toRead)), place(&listing->place) {}

  /// Whether another thread can begin again as if nothing had been read.
  bool canBeGivenBack() const { return !isBegun || (opensFolder && !isShared); }

  const ListingPointer listing;
  WorkPlace* place;             // work below the part is queued before this place
  WorkPlace ownPlace{nullptr};  // place of the part while other threads continue the listing
  const bool opensFolder = listing->folder == nullptr;  // this is the first part
  SharedFolder above;  // see Listing::above, while this part opens the folder
  Descriptor folder;   // the folder while only this part uses it
  EntriesRead read;
  int error = 0;                 // errno; if not 0, no part follows
  bool isBegun = false;          // entries were taken from the folder
  bool isShared = false;         // other threads may continue the listing
  std::list<ListingPart> fresh;  // the part while it is not shared
  ListingPart* part = nullptr;
};

/// Reads one part of the listing. The mutex is locked at the call and at the return. Returns 0, or
/// the errno of a shortage because of which nothing was read.
int ReadAhead::read(Lock& lock, Listing& listing, EntryReader& reader) noexcept {
  listing.isBeingListed = true;
  if (nextInOrder() != nullptr && hasRoom()) wakeHelper();
  Work work(listing.shared_from_this());
  lock.unlock();
  const Clock::time_point begin = Clock::now();
  try {
    readPart(lock, work, reader);
  } catch (const std::exception&) {
    work.error = ENOMEM;
    if (work.part != nullptr) *work.part = ListingPart();
  }
  const auto taken = Clock::now() - begin;
  lock.lock();
  if (isShortage(work.error) && work.canBeGivenBack()) {
    giveBack(work);
    return work.error;
  }
  adapt(taken, work.part->batch.entries().size());
  publish(work);
  return 0;
}

void ReadAhead::readPart(Lock& lock, Work& work, EntryReader& reader) {
  work.part = &work.fresh.emplace_back();
  list(work, reader);
  if (isShortage(work.error) && work.canBeGivenBack()) return;
  if (!work.read.isEnd) {
    lock.lock();
    leaveRest(work);
    lock.unlock();
  }
  ask(work, reader);
}

/// Lets other threads continue the listing after this part.
void ReadAhead::leaveRest(Work& work) {
  Listing& listing = *work.listing;
  listing.isBeingListed = false;
  work.isShared = true;
  ++listing.partsInWork;
  listing.parts.splice(listing.parts.end(), work.fresh);
  work.place = &work.ownPlace;
  work.place->insertBefore(listing.place);
  if (listing.isDropped) listing.place.remove();
  wakeHelper();
  if (awaited_ != nullptr) ready_.notify_one();  // the walk can read the rest too
}

void ReadAhead::publish(Work& work) {
  Listing& listing = *work.listing;
  if (work.error != 0) listing.error = work.error;
  if (work.read.isEnd) {
    listing.isBeingListed = false;
    listing.isComplete = true;
    if (!work.part->batch.entries().empty()) listing.parts.splice(listing.parts.end(), work.fresh);
  } else {
    --listing.partsInWork;
  }
  work.part->isReady = true;
  if (!listing.isDropped) {
    if (work.fresh.empty()) bytes_ += work.part->bytes;  // the part is in the listing
    for (const ListingPart::Subfolder& subfolder : work.part->subfolders)
      subfolder.listing->place.insertBefore(*work.place);
    if (!work.part->subfolders.empty()) wakeHelper();
  }
  work.place->remove();
  const bool hasMoreWork = awaited_ != nullptr && !work.part->subfolders.empty();
  if (awaited_ == &listing || hasMoreWork) ready_.notify_one();
  // After this store, the walk may take the part at any time without the mutex.
  if (listing.isComplete && listing.partsInWork == 0) {
    listing.isWhole.store(true, std::memory_order_release);
  }
}

/// Leaves a listing to the walk, because there are not enough descriptors or memory for it now.
void ReadAhead::giveBack(Work& work) {
  Listing& listing = *work.listing;
  if (work.isBegun) listing.partsListed = 0;
  if (work.opensFolder) listing.folder.reset();
  if (work.above != nullptr) listing.above = std::move(work.above);
  listing.isBeingListed = false;
  listing.place.remove();
  if (awaited_ == &listing) ready_.notify_one();
}

/// Opens the folder of the listing, if it is not open yet, and reads its next entries.
void ReadAhead::list(Work& work, EntryReader& reader) {
  Listing& listing = *work.listing;
  if (listing.folder == nullptr) {
    work.folder.reset(retried([&] {
      return openat(listing.above->get(), listing.name.c_str(), kOpenLevel | O_NOFOLLOW);
    }));
    if (!work.folder) {
      work.read.isEnd = true;
      work.error = errno;
      return;
    }
    work.above = std::move(listing.above);
  }
  work.isBegun = true;
  ++listing.partsListed;
  const int folder = work.folder ? work.folder.get() : listing.folder->get();
  work.read = reader.list(folder, listing.marksEnd);
  work.error = work.read.error;
  if (!work.read.isEnd && work.folder) listing.folder = share(std::move(work.folder));
}

/// Fills the part, and closes the folder if nothing is opened from it.
void ReadAhead::ask(Work& work, EntryReader& reader) {
  Listing& listing = *work.listing;
  if (!work.folder && listing.folder == nullptr) return;
  ListingPart& part = *work.part;
  const int folder = work.folder ? work.folder.get() : listing.folder->get();
  part.batch = reader.ask(folder, listing.device, plan_.isInInodeOrder);
  const auto entries = part.batch.entries();
  if (work.folder && std::any_of(entries.begin(), entries.end(), needsFolder)) {
    listing.folder = share(std::move(work.folder));
  }
  for (std::size_t i = 0; plan_.entersFolders && !isAlone_ && i < entries.size(); ++i) {
    if (!canBeReadAhead(entries[i])) continue;
    Text path;
    if (plan_.leavesOut) {
      const Text name = fromBytes(part.batch.nameOf(entries[i]));
      path = listing.path + name;
      if (plan_.leavesOut(name, path)) continue;
      path += u'/';
    }
    ListingPointer below = std::make_shared<Listing>();
    below->above = listing.folder;
    below->name = part.batch.nameOf(entries[i]);
    below->device = listing.device;
    below->marksEnd = listing.marksEnd;
    below->path = std::move(path);
    part.subfolders.push_back({std::uint32_t(i), std::move(below)});
  }
  part.bytes = part.batch.bytes() + part.subfolders.size() * kSubfolderBytes;
  work.folder.reset();
}

void ReadAhead::release(std::size_t bytes) {
  bytes_ -= bytes;
  if (!isResting_ || bytes_ > plan_.memory / 4 * 3 || *descriptors_ > plan_.descriptors / 4 * 3) {
    return;
  }
  const Lock lock(mutex_);
  isResting_ = false;
  wakeHelper();
}

void ReadAhead::drop(ListingPointer listing) { dropAll(std::move(listing)); }

void ReadAhead::drop(std::list<ListingPart>& parts) {
  dropSubfolders(parts);
  parts.clear();
}

void ReadAhead::dropSubfolders(std::list<ListingPart>& parts) {
  ListingPointer chain;
  for (ListingPart& part : parts) {
    for (ListingPart::Subfolder& subfolder : part.subfolders)
      chainUp(std::move(subfolder.listing), chain);
  }
  if (chain != nullptr) dropAll(std::move(chain));
}

void ReadAhead::dropWaiting(std::list<ListingPart>& parts) {
  const Lock lock(mutex_);
  for (ListingPart& part : parts) {
    for (ListingPart::Subfolder& subfolder : part.subfolders) {
      Listing* const listing = subfolder.listing.get();
      if (listing == nullptr || listing->isBeingListed || listing->partsListed > 0) continue;
      if (listing->place.isInOrder()) listing->place.remove();
      subfolder.listing.reset();
    }
  }
}

/// Drops a chain of listings and everything below them, without recursion, so that no depth
/// overflows the call stack, and without memory.
void ReadAhead::dropAll(ListingPointer chain) noexcept {
  std::size_t bytes = 0;
  {
    const Lock lock(mutex_);
    while (chain != nullptr) {
      const ListingPointer listing = std::move(chain);
      chain = std::move(listing->nextToDrop);
      bytes += dropOne(*listing, chain);
    }
  }
  release(bytes);
}

/// Drops one listing. Adds its subfolders to the chain and returns the number of bytes that waited
/// in it. A thread that works on the listing discards its result.
std::size_t ReadAhead::dropOne(Listing& listing, ListingPointer& chain) {
  listing.isDropped = true;
  if (listing.place.isInOrder() && !listing.isBeingListed) listing.place.remove();
  std::size_t bytes = 0;
  for (auto part = listing.parts.begin(); part != listing.parts.end();) {
    if (!part->isReady) {
      ++part;
      continue;
    }
    bytes += part->bytes;
    for (ListingPart::Subfolder& subfolder : part->subfolders)
      chainUp(std::move(subfolder.listing), chain);
    part = listing.parts.erase(part);
  }
  return bytes;
}

}  // namespace ombrelian::platform
