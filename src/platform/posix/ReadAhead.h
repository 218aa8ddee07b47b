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

#include "platform/FolderWalk.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/EntryReader.h"
#include "platform/posix/OpenLevels.h"

namespace ombrelian::platform {

/// Whether `error`, an errno, means that the process or the system lacks descriptors or memory, so
/// that the same call may succeed when what was read ahead is dropped.
bool isShortage(int error);

/// How the folders of one source are read.
struct ReadPlan {
  unsigned helpers = 0;         // threads in addition to the thread of the walk
  unsigned processors = 1;      // more threads than this work only while they wait for the device
  bool entersFolders = true;    // false: subfolders are not read ahead
  bool walkHelps = true;        // the walk reads other folders while it waits for one
  bool isInInodeOrder = false;  // see EntryReader::ask
  std::size_t memory = std::size_t(16) << 20;  // limit of the bytes that wait for the walk
  unsigned descriptors = 256;                  // limit of the open folders that wait for it
  std::size_t levels = kMostOpenLevels;        // limit of the open folders on the walk's own path
  LeavesOut leavesOut = {};  // folders that the walk will not need; none: it may need all
};

struct Listing;
using ListingPointer = std::shared_ptr<Listing>;

/// A part of a listing, and the listings of its real subfolders. Links and mount points have no
/// listing here, because the walk itself decides about them.
struct ListingPart {
  struct Subfolder {
    std::uint32_t entry = 0;  // index in the batch
    ListingPointer listing;
  };

  EntryBatch batch;
  std::vector<Subfolder> subfolders;
  std::size_t bytes = 0;  // bytes that count towards ReadPlan::memory
  bool isReady = false;   // false: a thread works on the part
};

/// A place in the order of work: a node of a ring. It is not copyable, because other nodes point to
/// it.
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

/// A folder that is being read or will be read. The listing belongs to the walk before a thread
/// begins to read it and after it is whole. In between, the mutex of ReadAhead guards every member
/// for which no comment names another owner.
struct Listing : std::enable_shared_from_this<Listing> {
  // Data for opening the folder. They belong to the thread that reads it.
  SharedFolder above;  // null after the folder was read for the first time
  std::string name;
  std::uint64_t device = 0;
  bool marksEnd = false;  // see marksEndOfFolder
  Text path;              // full path, ends in a separator; only for ReadPlan::leavesOut
  std::uint32_t partsListed = 0;

  // The open folder. It belongs to the thread that reads it, then to the walk. It is null in a
  // whole listing if nothing in the folder can be opened.
  SharedFolder folder;

  int error = 0;  // errno of the failed opening, or of the error that ended the listing early

  ListingPointer nextToDrop;  // while listings are dropped

  std::list<ListingPart> parts;  // parts that the walk has not yet taken, in order
  WorkPlace place{this};         // place in the order while more entries can be listed
  bool isBeingListed = false;    // a thread lists it now
  bool isComplete = false;       // nothing is left to list
  bool isDropped = false;        // the walk does not need it any more
  unsigned partsInWork = 0;
  std::atomic<bool> isWhole = false;  // complete, and no thread works on any part
};

/// Reads folders before the walk comes to them. The walk is the only consumer: it takes the parts
/// of one listing after the other. If a part is not ready, the walk waits for it or reads it
/// itself. Helpers read what the walk will need next: the order of work is the order of the walk,
/// so a subfolder comes before the entries that follow it in its parent. The bytes and descriptors
/// that wait for the walk are limited; at the limit the helpers rest.
///
/// Only the thread of the walk may use the public members.
class ReadAhead {
 public:
  explicit ReadAhead(const ReadPlan& plan);

  /// Waits until all helpers have ended. Every listing must have been dropped or read before.
  ~ReadAhead();

  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// Makes a listing for a folder that the walk opened itself.
  static ListingPointer begin(SharedFolder folder, std::uint64_t device);

  /// Moves the next part of the listing to the end of `parts` and waits for it if necessary. False:
  /// there are no more parts; Listing::error contains the reason. If the listing is not complete,
  /// the reason is a shortage, and the walk may try again when it has made room.
  bool take(const ListingPointer& listing, std::list<ListingPart>& parts);

  /// Discards listings that the walk will not read, with everything below them.
  void drop(ListingPointer listing);
  void drop(std::list<ListingPart>& parts);

  /// Drops the subfolders that no thread has begun to read, so that they do not keep the folder
  /// above open.
  void dropWaiting(std::list<ListingPart>& parts);

  /// Drops all subfolders of parts that the walk has.
  void dropSubfolders(std::list<ListingPart>& parts);

  /// Ends the helpers for good; from now on the walk reads every folder itself. False: it does so
  /// already. The walk should then drop what was read ahead.
  bool standAlone();

  /// Whether the walk had to read a folder itself while the helpers rested at the limit, since the
  /// last call: the waiting parts are then needed too late.
  bool wasStarved() { return std::exchange(wasStarved_, false); }

  /// Whether less than half of the allowed bytes wait for the walk.
  bool isHalfEmpty() const { return bytes_.load() < plan_.memory / 2; }

 private:
  using Lock = std::unique_lock<std::mutex>;
  struct Work;

  void startHelpers();
  void help() noexcept;
  Listing* nextInOrder();
  bool hasRoom() const;
  int read(Lock& lock, Listing& listing, EntryReader& reader) noexcept;
  void readPart(Lock& lock, Work& work, EntryReader& reader);
  void list(Work& work, EntryReader& reader);
  void leaveRest(Work& work);
  void ask(Work& work, EntryReader& reader);
  void publish(Work& work);
  void giveBack(Work& work);
  void waitFor(Lock& lock, const Listing& listing);
  bool readOneself(Lock& lock, Listing& listing);
  void wakeHelper();
  void adapt(std::chrono::nanoseconds taken, std::size_t entries);
  void dropAll(ListingPointer chain) noexcept;
  std::size_t dropOne(Listing& listing, ListingPointer& chain);
  void release(std::size_t bytes);
  SharedFolder share(Descriptor folder);

  const ReadPlan plan_;
  EntryReader ownReader_;
  bool wasStarved_ = false;

  std::mutex mutex_;
  std::condition_variable work_;   // helpers wait on it
  std::condition_variable ready_;  // the walk waits on it
  WorkPlace order_{nullptr};       // end of the ring
  const Listing* awaited_ = nullptr;
  unsigned idle_ = 0;     // number of helpers that wait
  unsigned working_ = 0;  // number of helpers that read
  unsigned allowed_;      // number of helpers that may work at the same time
  int slowness_ = 0;      // see adapt()
  bool isStopping_ = false;

  std::atomic<std::size_t> bytes_ = 0;  // bytes that wait for the walk
  std::shared_ptr<std::atomic<unsigned>> descriptors_ = std::make_shared<std::atomic<unsigned>>(0);
  std::atomic<bool> isResting_ = false;  // a helper waits for room
  std::vector<std::thread> helpers_;
  bool isAlone_ = false;  // see standAlone()
};

}  // namespace ombrelian::platform
