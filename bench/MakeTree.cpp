// make_tree FOLDER FILES FOLDERS [--flat]: makes a tree to measure with: FOLDERS folders below
// FOLDER, nested up to kMaximalDepth levels deep (--flat: all of them in FOLDER itself), and FILES
// sparse files in them, which take up no blocks. The same numbers give the same tree everywhere.
// FOLDER.made records the numbers of a finished tree, so that a second call has nothing to do.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kMaximalDepth = 8;
constexpr std::uint32_t kNone = UINT32_MAX;
constexpr std::int64_t kFirstDate = 1'104'537'600;  // 2005, in seconds since 1970
constexpr std::int64_t kLastDate = 1'767'225'600;   // 2026

struct Request {
  std::string folder;
  std::uint32_t files = 0;
  std::uint32_t folders = 0;
  bool flat = false;

  /// The contents of the marker file; its first number is the version of the trees made here.
  std::string signature() const {
    return "1 " + std::to_string(files) + " " + std::to_string(folders) + (flat ? " flat" : "") +
           "\n";
  }
};

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "make_tree: %s: %s\n", what.c_str(), std::strerror(errno));
  std::exit(1);
}

/// Pseudo-random numbers (splitmix64), which are the same with every standard library.
class Random {
 public:
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }

  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(((next() >> 32) * limit) >> 32);
  }

  bool oneIn(std::uint32_t chance) { return below(chance) == 0; }

 private:
  std::uint64_t state_ = 20'241'122;
};

constexpr auto kWords = std::to_array<std::string_view>(
    {"report", "invoice", "holiday", "project", "final",  "draft",   "meeting", "budget",
     "scan",   "backup",  "export",  "summary", "client", "archive", "photo",   "letter",
     "notes",  "module",  "library", "texture", "config", "chapter", "session", "measure",
     "plan",   "drawing", "index",   "cache",   "music",  "concert", "recipe",  "garden"});
constexpr auto kForeignWords = std::to_array<std::string_view>(
    {"Übersicht", "Straße", "café", "Ελλάδα", "отчёт", "写真", "보고서", "naïve", "🌂regen"});
constexpr auto kExtensions = std::to_array<std::string_view>(
    {".txt",  ".pdf", ".jpg",  ".jpg",  ".png", ".cpp", ".h",   ".o",   ".html", ".js",
     ".json", ".xml", ".docx", ".xlsx", ".mp3", ".mp4", ".zip", ".log", ".dat",  ""});

/// Appends a name of two or three words that the number makes unique within its folder. The words
/// are counted by characters: a name has 8 to 40 of them, extension included.
void appendName(std::string& name, std::uint32_t number, bool isFile, Random& random) {
  if (random.oneIn(12)) {
    name += kForeignWords[random.below(kForeignWords.size())];
  } else {
    name += kWords[random.below(kWords.size())];
  }
  constexpr std::string_view kJoints = "_- .";
  for (std::uint32_t more = 1 + random.below(2); more > 0; --more) {
    name += kJoints[random.below(kJoints.size())];
    name += kWords[random.below(kWords.size())];
  }
  name += '_';
  name += std::to_string(number);
  if (isFile) name += kExtensions[random.below(kExtensions.size())];
}

/// A size as disks hold them: mostly small, evenly spread over the powers of two, few large ones.
off_t randomSize(Random& random) {
  if (random.oneIn(40)) return 0;
  const std::uint32_t bits = random.oneIn(200) ? 20 + random.below(11) : random.below(21);
  const std::uint64_t floor = std::uint64_t{1} << bits;
  return static_cast<off_t>(floor + random.next() % floor);
}

timespec randomDate(Random& random) {
  const auto span = static_cast<std::uint32_t>(kLastDate - kFirstDate);
  return {.tv_sec = kFirstDate + random.below(span), .tv_nsec = 0};
}

/// The folders as an array that begins with the top folder. Folders of one parent form a linked
/// list.
struct Folder {
  std::uint32_t firstChild = kNone;
  std::uint32_t nextSibling = kNone;
  std::uint32_t files = 0;
  int depth = 0;
};

/// A folder that may still get children: often a recent one, so that busy places grow.
std::uint32_t chooseParent(const std::vector<Folder>& folders, Random& random) {
  const auto count = static_cast<std::uint32_t>(folders.size());
  for (;;) {
    const std::uint32_t recent = count < 64 || random.oneIn(3) ? count : 64;
    const std::uint32_t parent = count - 1 - random.below(recent);
    if (folders[parent].depth < kMaximalDepth) return parent;
    if (random.oneIn(8)) return 0;
  }
}

/// Distributes the files: most folders get a few, some get hundreds of times as many.
void dealFiles(std::vector<Folder>& folders, std::uint32_t files, Random& random) {
  std::vector<std::uint64_t> sums;
  sums.reserve(folders.size());
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const std::uint32_t size = 1u << random.below(random.oneIn(50) ? 12 : 6);
    sum += random.oneIn(5) && folders.size() > 1 ? 0 : 1 + random.below(size);
    sums.push_back(sum);
  }
  std::uint32_t dealt = 0;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const bool last = i + 1 == folders.size();
    const auto upTo = last ? files : static_cast<std::uint32_t>(sums[i] * files / (sum + 1));
    folders[i].files = upTo - dealt;
    dealt = upTo;
  }
}

std::vector<Folder> planFolders(const Request& request, Random& random) {
  std::vector<Folder> folders(1);
  folders.reserve(request.folders + std::size_t{1});
  for (std::uint32_t i = 1; i <= request.folders; ++i) {
    const std::uint32_t parent = request.flat ? 0 : chooseParent(folders, random);
    folders.push_back(
        {.nextSibling = folders[parent].firstChild, .depth = folders[parent].depth + 1});
    folders[parent].firstChild = i;
  }
  dealFiles(folders, request.files, random);
  return folders;
}

/// A folder that is being filled, and its child that is filled next.
struct OpenFolder {
  int descriptor = -1;
  std::uint32_t nextChild = kNone;
};

void makeFile(int folder, const std::string& name, Random& random) {
  const int file = openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (file < 0) fail(name);
  if (ftruncate(file, randomSize(random)) != 0) fail(name);
  const std::array<timespec, 2> dates = {randomDate(random), randomDate(random)};
  if (futimens(file, dates.data()) != 0 || close(file) != 0) fail(name);
}

OpenFolder makeFolder(int parent, const std::string& name, const Folder& plan, Random& random) {
  if (mkdirat(parent, name.c_str(), 0755) != 0) fail(name);
  const int descriptor = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) fail(name);
  std::string file;
  for (std::uint32_t i = 0; i < plan.files; ++i) {
    file.clear();
    appendName(file, i, true, random);
    makeFile(descriptor, file, random);
  }
  return {descriptor, plan.firstChild};
}

/// Sets the date of a full folder and closes it; each new entry would change the date.
void finishFolder(const OpenFolder& folder, Random& random) {
  const std::array<timespec, 2> dates = {randomDate(random), randomDate(random)};
  if (futimens(folder.descriptor, dates.data()) != 0) fail("folder date");
  close(folder.descriptor);
}

void makeTree(const Request& request) {
  Random random;
  const std::vector<Folder> folders = planFolders(request, random);
  std::vector<OpenFolder> open = {makeFolder(AT_FDCWD, request.folder, folders[0], random)};
  std::string name;
  while (!open.empty()) {
    OpenFolder& current = open.back();
    const std::uint32_t child = current.nextChild;
    if (child == kNone) {
      finishFolder(current, random);
      open.pop_back();
      continue;
    }
    current.nextChild = folders[child].nextSibling;
    name.clear();
    appendName(name, child, false, random);
    open.push_back(makeFolder(current.descriptor, name, folders[child], random));
  }
}

bool isMade(const Request& request) {
  std::ifstream marker(request.folder + ".made");
  const std::string held{std::istreambuf_iterator<char>(marker), {}};
  struct stat status {};
  return held == request.signature() && stat(request.folder.c_str(), &status) == 0;
}

bool parseNumber(std::string_view text, std::uint32_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number < UINT32_MAX;
}

std::optional<Request> parse(int argc, char** argv) {
  Request request;
  if (argc < 4 || argc > 5) return std::nullopt;
  request.folder = argv[1];
  while (request.folder.size() > 1 && request.folder.back() == '/')
    request.folder.pop_back();
  request.flat = argc == 5;
  if (!parseNumber(argv[2], request.files) || !parseNumber(argv[3], request.folders) ||
      (request.flat && std::string_view(argv[4]) != "--flat")) {
    return std::nullopt;
  }
  return request;
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<Request> request = parse(argc, argv);
  if (!request) {
    std::fprintf(stderr, "usage: make_tree FOLDER FILES FOLDERS [--flat]\n");
    return 2;
  }
  if (isMade(*request)) return 0;
  struct stat status {};
  if (stat(request->folder.c_str(), &status) == 0) {
    std::fprintf(stderr, "make_tree: %s is not the tree that is asked for; remove it first\n",
                 request->folder.c_str());
    return 1;
  }
  makeTree(*request);
  std::ofstream marker(request->folder + ".made");
  if (!(marker << request->signature() << std::flush)) fail(request->folder + ".made");
}
