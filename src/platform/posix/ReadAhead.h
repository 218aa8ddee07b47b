#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/Descriptor.h"
#include "platform/posix/EntryReader.h"

namespace ombrelian::platform {

/// How the folders of one source are read.
struct ReadPlan {
  unsigned helpers = 0;         // threads beside the walk's own
  unsigned processors = 1;      // more threads work only while the device makes them wait
  bool entersFolders = true;    // if not, subfolders are left to the walk
  bool isInInodeOrder = false;  // see EntryReader::ask
  std::size_t memory = std::size_t(16) << 20;  // bytes that may wait for the walk
  unsigned descriptors = 256;                  // open folders that may wait for it
};

struct Listing;
using ListingPointer = std::shared_ptr<Listing>;

/// A stretch of a listing, and the listings of its real subfolders: not of links or mount points,
/// which the walk decides on itself.
struct ListingPart {
  struct Subfolder {
    std::uint32_t entry = 0;  // index in the batch
    ListingPointer listing;
  };

  EntryBatch batch;
  std::vector<Subfolder> subfolders;
  std::size_t bytes = 0;  // counted towards ReadPlan::memory
  bool isReady = false;   // if not, a thread works on the part
};

/// A place in the order of work: a link in a ring. Not copyable, as others point to it.
struct WorkPlace {
  explicit WorkPlace(Listing* toRead) : listing(toRead) {}
  WorkPlace(const WorkPlace&) = delete;
  WorkPlace& operator=(const WorkPlace&) = delete;

  bool isInOrder() const { return after != nullptr; }
  void insertBefore(WorkPlace& place);
  void remove();

  Listing* const
      listing;  // to be read on here; null: a part that a thread is at, or the ring's end
  WorkPlace* before = nullptr;
  WorkPlace* after = nullptr;
};

/// A folder that is read or will be. Before a thread begins on it and after it is whole it belongs
/// to the walk; in between the mutex of ReadAhead guards what its comment does not assign
/// elsewhere.
struct Listing : std::enable_shared_from_this<Listing> {
  // Where it is opened; the worker's.
  SharedFolder above;  // none once it is open
  std::string name;
  std::uint64_t device = 0;
  bool marksEnd = false;  // see marksEndOfFolder
  std::uint32_t partsListed = 0;

  // The worker's, then the walk's; none once it is whole if nothing in it can be opened.
  SharedFolder folder;

  int error = 0;  // errno that kept it from being opened or broke it off

  std::list<ListingPart> parts;  // parts that the walk has not taken, in order
  WorkPlace place{this};         // while more can be listed
  bool isBeingListed = false;    // a thread is at it
  bool isComplete = false;       // nothing is left to list
  bool isDropped = false;        // the walk passed it by
  unsigned partsInWork = 0;
  std::atomic<bool> isWhole = false;  // complete, and no thread is at work on any part
};

/// Reads folders before the walk comes to them. The walk is the one consumer: it asks for the parts
/// of one listing after the other, and what is not there yet it waits for or reads itself. Helpers
/// take what the walk will want next: the order of work is the order of the walk, so a subfolder
/// goes before what follows it in its parent. What waits for the walk is bounded in bytes and
/// descriptors; at the bound the helpers rest.
///
/// The public members are for the thread of the walk alone.
class ReadAhead {
 public:
  explicit ReadAhead(const ReadPlan& plan);

  /// Waits until no helper works any more. Every listing must have been dropped or read before.
  ~ReadAhead();

  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// A listing of a folder that the walk opened itself.
  static ListingPointer begin(SharedFolder folder, std::uint64_t device);

  /// Moves parts of the listing to the end of `parts`, waiting for them if need be. False: there
  /// are no more; Listing::error tells why.
  bool take(const ListingPointer& listing, std::list<ListingPart>& parts);

  /// The walk will not read these, nor anything below them.
  void drop(ListingPointer listing);
  void drop(std::list<ListingPart>& parts);

  /// Drops what is not begun, so that nothing keeps the folder above open.
  void dropWaiting(std::list<ListingPart>& parts);

  /// Whether the walk had to read a folder itself while the helpers rested on the bound since the
  /// last question: what waits is too far away.
  bool wasStarved() { return std::exchange(wasStarved_, false); }

  /// Whether less than half of what may wait does.
  bool isHalfEmpty() const { return bytes_.load() < plan_.memory / 2; }

 private:
  using Lock = std::unique_lock<std::mutex>;
  struct Work;

  void startHelpers();
  void help();
  Listing* nextInOrder();
  bool hasRoom() const;
  void read(Lock& lock, Listing& listing, EntryReader& reader);
  void list(Work& work, EntryReader& reader);
  void leaveRest(Work& work);
  void ask(Work& work, EntryReader& reader);
  void publish(Work& work);
  void giveBack(Listing& listing);
  void waitFor(Lock& lock, const Listing& listing);
  void readOneself(Lock& lock, Listing& listing);
  void wakeHelper();
  void adapt(std::chrono::nanoseconds taken, std::size_t entries);
  void dropAll(std::vector<ListingPointer> listings);
  std::size_t dropOne(Listing& listing, std::vector<ListingPointer>& below);
  void release(std::size_t bytes);
  SharedFolder share(Descriptor folder);

  const ReadPlan plan_;
  EntryReader ownReader_;
  bool wasStarved_ = false;

  std::mutex mutex_;
  std::condition_variable work_;   // helpers wait for it
  std::condition_variable ready_;  // the walk waits for it
  WorkPlace order_{nullptr};       // the ring's end
  const Listing* awaited_ = nullptr;
  unsigned idle_ = 0;     // helpers that wait
  unsigned working_ = 0;  // helpers that read
  unsigned allowed_;      // helpers that may work at a time
  int slowness_ = 0;      // see adapt
  bool isStopping_ = false;

  std::atomic<std::size_t> bytes_ = 0;  // bytes that wait for the walk
  std::shared_ptr<std::atomic<unsigned>> descriptors_ = std::make_shared<std::atomic<unsigned>>(0);
  std::atomic<bool> isResting_ = false;  // a helper waits for room
  std::vector<std::thread> helpers_;
};

}  // namespace ombrelian::platform
