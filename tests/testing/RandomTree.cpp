#include "tests/testing/RandomTree.h"

#include <unistd.h>

#include <random>

namespace ombrelian::testing {
namespace {

constexpr int kFolders = 80;
constexpr int kLevelsOfChain = 70;
constexpr int kEntriesOfHugeFolder = 2500;

class Maker {
 public:
  Maker(const TestFolder& folder, unsigned seed) : folder_(folder), random_(seed) {}

  void make() {
    std::vector<std::string> folders = {""};
    for (int i = 0; i < kFolders; ++i) {
      folders.push_back(folders[below(unsigned(folders.size()))] + "d" + std::to_string(i) + "/");
      folder_.folder(folders.back());
      fill(folders.back(), below(4) == 0 ? 0 : below(12));
    }
    fill(folders[below(kFolders)], kEntriesOfHugeFolder);
    std::string chain = folders[below(kFolders)];
    for (int level = 0; level < kLevelsOfChain; ++level) {
      chain += "c" + std::to_string(level) + "/";
      fill(chain, below(3));
      folder_.folder(chain + "side");
    }
  }

 private:
  unsigned below(unsigned limit) { return unsigned(random_() % limit); }

  void fill(const std::string& where, unsigned entries) {
    folder_.folder(where);
    for (unsigned i = 0; i < entries; ++i) {
      const std::string name = where + std::string(below(40), 'n') + std::to_string(++made_);
      switch (below(12)) {
        case 0:
          folder_.symlink(name, below(2) == 0 ? ".." : "nowhere");
          break;
        case 1:
          folder_.folder(name);
          break;
        case 2:
          if (!last_.empty()) folder_.hardlink(name, last_);
          break;
        default:
          folder_.file(name + "." + std::to_string(below(5)), below(100'000));
          last_ = name + ".x";
          folder_.file(last_, below(9));
      }
    }
  }

  const TestFolder& folder_;
  std::mt19937 random_;
  int made_ = 0;
  std::string last_;  // the file that hardlinks refer to
};

}  // namespace

void makeRandomTree(const TestFolder& folder, unsigned seed) { Maker(folder, seed).make(); }

}  // namespace ombrelian::testing
