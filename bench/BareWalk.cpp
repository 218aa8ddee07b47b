// The limit that a single-threaded scan is measured against: list every folder, ask for type and
// size of every entry, add up, and do nothing else. It keeps one descriptor and one buffer
// for each level, so that every call names only one component; a real walker cannot do this, since
// a tree can have more levels than a process can have descriptors.
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t kBufferSize = 32 * 1024;

/// An open folder and the listing of it that is being read.
struct Level {
  int descriptor = -1;
  std::size_t position = 0;
  std::size_t filled = 0;
  std::unique_ptr<char[]> buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
};

struct Sums {
  std::uint64_t files = 0;
  std::uint64_t folders = 0;  ///< number of folders below the top folder
  std::uint64_t bytes = 0;    ///< apparent size of the files
};

[[noreturn]] void fail(const char* what) {
  std::perror(what);
  std::exit(1);
}

bool isDotOrDotDot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// The open levels, the deepest last. The buffer of a level that was left is used again.
class Stack {
 public:
  explicit Stack(const char* top) { enter(AT_FDCWD, top); }

  bool empty() const { return depth_ == 0; }

  void enter(int parent, const char* name) {
    if (depth_ == levels_.size()) levels_.emplace_back();
    Level& level = levels_[depth_++];
    level.descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (level.descriptor < 0) fail(name);
    level.position = level.filled = 0;
  }

  void leave() { close(levels_[--depth_].descriptor); }

  Level& current() { return levels_[depth_ - 1]; }

 private:
  std::vector<Level> levels_;
  std::size_t depth_ = 0;
};

/// Returns the next entry of the level, or null at its end.
const dirent64* nextEntry(Level& level) {
  if (level.position == level.filled) {
    const ssize_t got = getdents64(level.descriptor, level.buffer.get(), kBufferSize);
    if (got < 0) fail("getdents64");
    level.position = 0;
    level.filled = static_cast<std::size_t>(got);
    if (got == 0) return nullptr;
  }
  const auto* entry = reinterpret_cast<const dirent64*>(level.buffer.get() + level.position);
  level.position += entry->d_reclen;
  return entry;
}

Sums walk(const char* top) {
  Sums sums;
  Stack stack(top);
  while (!stack.empty()) {
    Level& level = stack.current();
    const dirent64* entry = nextEntry(level);
    if (!entry) {
      stack.leave();
      continue;
    }
    if (isDotOrDotDot(entry->d_name)) continue;
    struct statx status;
    if (statx(level.descriptor, entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_SIZE,
              &status) != 0) {
      fail(entry->d_name);
    }
    if (S_ISDIR(status.stx_mode)) {
      ++sums.folders;
      stack.enter(level.descriptor, entry->d_name);
    } else {
      ++sums.files;
      if (S_ISREG(status.stx_mode)) sums.bytes += status.stx_size;
    }
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
  if (argc != 2) {
    std::fprintf(stderr, "usage: bare_walk FOLDER\n");
    return 2;
  }
  const Sums sums = walk(argv[1]);
  std::printf("files %ju folders %ju bytes %ju peak_rss_kib %ld\n", std::uintmax_t{sums.files},
              std::uintmax_t{sums.folders}, std::uintmax_t{sums.bytes}, peakResidentKib());
}
