// parallel_walk FOLDER THREADS: the limit that a scan with several threads is measured against:
// list every folder, ask for type and size of every entry, add up, and do nothing else. It
// keeps no order. Each thread keeps the folders that it found and gives half of them to threads
// that have none. It can also give away a full buffer of entries, so that one huge folder is
// shared.
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;

struct Sums {
  std::uint64_t files = 0;
  std::uint64_t folders = 0;  ///< number of folders below the top folder
  std::uint64_t bytes = 0;    ///< apparent size of the files
};

[[noreturn]] void fail(const char* what) {
  std::perror(what);
  std::exit(1);
}

/// An open folder, which the last owner closes.
class OpenFolder {
 public:
  OpenFolder(int parent, const char* name)
      : descriptor_(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
    if (descriptor_ < 0) fail(name);
  }
  ~OpenFolder() { close(descriptor_); }
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

using Folder = std::shared_ptr<OpenFolder>;
using Buffer = std::unique_ptr<char[]>;

/// A folder to read, named below `parent`, or entries of `parent` to ask about.
struct Item {
  Folder parent;
  std::string name;
  Buffer entries;  ///< null if this is a folder
  std::size_t size = 0;
};

/// The work that threads give to each other.
class Pool {
 public:
  explicit Pool(unsigned threads) : threads_(threads) {}

  bool isWanted() const { return waiting_.load(std::memory_order_relaxed) > 0; }

  void give(std::vector<Item> items) {
    {
      const std::lock_guard lock(mutex_);
      for (Item& item : items)
        items_.push_back(std::move(item));
    }
    changed_.notify_all();
  }

  /// Returns false if every thread waits, so that no more work can arrive.
  bool take(std::vector<Item>& items) {
    std::unique_lock lock(mutex_);
    ++waiting_;
    while (items_.empty()) {
      if (waiting_ == threads_) {
        changed_.notify_all();
        return false;
      }
      changed_.wait(lock);
    }
    --waiting_;
    items.push_back(std::move(items_.back()));
    items_.pop_back();
    return true;
  }

 private:
  const unsigned threads_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Item> items_;
  std::atomic<unsigned> waiting_ = 0;
};

bool isDotOrDotDot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// One thread of the walk.
class Worker {
 public:
  explicit Worker(Pool& pool) : pool_(pool) {}

  void run() {
    while (pool_.take(own_)) {
      while (!own_.empty()) {
        Item item = std::move(own_.back());
        own_.pop_back();
        if (item.entries) {
          ask(item.parent, item.entries.get(), item.size);
        } else {
          read(std::make_shared<OpenFolder>(item.parent ? item.parent->descriptor() : AT_FDCWD,
                                            item.name.c_str()));
        }
        share();
      }
    }
  }

  const Sums& sums() const { return sums_; }

 private:
  void read(const Folder& folder) {
    for (;;) {
      if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
      const ssize_t got = getdents64(folder->descriptor(), buffer_.get(), kBufferSize);
      if (got < 0) fail("getdents64");
      if (got == 0) return;
      const auto size = static_cast<std::size_t>(got);
      if (size > kBufferSize / 2 && pool_.isWanted()) {
        std::vector<Item> items;
        items.push_back({folder, "", std::move(buffer_), size});
        pool_.give(std::move(items));
      } else {
        ask(folder, buffer_.get(), size);
      }
    }
  }

  void ask(const Folder& folder, const char* entries, std::size_t size) {
    for (std::size_t at = 0; at < size;) {
      const auto* entry = reinterpret_cast<const dirent64*>(entries + at);
      at += entry->d_reclen;
      if (isDotOrDotDot(entry->d_name)) continue;
      struct statx status;
      if (statx(folder->descriptor(), entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_SIZE,
                &status) != 0) {
        fail(entry->d_name);
      }
      if (S_ISDIR(status.stx_mode)) {
        ++sums_.folders;
        own_.push_back({folder, entry->d_name, nullptr, 0});
      } else {
        ++sums_.files;
        if (S_ISREG(status.stx_mode)) sums_.bytes += status.stx_size;
      }
    }
  }

  /// Gives away the older half, which is nearer to the top and leads to more work.
  void share() {
    if (own_.size() < 2 || !pool_.isWanted()) return;
    const auto half = own_.begin() + static_cast<std::ptrdiff_t>(own_.size() / 2);
    std::vector<Item> items(std::make_move_iterator(own_.begin()), std::make_move_iterator(half));
    own_.erase(own_.begin(), half);
    pool_.give(std::move(items));
  }

  Pool& pool_;
  std::vector<Item> own_;
  Buffer buffer_;
  Sums sums_;
};

Sums walk(const char* top, unsigned threads) {
  Pool pool(threads);
  std::vector<Item> first;
  first.push_back({nullptr, top, nullptr, 0});
  pool.give(std::move(first));
  std::vector<std::unique_ptr<Worker>> workers;
  std::vector<std::thread> running;
  for (unsigned i = 0; i < threads; ++i) {
    workers.push_back(std::make_unique<Worker>(pool));
    running.emplace_back([worker = workers.back().get()] { worker->run(); });
  }
  Sums sums;
  for (unsigned i = 0; i < threads; ++i) {
    running[i].join();
    sums.files += workers[i]->sums().files;
    sums.folders += workers[i]->sums().folders;
    sums.bytes += workers[i]->sums().bytes;
  }
  return sums;
}

long peakResidentKib() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
  const int threads = argc == 3 ? std::atoi(argv[2]) : 0;
  if (threads < 1 || threads > 1024) {
    std::fprintf(stderr, "usage: parallel_walk FOLDER THREADS\n");
    return 2;
  }
  const Sums sums = walk(argv[1], static_cast<unsigned>(threads));
  std::printf("files %ju folders %ju bytes %ju peak_rss_kib %ld\n", std::uintmax_t{sums.files},
              std::uintmax_t{sums.folders}, std::uintmax_t{sums.bytes}, peakResidentKib());
}
