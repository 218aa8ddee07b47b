#include "platform/posix/EntryReader.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>

#include "platform/posix/Errors.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

/// Bytes that are enough for any entry. The kernel refuses a buffer that is too small for the next
/// entry.
constexpr std::size_t kLeastRoom = 4096;

/// Marks an entry that is gone, in place of the offset of its name.
constexpr std::uint32_t kGone = std::numeric_limits<std::uint32_t>::max();

const dirent64* entryAt(const char* buffer, std::size_t at) {
  return reinterpret_cast<const dirent64*>(buffer + at);
}

std::int64_t positionBehind(const char* buffer, std::size_t begin, std::size_t end) {
  const dirent64* last = nullptr;
  for (std::size_t at = begin; at < end; at += last->d_reclen)
    last = entryAt(buffer, at);
  return last == nullptr ? 0 : last->d_off;
}

}  // namespace

EntriesRead readEntries(int folder, char* buffer, bool marksEnd) {
  EntriesRead read;
  while (!read.isEnd && kEntryBufferSize - read.size >= kLeastRoom) {
    const ssize_t got = retried(
        [&] { return getdents64(folder, buffer + read.size, kEntryBufferSize - read.size); });
    if (got <= 0) {
      read.isEnd = true;
      if (got < 0 && errno != ENOENT) read.error = errno;
      return read;
    }
    const std::size_t begin = read.size;
    read.size += std::size_t(got);
    read.isEnd = marksEnd && positionBehind(buffer, begin, read.size) ==
                                 std::numeric_limits<std::int64_t>::max();
  }
  return read;
}

bool marksEndOfFolder(int fd) {
  struct statfs told;
  return retried([&] { return fstatfs(fd, &told); }) == 0 && told.f_type == EXT4_SUPER_MAGIC;
}

bool isDotEntry(const dirent64& entry) {
  const char* const name = entry.d_name;
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool askEntry(int folder, std::uint64_t device, const dirent64& entry, FindData& data) {
  const int error = readFindData(folder, entry.d_name, AT_SYMLINK_NOFOLLOW, device, data);
  if (error == 0) return true;
  if (error == ENOENT) return false;
  fillFromKind(entry.d_type, entry.d_name, data);
  data.statError = translateErrno(error);
  return true;
}

const EntriesRead& EntryReader::list(int folder, bool marksEnd) {
  return read_ = readEntries(folder, buffer_.get(), marksEnd);
}

EntryBatch::EntryBatch(std::size_t entries, std::size_t nameBytes)
    : memory_(std::make_unique_for_overwrite<std::byte[]>(entries * sizeof(Entry) + nameBytes)),
      count_(entries),
      namesAt_(entries * sizeof(Entry)) {
  std::uninitialized_default_construct_n(reinterpret_cast<Entry*>(memory_.get()), entries);
}

void EntryBatch::addName(Entry& entry, const char* name, std::size_t size) {
  entry.name = std::uint32_t(nameBytes_);
  std::memcpy(reinterpret_cast<char*>(memory_.get()) + namesAt_ + nameBytes_, name, size);
  nameBytes_ += size;
}

/// Finds the entries of the last list(); returns the number of bytes of all names.
std::size_t EntryReader::findEntries() {
  found_.clear();
  std::size_t nameBytes = 0;
  for (std::size_t at = 0; at < read_.size;) {
    const dirent64* const entry = entryAt(buffer_.get(), at);
    at += entry->d_reclen;
    if (isDotEntry(*entry)) continue;
    found_.push_back({entry, std::strlen(entry->d_name) + 1});
    nameBytes += found_.back().nameSize;
  }
  return nameBytes;
}

EntryBatch EntryReader::ask(int folder, std::uint64_t device, bool inInodeOrder) {
  const std::size_t nameBytes = findEntries();
  EntryBatch batch(found_.size(), nameBytes);
  const auto entries = batch.entries();
  bool isAnyGone = false;
  const auto askAt = [&](std::size_t i) {
    if (askEntry(folder, device, *found_[i].entry, entries[i])) {
      batch.addName(entries[i], found_[i].entry->d_name, found_[i].nameSize);
    } else {
      entries[i].name = kGone;
      isAnyGone = true;
    }
  };
  if (inInodeOrder) {
    order_.resize(found_.size());
    std::iota(order_.begin(), order_.end(), 0);
    std::sort(order_.begin(), order_.end(), [&](std::uint32_t left, std::uint32_t right) {
      return found_[left].entry->d_ino < found_[right].entry->d_ino;
    });
    std::for_each(order_.begin(), order_.end(), askAt);
  } else {
    for (std::size_t i = 0; i < found_.size(); ++i)
      askAt(i);
  }
  if (isAnyGone) batch.remove([](const EntryBatch::Entry& entry) { return entry.name == kGone; });
  return batch;
}

}  // namespace ombrelian::platform
