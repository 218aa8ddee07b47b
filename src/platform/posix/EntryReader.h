#pragma once

#include <dirent.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Bytes of entries that one look into a folder brings at most: some 2,000 names.
inline constexpr std::size_t kEntryBufferSize = std::size_t(64) * 1024;

/// What a look into a folder brought.
struct EntriesRead {
  std::size_t size = 0;  // bytes of dirent64 records in the buffer
  bool isEnd = false;    // there are no more
  int error = 0;         // errno that broke the listing off; then isEnd holds too
};

/// Reads the next entries of the open folder into `buffer` of kEntryBufferSize bytes, as
/// getdents64(2) gives them. A folder that was removed meanwhile ends without error. `marksEnd`:
/// see marksEndOfFolder.
EntriesRead readEntries(int folder, char* buffer, bool marksEnd);

/// Whether the file system of the open object tells with the last entry of a folder that it is the
/// last, as ext4 does; elsewhere only another question tells.
bool marksEndOfFolder(int fd);

/// Whether an entry is "." or "..".
bool isDotEntry(const dirent64& entry);

/// Asks about an entry of `folder`, which lies on `device`. False: it is gone. If it is there but
/// cannot be asked about, `data` tells the kind and the error.
bool askEntry(int folder, std::uint64_t device, const dirent64& entry, FindData& data);

/// Part of a folder's listing in the order of the file system, in one piece of memory.
class EntryBatch {
 public:
  struct Entry : FindData {
    std::uint32_t name = 0;  // offset of the name among the names; it uses the padding of FindData
  };
  static_assert(sizeof(Entry) == sizeof(FindData));

  EntryBatch() = default;

  /// Room for so many entries, which are empty at first, and for so many bytes of names.
  EntryBatch(std::size_t entries, std::size_t nameBytes);

  std::span<Entry> entries() { return {reinterpret_cast<Entry*>(memory_.get()), count_}; }
  std::span<const Entry> entries() const {
    return {reinterpret_cast<const Entry*>(memory_.get()), count_};
  }

  /// Name of an entry, which ends in NUL. Valid as long as the batch.
  const char* nameOf(const Entry& entry) const { return names() + entry.name; }

  /// Adds the name of the next entry, NUL and all. Room for it was asked for before.
  void addName(Entry& entry, const char* name, std::size_t size);

  /// Leaves out the entries that `isGone` tells.
  template <class Predicate>
  void remove(Predicate isGone) {
    const auto all = entries();
    count_ = std::size_t(std::remove_if(all.begin(), all.end(), isGone) - all.begin());
  }

  /// Bytes of memory.
  std::size_t bytes() const { return namesAt_ + nameBytes_; }

 private:
  const char* names() const { return reinterpret_cast<const char*>(memory_.get()) + namesAt_; }

  std::unique_ptr<std::byte[]> memory_;  // the entries, then the names
  std::size_t count_ = 0;
  std::size_t namesAt_ = 0;
  std::size_t nameBytes_ = 0;
};

/// Reads folders batch by batch. Not for several threads at a time.
class EntryReader {
 public:
  /// Reads the next entries of an open folder.
  const EntriesRead& list(int folder, bool marksEnd);

  /// Asks about all entries that the last list() brought. Entries that are gone, "." and ".." are
  /// left out. `inInodeOrder`: the questions go in the order in which the inodes are likely to lie
  /// on the disk, which spares a spinning one most of its seeks; the answer's order is the same.
  EntryBatch ask(int folder, std::uint64_t device, bool inInodeOrder);

 private:
  std::size_t findEntries();

  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kEntryBufferSize);
  EntriesRead read_;
  struct Found {
    const dirent64* entry;  // points into buffer_
    std::size_t nameSize;   // length with the final NUL
  };

  std::vector<Found> found_;
  std::vector<std::uint32_t> order_;  // order in which entries are asked about
};

}  // namespace ombrelian::platform
