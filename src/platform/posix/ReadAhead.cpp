#include "platform/posix/ReadAhead.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>

#include <new>
#include <system_error>
#include <utility>

namespace ombrelian::platform {
namespace {

/// Bytes that the allocator and the order of work take for a subfolder, about.
constexpr std::size_t kSubfolderBytes = sizeof(Listing) + 128;

/// Whether a later try by the walk, which holds fewer folders open, may do better.
bool isShortage(int error) { return error == EMFILE || error == ENFILE || error == ENOMEM; }

bool canBeReadAhead(const FindData& entry) {
  return entry.isFolder() && !entry.isReparse() && entry.statError == kSuccess;
}

/// Whether something is opened or read by the entry's name later.
bool needsFolder(const EntryBatch::Entry& entry) {
  return entry.data.isFolder() || entry.data.isReparse();
}

/// Keeps signals for the thread of the program while it lives: new threads inherit what is blocked.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

ReadAhead::ReadAhead(const ReadPlan& plan) : plan_(plan) {}

ReadAhead::~ReadAhead() {
  {
    const Lock lock(mutex_);
    isStopping_ = true;
  }
  work_.notify_all();
  for (std::thread& helper : helpers_)
    helper.join();
}

ListingPointer ReadAhead::begin(SharedFolder folder, std::uint64_t device) {
  const ListingPointer listing = std::make_shared<Listing>();
  listing->marksEnd = marksEndOfFolder(folder->get());
  listing->folder = std::move(folder);
  listing->device = device;
  return listing;
}

bool ReadAhead::take(const ListingPointer& listing, std::list<ListingPart>& parts) {
  // What is whole belongs to the walk alone, so most folders need no lock.
  Lock lock(mutex_, std::defer_lock);
  if (!listing->isWhole.load(std::memory_order_acquire)) {
    lock.lock();
    for (;;) {
      const bool isUnderWay = !listing->parts.empty() || listing->isBeingListed;
      if (listing->parts.empty() ? listing->isComplete : listing->parts.front().isReady) break;
      if (isUnderWay) {
        waitFor(lock, *listing);
      } else {
        readOneself(lock, listing);
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

/// Works on what comes after it meanwhile; sleeps if there is nothing.
void ReadAhead::waitFor(Lock& lock, const Listing& listing) {
  if (const auto place = nextInOrder(); place != order_.end() && hasRoom()) {
    work(lock, place, ownReader_);
    return;
  }
  awaited_ = &listing;
  ready_.wait(lock);
  awaited_ = nullptr;
}

void ReadAhead::readOneself(Lock& lock, const ListingPointer& listing) {
  if (!listing->isWaiting) {
    listing->place = order_.insert(order_.begin(), listing);
    listing->isWaiting = true;
  }
  wasStarved_ = wasStarved_ || isResting_;
  work(lock, listing->place, ownReader_);
  if (helpers_.empty() && !order_.empty()) startHelpers();
}

void ReadAhead::startHelpers() {
  const SignalsBlocked signals;
  try {
    while (helpers_.size() < plan_.helpers)
      helpers_.emplace_back([this] { help(); });
  } catch (const std::system_error&) {
    return;  // fewer have to do; without any the walk does it all
  }
}

void ReadAhead::help() {
  EntryReader reader;
  Lock lock(mutex_);
  while (!isStopping_) {
    const auto place = nextInOrder();
    if (place != order_.end()) {
      // The walk looks for resting helpers after it made room, so the question comes once more.
      isResting_ = !hasRoom();
      if (!isResting_ || hasRoom()) {
        work(lock, place, reader);
        continue;
      }
    }
    ++idle_;
    work_.wait(lock);
    --idle_;
  }
}

/// The first place in the order at which no thread is; there are few before it that one is at.
ReadAhead::Order::iterator ReadAhead::nextInOrder() {
  auto place = order_.begin();
  while (place != order_.end() && (*place == nullptr || (*place)->isBeingListed))
    ++place;
  return place;
}

bool ReadAhead::hasRoom() const {
  return bytes_.load() < plan_.memory && descriptors_->load() < plan_.descriptors;
}

void ReadAhead::wakeHelper() {
  if (idle_ > 0) work_.notify_one();
}

/// Reads one part of the listing at `place`. Called and left with the mutex locked.
void ReadAhead::work(Lock& lock, Order::iterator place, EntryReader& reader) {
  const ListingPointer listing = *place;
  listing->isBeingListed = true;
  if (idle_ > 0 && nextInOrder() != order_.end() && hasRoom()) work_.notify_one();
  lock.unlock();
  std::list<ListingPart> fresh(1);
  ListingPart& part = fresh.front();
  const EntriesRead read = list(*listing, reader);
  if (isShortage(read.error) && &reader != &ownReader_ && listing->folder == nullptr) {
    lock.lock();
    giveBack(*listing);
    return;
  }
  if (!read.isEnd) {  // others may go on with the rest
    lock.lock();
    listing->isBeingListed = false;
    ++listing->partsInWork;
    listing->parts.splice(listing->parts.end(), fresh);
    const auto rest = place;
    place = order_.insert(place, nullptr);
    if (listing->isDropped) {
      listing->isWaiting = false;
      order_.erase(rest);
    }
    wakeHelper();
    lock.unlock();
  }
  int error = read.error;
  Order subfolders;
  try {
    subfolders = ask(*listing, reader, read.isEnd, part);
  } catch (const std::bad_alloc&) {
    part = ListingPart();
    error = ENOMEM;
  }
  lock.lock();
  if (error != 0) listing->error = error;
  if (read.isEnd) {
    listing->isBeingListed = false;
    listing->isWaiting = false;
    listing->isComplete = true;
    if (!part.batch.entries.empty()) listing->parts.splice(listing->parts.end(), fresh);
  } else {
    --listing->partsInWork;
  }
  part.isReady = true;
  if (!listing->isDropped) {
    bytes_ += part.bytes;
    if (!subfolders.empty()) wakeHelper();
    order_.splice(place, subfolders);
  }
  order_.erase(place);
  if (listing->isComplete && listing->partsInWork == 0) {
    listing->isWhole.store(true, std::memory_order_release);
  }
  if (awaited_ == listing.get()) ready_.notify_one();
}

/// Leaves to the walk what a helper has not the means for.
void ReadAhead::giveBack(Listing& listing) {
  listing.isBeingListed = false;
  listing.isWaiting = false;
  order_.erase(listing.place);
  if (awaited_ == &listing) ready_.notify_one();
}

SharedFolder ReadAhead::share(int fd) {
  ++*descriptors_;
  return SharedFolder(new Descriptor(fd), [count = descriptors_](const Descriptor* folder) {
    delete folder;
    --*count;
  });
}

/// Returns 0 or errno.
int ReadAhead::open(Listing& listing) {
  if (listing.folder != nullptr) return 0;
  const int fd = openat(listing.above->get(), listing.name.c_str(),
                        O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
  if (fd < 0) return errno;
  listing.folder = share(fd);
  listing.above.reset();
  return 0;
}

EntriesRead ReadAhead::list(Listing& listing, EntryReader& reader) {
  if (const int error = open(listing); error != 0) return {.isEnd = true, .error = error};
  ++listing.partsListed;
  return reader.list(listing.folder->get(), listing.marksEnd);
}

/// Fills the part and returns the listings of its subfolders.
ReadAhead::Order ReadAhead::ask(Listing& listing, EntryReader& reader, bool isEnd,
                                ListingPart& part) const {
  Order subfolders;
  if (listing.folder == nullptr) return subfolders;
  reader.ask(listing.folder->get(), listing.device, plan_.isInInodeOrder, part.batch);
  bool isFolderNeeded = !isEnd || listing.partsListed > 1;
  for (std::size_t i = 0; i < part.batch.entries.size(); ++i) {
    const EntryBatch::Entry& entry = part.batch.entries[i];
    isFolderNeeded = isFolderNeeded || needsFolder(entry);
    if (!canBeReadAhead(entry.data)) continue;
    ListingPointer below = std::make_shared<Listing>();
    below->above = listing.folder;
    below->name = part.batch.nameOf(entry);
    below->device = listing.device;
    below->marksEnd = listing.marksEnd;
    below->isWaiting = true;
    below->place = subfolders.insert(subfolders.end(), below);
    part.subfolders.push_back({std::uint32_t(i), std::move(below)});
  }
  if (!isFolderNeeded) listing.folder.reset();
  part.bytes = part.batch.bytes() + part.subfolders.size() * kSubfolderBytes;
  return subfolders;
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

void ReadAhead::drop(ListingPointer listing) {
  std::vector<ListingPointer> listings;
  listings.push_back(std::move(listing));
  dropAll(std::move(listings));
}

void ReadAhead::drop(std::list<ListingPart>& parts) {
  std::vector<ListingPointer> listings;
  for (ListingPart& part : parts) {
    for (ListingPart::Subfolder& subfolder : part.subfolders) {
      if (subfolder.listing != nullptr) listings.push_back(std::move(subfolder.listing));
    }
  }
  parts.clear();
  if (!listings.empty()) dropAll(std::move(listings));
}

void ReadAhead::dropWaiting(std::list<ListingPart>& parts) {
  const Lock lock(mutex_);
  for (ListingPart& part : parts) {
    for (ListingPart::Subfolder& subfolder : part.subfolders) {
      Listing* const listing = subfolder.listing.get();
      if (listing == nullptr || listing->isBeingListed || listing->partsListed > 0) continue;
      if (listing->isWaiting) order_.erase(listing->place);
      subfolder.listing.reset();
    }
  }
}

/// Takes one listing after the other apart, so that no depth of them is too deep for the stack.
void ReadAhead::dropAll(std::vector<ListingPointer> listings) {
  std::size_t bytes = 0;
  {
    const Lock lock(mutex_);
    while (!listings.empty()) {
      const ListingPointer listing = std::move(listings.back());
      listings.pop_back();
      bytes += dropOne(*listing, listings);
    }
  }
  release(bytes);
}

/// Hands what lies below it to `below`; returns the bytes that waited in it. A thread that is at
/// work on it throws away what it brings.
std::size_t ReadAhead::dropOne(Listing& listing, std::vector<ListingPointer>& below) {
  listing.isDropped = true;
  if (listing.isWaiting && !listing.isBeingListed) {
    listing.isWaiting = false;
    order_.erase(listing.place);
  }
  std::size_t bytes = 0;
  for (auto part = listing.parts.begin(); part != listing.parts.end();) {
    if (!part->isReady) {
      ++part;
      continue;
    }
    bytes += part->bytes;
    for (ListingPart::Subfolder& subfolder : part->subfolders)
      below.push_back(std::move(subfolder.listing));
    part = listing.parts.erase(part);
  }
  return bytes;
}

}  // namespace ombrelian::platform
