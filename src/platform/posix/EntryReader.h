#pragma once

#include <dirent.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/FindData.h"

namespace ombrelian::platform {

/// Bytes of entries that one look into a folder brings at most: some 2,000 names. Larger buffers
/// were measured and bring nothing, see docs/performance.md.
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

/// Part of a folder's listing in the order of the file system.
struct EntryBatch {
  struct Entry {
    FindData data;
    std::uint32_t name = 0;  // where in `names` it begins
  };

  std::vector<Entry> entries;
  std::string names;  // each ends in NUL

  const char* nameOf(const Entry& entry) const { return names.data() + entry.name; }
  std::size_t bytes() const { return entries.capacity() * sizeof(Entry) + names.capacity(); }
};

/// Reads folders batch by batch. Not for several threads at a time.
class EntryReader {
 public:
  /// Reads the next entries of an open folder.
  const EntriesRead& list(int folder, bool marksEnd);

  /// Asks about all entries that the last list() brought. Entries that are gone, "." and ".." are
  /// left out. `inInodeOrder`: the questions go in the order in which the inodes are likely to lie
  /// on the disk, which spares a spinning one most of its seeks; the answer's order is the same.
  void ask(int folder, std::uint64_t device, bool inInodeOrder, EntryBatch& batch);

 private:
  void findEntries();

  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kEntryBufferSize);
  EntriesRead read_;
  std::vector<const dirent64*> found_;  // in buffer_
  std::vector<std::uint32_t> order_;    // of the questions
};

}  // namespace ombrelian::platform
