#include "support/CStringCollection.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "tests/support/TestRules.h"

namespace ombrelian {
namespace {

Text told(const Failure& failure) {
  return failure ? toText(failure->number) + u" " + failure->source + u", " + failure->text : u"";
}

class CStringCollectionTest : public ::testing::Test {
 protected:
  const TestRules rules;
  CStringCollection collection{rules};
};

TEST_F(CStringCollectionTest, KeepsItsRulesWithManyKeysInAnyOrderOfArrival) {
  for (const int stride : {1, 7919, 9999}) {  // rising, scattered and falling keys
    collection.Clear();
    for (std::int64_t i = 0; i < 10000; ++i)
      collection.Add({}, Text(u"key").append(toText(i * stride % 10000)), std::int32_t(i));
    ASSERT_TRUE(collection.verify());
    EXPECT_EQ(collection.Count(), 10000);
    EXPECT_EQ(*collection.Tag(u"KEY0"), 0);
    while (collection.Count() > 0) {
      ASSERT_FALSE(collection.Remove((collection.Count() + 1) / 2));
      ASSERT_TRUE(collection.Count() % 1000 != 0 || collection.verify());
    }
    EXPECT_FALSE(collection.ExistKey(u"key0"));
  }
}

TEST_F(CStringCollectionTest, GrowsAsItsFactorSaysAndReusesFreedSlots) {
  EXPECT_EQ(collection.capacity(), 0);
  for (std::int64_t i = 1; i <= 100; ++i)
    collection.Add({}, toText(i), 0);
  EXPECT_EQ(collection.capacity(), 100);
  EXPECT_EQ(collection.Add({}, u"101", 0).NewNode, 101);
  EXPECT_EQ(collection.capacity(), 150);
  for (std::int64_t i = 0; i < 1000; ++i) {
    collection.Remove(1);
    collection.Add({}, Text(u"n").append(toText(i)), 0);
  }
  EXPECT_EQ(collection.capacity(), 150);
  collection.Clear();
  EXPECT_EQ(collection.capacity(), 0);
  EXPECT_EQ(collection.Count(), 0);
  EXPECT_FALSE(collection.ExistKey(u"n999"));
  EXPECT_EQ(collection.Add({}, u"again", 0).NewNode, 1);
  EXPECT_EQ(collection.capacity(), 100);

  EXPECT_EQ(grownBound(1, 1.5), 2);
  EXPECT_EQ(grownBound(75, 1.5), 112);
  EXPECT_EQ(grownBound(10, 0.5), 11);
  EXPECT_GT(grownBound(2'000'000'000, 1.5), 2'000'000'000);
}

TEST_F(CStringCollectionTest, ComparesKeysByMode) {
  const struct {
    std::int32_t mode;
    TextView stored, asked;
    bool isSame;
  } cases[] = {{1, u"Foo", u"FOO", true},
               {2, u"Foo", u"fOO", true},
               {0, u"Foo", u"FOO", false},
               {1, u"x\u00C4B", u"X\u00E4b", true},
               {0, u"x\u00C4B", u"x\u00E4B", false},
               {1, u"fo[", u"fo{", false},
               {1, u"foo", u"foo ", false},
               {1, u"foo", u"foo\u00C4", false}};
  for (const auto& c : cases) {
    collection.Clear();
    collection.setCompareMode(c.mode);
    collection.Add(u"value", c.stored, 7);
    EXPECT_EQ(collection.ExistKey(c.asked), c.isSame) << toBytes(c.asked);
    EXPECT_EQ(*collection.Key(1), c.stored);
  }
}

TEST_F(CStringCollectionTest, FindsEveryKeyWhereLowerCaseDependsOnWhatFollows) {
  const TestRules turkish(true);
  CStringCollection dotless(turkish);
  std::vector<Text> keys = {u""};
  for (std::size_t i = 0; keys[i].size() < 4; ++i) {
    for (const char16_t unit : {u'I', u'i', u'\u0131', u'\u0307', u'x'})
      keys.push_back(keys[i] + unit);
  }
  keys.erase(keys.begin());
  std::set<Text> lowered;
  for (const Text& key : keys)
    EXPECT_EQ(dotless.Add({}, key, 0).NewNode != 0, lowered.insert(turkish.lower(key)).second);
  for (const Text& key : keys)
    EXPECT_TRUE(dotless.ExistKey(key));
  EXPECT_TRUE(dotless.verify());
}

TEST_F(CStringCollectionTest, SortsItemsAndKeepsEqualOnesInTheirOrder) {
  std::mt19937 random(7);
  for (const bool isBinary : {false, true}) {
    collection.Clear();
    std::vector<std::pair<Text, std::int32_t>> expected;
    CStringCollection::AddOptions sorted;
    sorted.Sorted = true;
    sorted.SortCompare = isBinary ? 0 : 1;
    for (std::int32_t tag = 0; tag < 2000; ++tag) {
      const Text item(random() % 4, u"aAbB"[random() % 4]);
      expected.emplace_back(item, tag);
      ASSERT_NE(collection.Add(item, {}, tag, sorted).NewNode, 0);
    }
    std::stable_sort(expected.begin(), expected.end(), [&](const auto& a, const auto& b) {
      return rules.compare(a.first, b.first, isBinary) < 0;
    });
    std::int32_t position = 0;
    for (const auto& [item, tag] : expected) {
      ASSERT_EQ(*collection.Item(++position), item);
      ASSERT_EQ(*collection.Tag(position), tag);
    }
  }
}

TEST_F(CStringCollectionTest, InsertsBesideAnotherItem) {
  collection.Add(u"1", u"one", 0);
  collection.Add(u"3", u"2", 0);  // a key may consist of digits
  CStringCollection::AddOptions options;
  options.After = u"ONE";
  collection.Add(u"2", u"two", 0, options);
  options.After.reset();
  options.Before = 1;
  collection.Add(u"0", u"zero", 0, options);
  for (std::int32_t i = 0; i < 4; ++i)
    EXPECT_EQ(*collection.Item(i + 1), toText(i));
  EXPECT_EQ(*collection.Item(u"2"), u"3");
  EXPECT_TRUE(collection.Item(0)->empty() && collection.Item(5)->empty());
  EXPECT_TRUE(collection.verify());

  // An unknown neighbour gives the position without a new entry.
  options.Before = u"nowhere";
  const auto quiet = collection.Add(u"x", u"x", 0, options);
  EXPECT_EQ(quiet.NewNode, 0);
  EXPECT_FALSE(quiet.error);
  EXPECT_EQ(collection.Count(), 5);
  EXPECT_FALSE(collection.ExistKey(u"x"));
  options.RaiseOnDuplicate = true;
  EXPECT_EQ(told(collection.Add(u"x", u"x", 0, options).error),
            u"2 CStringCollection.Add, Key not found before: nowhere");
  options.Before.reset();
  options.After = 99;
  EXPECT_EQ(told(collection.Add(u"x", u"x", 0, options).error),
            u"2 CStringCollection.Add, Key not found after: 99");
}

TEST_F(CStringCollectionTest, ErrorsNameWhatWasAskedFor) {
  CStringCollection& c = collection;
  c.Add(u"item", u"Key", 5);
  EXPECT_EQ(told(c.setItem(u"no", u"x")), u"2 Let Item, Key: no");
  EXPECT_EQ(told(c.ChangeValues(9, u"x", 0)), u"2 ChangeValues, Key: 9");
  EXPECT_EQ(told(c.Key(2).error()), u"1 Get Key, Index: 2");
  EXPECT_EQ(told(c.Key(-1).error()), u"1 Get Key, Index: -1");
  EXPECT_EQ(told(c.setKey(2, u"x")), u"1 Let Key, Index: 2");
  EXPECT_EQ(told(c.setKey(1, u"KEY")), u"8 Let Key, Index: 1 NewKey: KEY");
  EXPECT_EQ(*c.Key(0), u"");
  EXPECT_FALSE(c.setKey(1, u"new"));
  EXPECT_EQ(*c.Key(1), u"Key");

  EXPECT_EQ(*c.Item(u"no"), u"");
  EXPECT_EQ(*c.Tag(u"no"), -1);
  EXPECT_FALSE(c.setTag(u"no", false, 1) || c.Remove(u"no"));
  c.setRaiseError(true);
  EXPECT_EQ(told(c.Item(u"no").error()), u"2 Get Item, Key: no");
  EXPECT_EQ(told(c.Tag(u"no").error()), u"2 Get Tag, Key: no");
  EXPECT_EQ(told(c.setTag(u"no", false, 7)), u"2 Let Tag, Key: no NewTag: 7");
  EXPECT_EQ(told(c.Remove(u"no")), u"2 Remove, Key: no");
  EXPECT_EQ(*c.Tag(u"no", true), -1);
  EXPECT_FALSE(c.setTag(u"no", true, 7));

  CStringCollection::AddOptions raise;
  raise.RaiseOnDuplicate = true;
  const auto again = c.Add(u"x", u"kEY", 0, raise);
  EXPECT_EQ(told(again.error), u"8 CStringCollection.Add, Duplicate KeyA: kEY");
  EXPECT_EQ(again.ExistingTag, 5);
  c.setCompareMode(0);
  EXPECT_EQ(told(c.Add(u"x", u"Key", 0, raise).error),
            u"8 CStringCollection.Add, Duplicate KeyB: Key");
  c.AllowDuplicates = true;
  EXPECT_FALSE(c.Add(u"x", u"Key", 0, raise).error);
  EXPECT_FALSE(c.setKey(2, u"Key"));
}

/// Compares the results of the same operations on a collection and on a plain list.
void compareWithList(bool duplicates, std::int32_t mode, unsigned keys) {
  struct Entry {
    Text key, item;
    std::int32_t tag;
  };
  std::vector<Entry> list;
  const TestRules rules;
  CStringCollection collection(rules);
  collection.AllowDuplicates = duplicates;
  collection.setCompareMode(mode);
  collection.Init(3, 1.1);  // at first the collection grows by single slots
  const auto fold = [&](TextView key) { return mode != 0 ? rules.lower(key) : Text(key); };
  std::mt19937 random(20261122);
  for (std::int32_t step = 1; step <= 50000; ++step) {
    Text key(1, u"abAB\u00C4\u00E4"[random() % 6]);
    key += toText(std::int64_t(random() % keys));
    const auto hasKey = [&, folded = fold(key)](const Entry& e) { return fold(e.key) == folded; };
    const auto holder = std::find_if(list.begin(), list.end(), hasKey);
    ASSERT_EQ(collection.ExistKey(key), holder != list.end());
    // The collection grows and shrinks in phases, so that the tree is emptied and filled again.
    const auto deed = random() % 100;
    const bool isGrowing = step / 5000 % 2 == 0;
    const std::size_t at = list.empty() ? 0 : random() % list.size();
    const auto position = std::int32_t(at) + 1;
    if (deed < (isGrowing ? 60U : 25U)) {
      const auto added = collection.Add(toText(step), key, step);
      ASSERT_EQ(added.NewNode != 0, holder == list.end() || duplicates);
      if (added.NewNode == 0) {
        ASSERT_NE(added.ExistingNode, 0);
        ASSERT_EQ(added.ExistingTag, holder->tag);
        ASSERT_EQ(added.ExistingItem, holder->item);
      } else {
        list.push_back({key, toText(step), step});
      }
    } else if (deed < 85 && deed % 2 == 0 && holder != list.end()) {
      const std::int32_t tag = *collection.Tag(key);  // the entry that is found
      ASSERT_FALSE(collection.Remove(key));
      ASSERT_EQ(std::erase_if(list, [&](const Entry& e) { return e.tag == tag && hasKey(e); }), 1U);
    } else if (deed < 85 && !list.empty()) {
      ASSERT_FALSE(collection.Remove(position));
      list.erase(list.begin() + std::ptrdiff_t(at));
    } else if (!list.empty()) {
      list[at].item = u"changed" + toText(step);
      ASSERT_FALSE(collection.ChangeValues(position, list[at].item, list[at].tag));
    }
    ASSERT_EQ(collection.Count(), std::int32_t(list.size()));
    if (step % 500 != 0 && list.size() > 3) continue;
    ASSERT_TRUE(collection.verify()) << "step " << step;
    for (std::int32_t i = 1; i <= collection.Count(); ++i) {
      const Entry& entry = list[std::size_t(i) - 1];
      ASSERT_EQ(*collection.Key(i), entry.key);
      ASSERT_EQ(*collection.Item(i), entry.item);
      ASSERT_EQ(*collection.Tag(i), entry.tag);
      ASSERT_TRUE(collection.ExistKey(entry.key));
    }
  }
}

TEST_F(CStringCollectionTest, AgreesWithAPlainListOverRandomOperations) {
  compareWithList(false, 1, 12);
  compareWithList(false, 0, 60);
  compareWithList(true, 1, 8);
  compareWithList(true, 0, 40);
}

}  // namespace
}  // namespace ombrelian
