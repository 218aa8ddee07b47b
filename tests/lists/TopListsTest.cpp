#include "lists/TopLists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "platform/Locale.h"
#include "platform/Time.h"
#include "tests/testing/Lists.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/ScopedZone.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;

using Object = std::pair<std::int64_t, Text>;  // what it is sorted by, and its name

std::vector<Object> objects(const std::vector<std::int64_t>& keys) {
  std::vector<Object> result;
  for (const std::int64_t key : keys)
    result.emplace_back(key, toText(std::int64_t(result.size())));
  return result;
}

/// What the list must hold in the end: everything sorted, and cut.
std::vector<Object> sorted(std::vector<Object> all, bool largest, std::size_t limit) {
  std::stable_sort(all.begin(), all.end(), [&](const Object& a, const Object& b) {
    return largest ? a.first > b.first : a.first < b.first;
  });
  all.resize(std::min(limit, all.size()));
  return all;
}

std::vector<Object> collected(const std::vector<Object>& all, bool largest, std::int32_t limit) {
  TopCollector collector(largest);
  collector.reset(limit);
  for (const Object& object : all) {
    if (collector.admits(object.first)) collector.accept(object.first).name = object.second;
    EXPECT_LE(collector.rowCount(), std::size_t(limit + 101));
  }
  std::vector<Object> result;
  for (const TopCollector::Row& row : collector.take())
    result.emplace_back(row.key, row.name);
  return result;
}

TEST(TopListsTest, AListHoldsWhatSortingEverythingGives) {
  std::vector<std::int64_t> rising(3000);
  std::iota(rising.begin(), rising.end(), 1);
  const std::vector<std::int64_t> falling(rising.rbegin(), rising.rend());
  std::vector<std::int64_t> shuffled = rising;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
  std::vector<std::int64_t> ties = shuffled;
  std::vector<std::int64_t> waves = shuffled;
  for (std::size_t i = 0; i < ties.size(); ++i) {
    ties[i] = ties[i] % 37 + 1;
    waves[i] = ties[i] + std::int64_t(i / 500) * 20;
  }
  const std::vector<std::int64_t> same(3000, 7);
  const std::vector<std::int64_t> few = {3, 1, 2};
  for (const auto& keys : {rising, falling, shuffled, ties, waves, same, few}) {
    const std::vector<Object> all = objects(keys);
    for (const std::int32_t limit : {5, 20, 999}) {
      for (const bool largest : {true, false})
        EXPECT_EQ(collected(all, largest, limit), sorted(all, largest, std::size_t(limit)))
            << limit << " of " << keys[0] << ", " << keys[1] << "...";
    }
  }
}

TEST(TopListsTest, TheClockAgreesWithTheSystem) {
  constexpr std::int64_t kHour = 3600;
  for (const char* zone : {"UTC", "Europe/Berlin", "Australia/Lord_Howe", "Asia/Kathmandu"}) {
    const ScopedZone scope(zone);
    LocalClock clock;
    std::mt19937_64 random(1);
    for (int i = 0; i < 60'000; ++i) {
      // From 1960 on, in steps that meet every change of the clocks' year; and at random.
      const std::int64_t unix =
          i % 2 != 0 ? std::int64_t(random() % 3'000'000'000U) - 300'000'000
                     : (std::int64_t(i) - 5000) * 5 * kHour + std::int64_t(random() % 1800);
      const FileTime time = fileTimeFromUnix(unix, 999'999'999);
      DateParts parts;
      ASSERT_TRUE(platform::FileTimeToLocalSystemTime(time, parts));
      const std::int64_t seconds = std::llround(toDate(parts) * 86'400);
      ASSERT_EQ(clock.seconds(time), seconds) << zone << " " << unix;
      ASSERT_LT(LocalClock::bound(time, false), seconds);
      ASSERT_GT(LocalClock::bound(time, true), seconds);
    }
    EXPECT_EQ(clock.seconds(0), 0);
    EXPECT_EQ(clock.seconds(kInvalidFileTime), 0);
  }
}

class TopListsFeedTest : public ::testing::Test {
 protected:
  void feed(TextView name, std::int64_t size, const platform::FindData& data = {}) {
    lists.feedFile(name, u"/no/such/", size, data);
  }

  std::vector<Text> names(ListId list) {
    lists.finish();
    return texts(lists.grid(list), u"name");
  }

  const ScopedZone zone{"UTC"};  // where time never goes back
  const ScopedLocale locale{"C"};
  Options options;
  mCompare filters{platform::localeTextRules()};
  MadeUpTypes types;
  TopLists lists{options, filters, types};
};

using Names = std::vector<Text>;

TEST_F(TopListsFeedTest, WhatTheSmallestFilesIgnore) {
  const std::pair<std::int32_t, Names> cases[] = {
      {0, {u"c", u"d"}}, {-1, {u"a", u"b", u"c", u"d"}}, {100, {u"d"}}};
  options.CreateList100SmallestFiles = 1;
  for (const auto& [number, expected] : cases) {
    options.CreateList100SmallestFilesIgnoreNumber = number;
    lists.reset();
    for (const auto& [name, size] : {std::pair(u"a", 0), {u"b", 0}, {u"c", 100}, {u"d", 101}})
      feed(name, size);
    EXPECT_EQ(names(ListId::SmallestFiles), expected) << number;
  }
}

TEST_F(TopListsFeedTest, FoldersCountByTheirOwnFiles) {
  options.CreateList100LargestFolders = 1;
  options.CreateList100SmallestFolders = 1;
  lists.reset();
  lists.feedFolder(u"/x/onlyfolders/", 0, 0, 3);
  lists.feedFolder(u"/x/empty files/", 0, 2, 0);
  lists.feedFolder(u"/x/some/", 10, 1, 1);
  lists.feedFolder(u"/", 20, 1, 2);
  EXPECT_EQ(names(ListId::LargestFolders), (Names{u"/", u"/x/some", u"/x/empty files"}));
  EXPECT_EQ(names(ListId::SmallestFolders), (Names{u"/x/some", u"/"}));
  const Grid& grid = lists.grid(ListId::SmallestFolders);
  EXPECT_EQ(numbers(grid, u"files"), (std::vector<std::int64_t>{1, 1}));
  EXPECT_EQ(numbers(grid, u"folders"), (std::vector<std::int64_t>{1, 2}));
  EXPECT_EQ(texts(grid, u"path"), (Names{u"/x/some/", u"/"}));
}

TEST_F(TopListsFeedTest, TheDateThatWasChosenDecides) {
  options.CreateList100NewestFiles = 1;
  options.CreateList100OldestFiles = 1;
  const auto day = [](int n) { return fileTimeFromUnix(86'400 * n, 0); };
  const std::tuple<std::uint8_t, std::uint8_t, Text, Text> cases[] = {
      {1, 1, u"a", u"c"}, {2, 3, u"b", u"a"}, {3, 2, u"c", u"c"}};
  for (const auto& [newest, oldest, first, last] : cases) {
    options.CreateList100NewestFilesDate = newest;
    options.CreateList100OldestFilesDate = oldest;
    lists.reset();
    const int days[3][3] = {{9003, 9002, 9001}, {9002, 9003, 9002}, {9001, 9001, 9003}};
    for (int i = 0; i < 3; ++i) {
      platform::FindData data;
      data.ftLastWriteTime = day(days[i][0]);
      data.ftCreationTime = day(days[i][1]);
      data.ftLastAccessTime = day(days[i][2]);
      feed(Text(1, char16_t(u'a' + i)), 1, data);
    }
    EXPECT_EQ(names(ListId::NewestFiles)[0], first) << int(newest);
    EXPECT_EQ(names(ListId::OldestFiles)[0], last) << int(oldest);
  }
}

TEST_F(TopListsFeedTest, DatesAreSortedLikeEverything) {
  options.CreateList100NewestFiles = 1;
  options.CreateList100OldestFiles = 1;
  for (const std::int64_t step : {7, 3600, 86'400}) {  // close together, and years apart
    lists.reset();
    std::vector<Object> all;
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
      const std::int64_t unix = 1'000'000'000 + std::int64_t(random() % 1500) * step;
      platform::FindData data;
      data.ftLastWriteTime = fileTimeFromUnix(unix, std::uint32_t(random() % 1'000'000'000));
      all.emplace_back(unix, toText(i));
      feed(all.back().second, 1, data);
    }
    for (const bool newest : {true, false}) {
      Names expected;
      for (const Object& object : sorted(all, newest, 20))
        expected.push_back(object.second);
      EXPECT_EQ(names(newest ? ListId::NewestFiles : ListId::OldestFiles), expected) << step;
    }
  }
}

TEST_F(TopListsFeedTest, LimitsAreHeldAndFilteredExtensionsStayOut) {
  options.CreateList100LargestFiles = 1;
  options.CreateList100LargestFilesInclude = 1;
  options.CreateList100LargestFilesIncludeText = u"jpg";
  options.TopMaxCount[0] = 4;
  filters.SetTopFilesExtFilter(options);
  lists.reset();
  for (int size = 1; size <= 300; ++size) {
    feed(toText(size) + (size % 2 == 0 ? u".JPG" : u".png"), size);
    EXPECT_LE(lists.collector(ListId::LargestFiles).rowCount(), 106U);
  }
  EXPECT_EQ(names(ListId::LargestFiles),
            (Names{u"300.JPG", u"298.JPG", u"296.JPG", u"294.JPG", u"292.JPG"}));
  EXPECT_EQ(lists.List_TOP_ShowFileStat(ListId::LargestFiles), u"5 Datei(en)");
  EXPECT_EQ(lists.Toplist_ShowSelectedFilesize(ListId::LargestFiles, {0, 1}).substr(0, 27),
            u"2 ausgewählte Datei(en) mit");
}

}  // namespace
}  // namespace ombrelian
