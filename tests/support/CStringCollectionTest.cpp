#include "support/CStringCollection.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "tests/support/TestRules.h"

namespace ombrelian {
namespace {

std::vector<Text> itemsOf(const CStringCollection& collection) {
  std::vector<Text> items;
  for (std::int32_t i = 1; i <= collection.Count(); ++i) {
    items.emplace_back(*collection.Item(i));
  }
  return items;
}

void expectError(const Failure& failure, std::int32_t number, TextView source, TextView text) {
  ASSERT_TRUE(failure.has_value()) << toBytes(source);
  EXPECT_EQ(failure->number, number) << toBytes(source);
  EXPECT_EQ(failure->source, source);
  EXPECT_EQ(failure->text, text);
}

template <class T>
Failure failureOf(const Result<T>& result) {
  return result ? Failure() : Failure(result.error());
}

TEST(CStringCollectionTest, KeepsItsRulesWithManyKeysInAnyOrderOfArrival) {
  const TestRules rules;
  for (const int stride : {1, 7919, 9999}) {  // rising, scattered, falling
    CStringCollection collection(rules);
    for (std::int64_t i = 0; i < 10000; ++i) {
      collection.Add({}, Text(u"key").append(toText(i * stride % 10000)), std::int32_t(i));
    }
    ASSERT_TRUE(collection.verify());
    EXPECT_EQ(collection.Count(), 10000);
    EXPECT_EQ(*collection.Tag(u"KEY0"), 0);
    while (collection.Count() > 0) {
      ASSERT_FALSE(collection.Remove((collection.Count() + 1) / 2));
      if (collection.Count() % 1000 == 0) {
        ASSERT_TRUE(collection.verify());
      }
    }
    EXPECT_FALSE(collection.ExistKey(u"key0"));
  }
}

TEST(CStringCollectionTest, GrowsAsItsFactorSaysAndReusesFreedSlots) {
  const TestRules rules;
  CStringCollection collection(rules);
  EXPECT_EQ(collection.capacity(), 0);
  for (std::int64_t i = 1; i <= 100; ++i) {
    collection.Add({}, toText(i), 0);
  }
  EXPECT_EQ(collection.capacity(), 100);
  const auto added = collection.Add({}, u"101", 0);
  EXPECT_EQ(added.NewNode, 101);
  EXPECT_EQ(collection.capacity(), 150);
  collection.Remove(u"101");
  EXPECT_LE(collection.Add({}, u"again", 0).NewNode, 101);
  for (std::int64_t i = 0; i < 1000; ++i) {
    collection.Remove(1);
    collection.Add({}, Text(u"n").append(toText(i)), 0);
  }
  EXPECT_EQ(collection.capacity(), 150);
  collection.Clear();
  EXPECT_EQ(collection.capacity(), 0);
  EXPECT_EQ(collection.Count(), 0);
  EXPECT_FALSE(collection.ExistKey(u"again"));
  EXPECT_EQ(collection.Add({}, u"again", 0).NewNode, 1);
  EXPECT_EQ(collection.capacity(), 100);

  EXPECT_EQ(grownBound(1, 1.5), 2);
  EXPECT_EQ(grownBound(75, 1.5), 112);
  EXPECT_EQ(grownBound(10, 0.5), 11);
  EXPECT_GT(grownBound(2'000'000'000, 1.5), 2'000'000'000);
}

TEST(CStringCollectionTest, ComparesKeysByMode) {
  const TestRules rules;
  const struct {
    std::int32_t mode;
    TextView stored;
    TextView asked;
    bool same;
  } cases[] = {
      {1, u"Foo", u"FOO", true},
      {2, u"Foo", u"fOO", true},
      {0, u"Foo", u"FOO", false},
      {1, u"x\u00C4B", u"X\u00E4b", true},
      {0, u"x\u00C4B", u"x\u00E4B", false},
      {1, u"[", u"{", false},  // 32 apart like the letters
      {1, u"foo", u"foo ", false},
      {1, u"foo", u"foo\u00C4", false},
  };
  for (const auto& c : cases) {
    CStringCollection collection(rules);
    collection.setCompareMode(c.mode);
    collection.Add(u"value", c.stored, 7);
    EXPECT_EQ(collection.ExistKey(c.asked), c.same) << toBytes(c.asked);
    EXPECT_EQ(*collection.Key(1), c.stored);
  }
}

TEST(CStringCollectionTest, AsciiKeysDoNotReachTheRulesAndTheLocaleDecidesAboutTheRest) {
  const TestRules plain;
  CStringCollection collection(plain);
  collection.Add({}, u"Name", 0);
  collection.Add({}, u"Other", 0);
  const int before = plain.asked;
  EXPECT_TRUE(collection.ExistKey(u"NAME"));
  EXPECT_FALSE(collection.ExistKey(u"zebra"));
  EXPECT_EQ(plain.asked, before);

  const TestRules turkish(true);
  CStringCollection dotless(turkish);
  dotless.Add({}, u"INI", 0);
  EXPECT_FALSE(dotless.ExistKey(u"ini"));
  EXPECT_TRUE(dotless.ExistKey(u"\u0131n\u0131"));
  dotless.Add({}, u"I\u0307x", 0);
  dotless.Add({}, u"k", 0);
  EXPECT_TRUE(dotless.ExistKey(u"ix"));
  EXPECT_TRUE(dotless.verify());
}

TEST(CStringCollectionTest, FindsEveryKeyWhereLowerCaseDependsOnWhatFollows) {
  const TestRules turkish(true);
  CStringCollection collection(turkish);
  std::vector<Text> keys = {u""};
  for (std::size_t i = 0; keys[i].size() < 4; ++i) {
    for (const char16_t unit : {u'I', u'i', u'\u0131', u'\u0307', u'x'}) {
      keys.push_back(keys[i] + unit);
    }
  }
  keys.erase(keys.begin());
  std::set<Text> lowered;
  for (const Text& key : keys) {
    EXPECT_EQ(collection.Add({}, key, 0).NewNode != 0, lowered.insert(turkish.lower(key)).second);
  }
  for (const Text& key : keys) {
    EXPECT_TRUE(collection.ExistKey(key));
  }
  EXPECT_TRUE(collection.verify());
}

TEST(CStringCollectionTest, ADigitsOnlyTextIsAKey) {
  const TestRules rules;
  CStringCollection collection(rules);
  collection.Add(u"first", u"a", 1);
  collection.Add(u"second", u"1", 2);
  EXPECT_EQ(*collection.Item(u"1"), u"second");
  EXPECT_EQ(*collection.Item(1), u"first");
  EXPECT_EQ(*collection.Item(0), u"");
  EXPECT_EQ(*collection.Item(3), u"");
}

TEST(CStringCollectionTest, SortsItemsAndPutsEqualOnesBehind) {
  const TestRules rules;
  CStringCollection collection(rules);
  CStringCollection::AddOptions sorted;
  sorted.Sorted = true;
  sorted.SortCompare = 1;
  std::int32_t tag = 0;
  for (const TextView item : {u"b", u"a", u"c", u"b", u"B", u"A", u"d", u""}) {
    ASSERT_NE(collection.Add(item, {}, ++tag, sorted).NewNode, 0);
  }
  EXPECT_EQ(itemsOf(collection),
            (std::vector<Text>{u"", u"a", u"A", u"b", u"b", u"B", u"c", u"d"}));
  EXPECT_EQ(*collection.Tag(4), 1);
  EXPECT_EQ(*collection.Tag(5), 4);
  EXPECT_FALSE(collection.Remove(2));
  EXPECT_EQ(itemsOf(collection), (std::vector<Text>{u"", u"A", u"b", u"b", u"B", u"c", u"d"}));

  CStringCollection binary(rules);
  sorted.SortCompare = 0;
  for (const TextView item : {u"b", u"A", u"a", u"B"}) {
    binary.Add(item, {}, 0, sorted);
  }
  EXPECT_EQ(itemsOf(binary), (std::vector<Text>{u"A", u"B", u"a", u"b"}));
}

TEST(CStringCollectionTest, RandomSortedItemsComeOutStable) {
  const TestRules rules;
  CStringCollection collection(rules);
  std::multimap<Text, std::int32_t> expected;  // equal items keep their order of arrival
  std::mt19937 random(7);
  CStringCollection::AddOptions sorted;
  sorted.Sorted = true;
  for (std::int32_t tag = 0; tag < 2000; ++tag) {
    const Text item = toText(random() % 50);
    expected.emplace(item, tag);
    collection.Add(item, {}, tag, sorted);
  }
  std::int32_t position = 0;
  for (const auto& [item, tag] : expected) {
    ASSERT_EQ(*collection.Item(++position), item);
    ASSERT_EQ(*collection.Tag(position), tag);
  }
}

TEST(CStringCollectionTest, InsertsBesideAnotherItem) {
  const TestRules rules;
  CStringCollection collection(rules);
  collection.Add(u"1", u"one", 0);
  collection.Add(u"3", u"three", 0);
  CStringCollection::AddOptions options;
  options.After = u"ONE";
  collection.Add(u"2", u"two", 0, options);
  options.After.reset();
  options.Before = 1;
  collection.Add(u"0", u"zero", 0, options);
  EXPECT_EQ(itemsOf(collection), (std::vector<Text>{u"0", u"1", u"2", u"3"}));
  EXPECT_TRUE(collection.verify());

  // An unknown neighbour takes the position but adds nothing.
  options.Before = u"nowhere";
  const auto quiet = collection.Add(u"x", u"x", 0, options);
  EXPECT_EQ(quiet.NewNode, 0);
  EXPECT_FALSE(quiet.error);
  EXPECT_EQ(collection.Count(), 5);
  EXPECT_FALSE(collection.ExistKey(u"x"));
  options.RaiseOnDuplicate = true;
  expectError(collection.Add(u"x", u"x", 0, options).error, 2, u"CStringCollection.Add",
              u"Key not found before: nowhere");
  options.Before.reset();
  options.After = 99;
  expectError(collection.Add(u"x", u"x", 0, options).error, 2, u"CStringCollection.Add",
              u"Key not found after: 99");
}

TEST(CStringCollectionTest, ErrorsNameWhatWasAskedFor) {
  const TestRules rules;
  CStringCollection c(rules);
  c.Add(u"item", u"Key", 5);
  expectError(c.setItem(u"no", u"x"), 2, u"Let Item", u"Key: no");
  expectError(c.ChangeValues(9, u"x", 0), 2, u"ChangeValues", u"Key: 9");
  expectError(failureOf(c.Key(2)), 1, u"Get Key", u"Index: 2");
  expectError(failureOf(c.Key(-1)), 1, u"Get Key", u"Index: -1");
  expectError(c.setKey(2, u"x"), 1, u"Let Key", u"Index: 2");
  expectError(c.setKey(1, u"KEY"), 8, u"Let Key", u"Index: 1 NewKey: KEY");
  EXPECT_EQ(*c.Key(0), u"");
  EXPECT_FALSE(c.setKey(1, u"new"));
  EXPECT_EQ(*c.Key(1), u"Key");

  EXPECT_EQ(*c.Item(u"no"), u"");
  EXPECT_EQ(*c.Tag(u"no"), -1);
  EXPECT_FALSE(c.setTag(u"no", false, 1));
  EXPECT_FALSE(c.Remove(u"no"));
  c.setRaiseError(true);
  expectError(failureOf(c.Item(u"no")), 2, u"Get Item", u"Key: no");
  expectError(failureOf(c.Tag(u"no")), 2, u"Get Tag", u"Key: no");
  expectError(c.setTag(u"no", false, 7), 2, u"Let Tag", u"Key: no NewTag: 7");
  expectError(c.Remove(u"no"), 2, u"Remove", u"Key: no");
  EXPECT_EQ(*c.Tag(u"no", true), -1);
  EXPECT_FALSE(c.setTag(u"no", true, 7));

  CStringCollection::AddOptions raise;
  raise.RaiseOnDuplicate = true;
  const auto again = c.Add(u"x", u"kEY", 0, raise);
  expectError(again.error, 8, u"CStringCollection.Add", u"Duplicate KeyA: kEY");
  EXPECT_EQ(again.ExistingTag, 5);
  CStringCollection binary(rules);
  binary.setCompareMode(0);
  binary.Add(u"item", u"Key", 5);
  expectError(binary.Add(u"x", u"Key", 0, raise).error, 8, u"CStringCollection.Add",
              u"Duplicate KeyB: Key");
  binary.AllowDuplicates = true;
  EXPECT_FALSE(binary.Add(u"x", u"Key", 0, raise).error);
  EXPECT_FALSE(binary.setKey(2, u"Key"));
}

}  // namespace
}  // namespace ombrelian
