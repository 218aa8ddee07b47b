#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/CStringCollection.h"
#include "tests/support/TestRules.h"

namespace ombrelian {
namespace {

/// The same operations on a collection and on a plain list; what both answer is compared.
class Model {
 public:
  Model(std::uint32_t seed, bool duplicates, std::int32_t mode, int keys)
      : random_(seed), keys_(keys), folds_(mode != 0), collection_(rules_) {
    collection_.AllowDuplicates = duplicates;
    collection_.setCompareMode(mode);
    collection_.Init(3, 1.1);  // grows by single slots at first
  }

  void step() {
    const auto kind = random_() % 100;
    // Phases of growth and of decline, so that the tree is emptied and filled again.
    const bool growing = ++steps_ / 5000 % 2 == 0;
    if (kind < (growing ? 60u : 25u)) {
      add();
    } else if (kind < 85) {
      remove(random_() % 2 == 0);
    } else if (kind < 95) {
      change();
    } else {
      look();
    }
    if (steps_ % 500 == 0 || items_.size() < 4) checkAll();
    ASSERT_EQ(collection_.Count(), std::int32_t(items_.size()));
  }

 private:
  struct Entry {
    Text key;
    Text item;
    std::int32_t tag;
  };

  Text randomKey() {
    static const char16_t letters[] = u"abAB\u00C4\u00E4";
    Text key(1, letters[random_() % 6]);
    key += toText(std::int64_t(random_() % unsigned(keys_)));
    return key;
  }
  Text fold(TextView key) const { return folds_ ? rules_.lower(key) : Text(key); }

  std::size_t find(TextView key) const {
    for (std::size_t i = 0; i < items_.size(); ++i) {
      if (fold(items_[i].key) == fold(key)) return i;
    }
    return items_.size();
  }

  void add() {
    const Entry entry{randomKey(), toText(steps_), steps_};
    const std::size_t holder = find(entry.key);
    const auto added = collection_.Add(entry.item, entry.key, entry.tag);
    if (holder < items_.size() && !collection_.AllowDuplicates) {
      ASSERT_EQ(added.NewNode, 0);
      ASSERT_NE(added.ExistingNode, 0);
      ASSERT_EQ(added.ExistingTag, items_[holder].tag);
      ASSERT_EQ(added.ExistingItem, items_[holder].item);
      return;
    }
    ASSERT_NE(added.NewNode, 0);
    ASSERT_EQ(added.ExistingNode, 0);
    items_.push_back(entry);
    ASSERT_EQ(*collection_.Key(std::int32_t(items_.size())), entry.key);
  }

  void remove(bool byKey) {
    if (items_.empty()) return;
    std::size_t victim = random_() % items_.size();
    const Text key = items_[victim].key;
    if (byKey) {
      victim = itemWithTag(*collection_.Tag(key));  // of equal keys, the one that a lookup finds
      ASSERT_EQ(fold(items_[victim].key), fold(key));
      ASSERT_FALSE(collection_.Remove(key));
    } else {
      ASSERT_FALSE(collection_.Remove(std::int32_t(victim) + 1));
    }
    items_.erase(items_.begin() + std::ptrdiff_t(victim));
    if (victim >= items_.size()) return;
    ASSERT_EQ(*collection_.Item(std::int32_t(victim) + 1), items_[victim].item);
  }

  void change() {
    if (items_.empty()) return;
    const std::size_t at = random_() % items_.size();
    items_[at].item = Text(u"changed").append(toText(steps_));
    ASSERT_FALSE(collection_.ChangeValues(std::int32_t(at) + 1, items_[at].item, items_[at].tag));
  }

  void look() {
    const Text key = randomKey();
    ASSERT_EQ(collection_.ExistKey(key), find(key) < items_.size());
    if (!collection_.ExistKey(key)) {
      ASSERT_EQ(*collection_.Tag(key), -1);
    }
  }

  void checkAll() {
    ASSERT_TRUE(collection_.verify()) << "step " << steps_;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const auto position = std::int32_t(i) + 1;
      ASSERT_EQ(*collection_.Key(position), items_[i].key);
      ASSERT_EQ(*collection_.Item(position), items_[i].item);
      ASSERT_EQ(*collection_.Tag(position), items_[i].tag);
      ASSERT_TRUE(collection_.ExistKey(items_[i].key));
    }
  }

  std::size_t itemWithTag(std::int32_t tag) const {
    std::size_t at = 0;
    while (at < items_.size() && items_[at].tag != tag) {
      ++at;
    }
    return at;
  }

  std::mt19937 random_;
  int keys_;
  bool folds_;
  TestRules rules_;
  CStringCollection collection_;
  std::vector<Entry> items_;
  std::int32_t steps_ = 0;
};

TEST(CStringCollectionRandomTest, AgreesWithAPlainListOverRandomOperations) {
  const struct {
    bool duplicates;
    std::int32_t mode;
    int keys;
  } cases[] = {{false, 1, 12}, {false, 0, 60}, {true, 1, 8}, {true, 0, 40}};
  for (const auto& c : cases) {
    Model model(20261122, c.duplicates, c.mode, c.keys);
    for (int step = 0; step < 50000; ++step) {
      model.step();
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace
}  // namespace ombrelian
