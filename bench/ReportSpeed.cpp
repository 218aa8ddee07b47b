// report_speed ROWS COLUMNS FORMAT TARGET: saves a folder report of ROWS made-up folders. COLUMNS
// is "default" (name and size) or "all"; FORMAT is an ending such as csv, or "loop": the default
// columns as CSV, written by the simplest loop that makes the same file. Prints seconds of CPU and
// of wall clock, the KiB by which the program's peak memory grew, and the bytes of the report.
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "export/FolderSave.h"

namespace {

using namespace ombrelian;

constexpr NodeIndex kFoldersInFolder = 10;

class Quiet : public UserInterface {
 public:
  void scanBegins() override {}
  void scanEnds() override {}
  void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override {}
  void saveProgress(std::uint64_t, std::uint64_t) override {}
  bool saveCancelled() override { return false; }
  void yield() override {}
  bool GetInputState() override { return false; }
  void message(TextView, Severity) override {}
  bool ask(TextView) override { return false; }
};

/// A tree of `rows` folders in which the first folders have the later ones as children.
void fill(FolderTree& tree, NodeIndex rows) {
  tree.addRoot(u"/srv/data/projects");
  for (NodeIndex i = 1; i < rows; ++i) {
    const NodeIndex node =
        tree.addChild((i - 1) / kFoldersInFolder, u"folder-" + toText(i * 7), true);
    FolderNode& folder = tree[node];
    folder.size = std::int64_t(i) * 104'729;
    folder.files = std::int32_t(i % 5000);
    folder.folders = std::int32_t(i % 300);
    folder.subfolders = std::int32_t(i % 40);
    folder.hardlinks = std::int32_t(i % 7);
    folder.attributes = 0x10;
    folder.owner = tree.ownerNumber(i % 3 == 0 ? u"root" : u"someone");
    folder.set(FolderNode::HasOwner);
    folder.dateModified = folder.dateCreate = folder.dateAccess =
        fileTimeFromUnix(1'600'000'000 + std::int64_t(i) * 61, 0);
  }
}

/// Writes the rows in order, one character after the other.
class SimpleLoop : public ReportSink {
 public:
  SimpleLoop(const FolderTree& tree, const char* target)
      : tree_(tree), file_(std::fopen(target, "wb")) {
    std::fputs("\xFF\xFE", file_);
    write(u"\"NAME\"\t\"GRÖßE (BYTES)\"\r\n");
  }
  ~SimpleLoop() override { std::fclose(file_); }
  SimpleLoop(const SimpleLoop&) = delete;
  SimpleLoop& operator=(const SimpleLoop&) = delete;

  bool beginSource(const ReportSource&) override { return true; }
  bool row(const ReportRow& row) override {
    write(u"\"");
    write(row.name);
    write(u"\"\t\"");
    write(toText(tree_[NodeIndex(row.index)].size));
    write(u"\"\r\n");
    return true;
  }
  void endSource() override {}

 private:
  void write(TextView text) {
    for (const char16_t unit : text) {
      std::fputc(unit & 0xFF, file_);
      std::fputc(unit >> 8, file_);
    }
  }

  const FolderTree& tree_;
  std::FILE* file_;
};

long peakKiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

bool save(const FolderTree& tree, const Options& options, const char* format, const char* target) {
  const FolderReport report(tree, options);
  if (std::strcmp(format, "loop") == 0) {
    SimpleLoop loop(tree, target);
    FolderFeed(report, {}, tree.firstRoot(), false).feed(loop);
    return true;
  }
  Quiet quiet;
  return !FolderSave(report, options, quiet).SAVE(fromBytes(target), kAllLevels, 2, {});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: report_speed ROWS default|all FORMAT TARGET\n");
    return 2;
  }
  FolderTree tree;
  fill(tree, NodeIndex(std::strtoul(argv[1], nullptr, 10)));
  Options options;
  if (std::strcmp(argv[2], "all") == 0) options.FolderColumnVisible.fill(1);
  const long before = peakKiB();
  const std::clock_t cpu = std::clock();
  const auto wall = std::chrono::steady_clock::now();
  if (!save(tree, options, argv[3], argv[4])) {
    std::fprintf(stderr, "report_speed: cannot save %s\n", argv[4]);
    return 1;
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - wall;
  struct stat told {};
  stat(argv[4], &told);
  std::printf("%.3f %.3f %ld %lld\n", double(std::clock() - cpu) / CLOCKS_PER_SEC, seconds.count(),
              peakKiB() - before, static_cast<long long>(told.st_size));
  return 0;
}
