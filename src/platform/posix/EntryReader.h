#pragma once

#include <dirent.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Greatest number of bytes that one read of a folder returns: about 2,000 names.
inline constexpr std::size_t kEntryBufferSize = std::size_t(64) * 1024;

/// Result of one read of a folder.
struct EntriesRead {
  std::size_t size = 0;  // bytes of dirent64 records in the buffer
  bool isEnd = false;    // there are no more
  int error = 0;         // errno that ended the listing early; then isEnd is true too
};

/// Reads the next entries of the open folder into `buffer` of kEntryBufferSize bytes, in the format
/// of getdents64(2). The listing of a folder that was removed meanwhile ends without error.
/// `marksEnd`: see marksEndOfFolder.
EntriesRead readEntries(int folder, char* buffer, bool marksEnd);

/// Whether the file system of the open object marks the last entry of a folder as the last, as ext4
/// does. On other file systems only one more read shows that there are no more entries.
bool marksEndOfFolder(int fd);

/// Whether an entry is "." or "..".
bool isDotEntry(const dirent64& entry);

/// Reads the data of an entry of `folder`, which is on `device`. False: the entry is gone. If the
/// entry exists but its data cannot be read, `data` contains the kind and the error.
bool askEntry(int folder, std::uint64_t device, const dirent64& entry, FindData& data);

/// Part of a folder's listing in the order of the file system, in one piece of memory.
class EntryBatch {
 public:
  struct Entry : FindData {
    std::uint32_t name = 0;  // offset of the name in all names; it uses the padding of FindData
  };
  static_assert(sizeof(Entry) == sizeof(FindData));

  EntryBatch() = default;

  /// Makes room for a number of entries, which are empty at first, and for a number of bytes of
  /// names.
  EntryBatch(std::size_t entries, std::size_t nameBytes);

  std::span<Entry> entries() { return {reinterpret_cast<Entry*>(memory_.get()), count_}; }
  std::span<const Entry> entries() const {
    return {reinterpret_cast<const Entry*>(memory_.get()), count_};
  }

  /// Name of an entry, which ends in NUL. Valid as long as the batch exists.
  const char* nameOf(const Entry& entry) const { return names() + entry.name; }

  /// Adds the name of the next entry; `size` includes the NUL. The constructor must have made room
  /// for it.
  void addName(Entry& entry, const char* name, std::size_t size);

  /// Removes the entries for which `isGone` is true.
  template <class Predicate>
  void remove(Predicate isGone) {
    const auto all = entries();
    count_ = std::size_t(std::remove_if(all.begin(), all.end(), isGone) - all.begin());
  }

  /// Size of the memory in bytes.
  std::size_t bytes() const { return namesAt_ + nameBytes_; }

 private:
  const char* names() const { return reinterpret_cast<const char*>(memory_.get()) + namesAt_; }

  std::unique_ptr<std::byte[]> memory_;  // the entries, then the names
  std::size_t count_ = 0;
  std::size_t namesAt_ = 0;
  std::size_t nameBytes_ = 0;
};

/// Reads folders batch by batch. Only one thread may use a reader at a time.
class EntryReader {
 public:
  /// Reads the next entries of an open folder.
  const EntriesRead& list(int folder, bool marksEnd);

  /// Reads the data of all entries of the last list(). Entries that are gone, "." and ".." are left
  /// out. `inInodeOrder`: the data are read in the order in which the inodes are probably stored on
  /// the disk, which avoids most seeks of a spinning disk. The order of the result does not change.
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
  std::vector<std::uint32_t> order_;  // order in which the data of entries are read
};

}  // namespace ombrelian::platform
