// The grid, the top lists, the lists without a limit (sums by extension and owner, links), and the
// log.

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <set>

#include "lists/LinkLists.h"
#include "lists/Log.h"
#include "lists/SumLists.h"
#include "lists/TopLists.h"
#include "platform/Locale.h"
#include "platform/Time.h"
#include "tests/testing/Lists.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/ScopedZone.h"
#include "tests/testing/TestFolder.h"

namespace ombrelian {
namespace {

using namespace ombrelian::testing;
using Names = std::vector<Text>;

class ListsTest : public ::testing::Test {
 protected:
  const ScopedLocale locale{"C"};
  Options options;
  MadeUpTypes types;
};

constexpr Column kTable[] = {
    {1, 3571, u"Name", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3698, u"Prozent", u"percent", CellKind::Percent},
    {4, 3586, u"Attribute", u"attr", CellKind::Attributes},
};

TEST_F(ListsTest, RowsAreOrderedByRawValue) {
  Grid grid(kTable);
  const std::tuple<TextView, std::int64_t, double, std::int64_t> rows[] = {
      {u"b", 900, 2.5, 0x20},
      {u"A", 1000, 2.5, 0x1},
      {u"c", (1LL << 53) + 1, 10, 0x20},
      {u"B", 1LL << 53, 0, 0x2}};
  const std::tuple<TextView, bool, Names> cases[] = {
      {u"size", false, {u"b", u"A", u"B", u"c"}},   {u"size", true, {u"c", u"B", u"A", u"b"}},
      {u"percent", true, {u"c", u"b", u"A", u"B"}},  // equal rows keep their order
      {u"name", false, {u"A", u"b", u"B", u"c"}},    // in the order of the locale, without case
      {u"attr", false, {u"b", u"c", u"B", u"A"}},    // the texts are A, A, H, R
  };
  for (const auto& [key, descending, expected] : cases) {
    grid.clear();
    for (const auto& [name, size, percent, attributes] : rows) {
      const Grid::RowIndex row = grid.addRow();
      grid.set(row, kTable[0], name);
      grid.set(row, kTable[1], size);
      grid.set(row, kTable[2], percent);
      grid.set(row, kTable[3], attributes);
    }
    grid.sort(grid.column(key), descending);
    EXPECT_EQ(texts(grid, u"name"), expected) << toBytes(key);
    EXPECT_EQ(grid.sortColumn(), &grid.column(key));
  }
}

/// The expected contents of a row of the grid.
struct ModelRow {
  std::uint32_t id;
  std::int64_t size;
  int band;
  platform::FileIdentity identity;
};

void expectSame(const Grid& grid, const std::vector<ModelRow>& rows,
                const std::set<std::uint32_t>& gone) {
  ASSERT_EQ(grid.rowCount(), rows.size());
  for (Grid::RowIndex row = 0; row < rows.size(); ++row) {
    const ModelRow& model = rows[row];
    ASSERT_EQ(grid.id(row), model.id);
    ASSERT_EQ(grid.rowOf(model.id), row);
    ASSERT_EQ(grid.text(row, kTable[0]), toText(model.size));
    ASSERT_EQ(grid.number(row, kTable[1]), model.size);
    ASSERT_EQ(grid.band(row), model.band);
    ASSERT_EQ(grid.identity(row), model.identity);
  }
  for (const std::uint32_t id : gone)
    ASSERT_EQ(grid.rowOf(id), Grid::kNoRow);
}

TEST_F(ListsTest, RowsKeepAllThatIsTheirsThroughSortsAndRemovals) {
  std::mt19937 random(11);
  Grid grid(kTable);
  std::vector<ModelRow> rows;
  std::set<std::uint32_t> gone;
  const auto add = [&] {
    const Grid::RowIndex at = grid.addRow();
    ModelRow row = {grid.id(at), std::int64_t(random() % 50), int(random() % 2), {}};
    EXPECT_FALSE(gone.contains(row.id)) << "given twice";
    grid.set(at, kTable[0], TextView(toText(row.size)));
    grid.set(at, kTable[1], row.size);
    grid.setBand(at, row.band);
    if (random() % 3 != 0) grid.setIdentity(at, row.identity = {random(), random()});
    rows.push_back(row);
  };
  const auto sort = [&](bool descending) {
    grid.sort(kTable[1], descending);
    std::stable_sort(rows.begin(), rows.end(), [&](const ModelRow& a, const ModelRow& b) {
      return descending ? a.size > b.size : a.size < b.size;
    });
  };
  const auto takeOut = [&](std::uint32_t id) {
    if (std::erase_if(rows, [&](const ModelRow& row) { return row.id == id; }) > 0) gone.insert(id);
  };
  for (int step = 0; step < 3000 && !HasFatalFailure(); ++step) {
    const auto choice = random() % 400;
    if (choice < 240) {
      add();
    } else if (choice < 300) {
      sort(choice % 2 == 0);
    } else if (choice < 340 && !rows.empty()) {
      const Grid::RowIndex row = random() % rows.size();
      grid.removeRow(row);
      takeOut(rows[row].id);
    } else if (choice < 399) {
      // Some ids are repeated, some were removed already, and some never existed.
      std::vector<std::uint32_t> ids = {1'000'000};
      for (auto i = random() % 12; i > 0; --i)
        ids.push_back(std::uint32_t(random() % (rows.size() + gone.size() + 1)));
      grid.removeRows(ids);
      for (const std::uint32_t id : ids)
        takeOut(id);
    } else {
      grid.clear();
      rows.clear();
      gone.clear();
    }
    expectSame(grid, rows, gone);
  }
}

TEST_F(ListsTest, RowsAreNumberedWhereTheSettingsSaySo) {
  const std::uint8_t numbered[] = {1, 1, 0, 0, 0};
  EXPECT_EQ(visibleColumnsAndNumber(kTable, {numbered, {}}).front(), &kRowNumberColumn);
  EXPECT_EQ(visibleColumns(kTable, {numbered, {}}), std::vector<const Column*>{&kTable[0]});
}

TEST_F(ListsTest, ManyExtensionsLoseNothing) {
  constexpr std::int64_t kExtensions = 50'000;
  ExtensionList list(types);
  list.reset();
  for (std::int64_t i = 0; i < 2 * kExtensions; ++i)
    list.feed(u"x" + toText(i % kExtensions), (i % kExtensions) << 30);
  list.List_Ext_SetDifferentSizes(1);
  const Names extensions = texts(list.grid(), u"extname");
  const std::vector<std::int64_t> sizes = numbers(list.grid(), u"size");
  ASSERT_EQ(sizes.size(), std::size_t(kExtensions));
  for (std::size_t row = 0; row < sizes.size(); ++row) {
    const std::int64_t i = kExtensions - 1 - std::int64_t(row);  // the largest are first
    ASSERT_EQ(extensions[row], u".X" + toText(i));
    ASSERT_EQ(sizes[row], i << 31);
  }
  EXPECT_EQ(list.List_EXT_ShowStat(), u"50,000 Dateiendungen");
}

TEST_F(ListsTest, ExtensionsKnowNoCase) {
  ExtensionList list(types);
  for (int run = 0; run < 2; ++run) {  // a second run must not add to the first
    list.reset();
    for (const auto& [extension, size] : {std::pair(u"TXT", 1),
                                          {u"txt", 2},
                                          {u"", 4},
                                          {u"PROFILE", 0},
                                          {u"\u00E4", 8},
                                          {u"\u00C4", 16},
                                          {u"\xDCFF", 32}})
      list.feed(extension, size);
    list.List_Ext_SetDifferentSizes(50);
    const Grid& grid = list.grid();
    EXPECT_EQ(texts(grid, u"extname"),
              (Names{u".\xDCFF", u".\u00C4", u"[Ohne Endung]", u".TXT", u".PROFILE"}));
    EXPECT_EQ(numbers(grid, u"files"), (std::vector<std::int64_t>{1, 2, 1, 2, 1}));
    EXPECT_EQ(grid.real(3, grid.column(u"percent")), 6);
    EXPECT_EQ(grid.real(4, grid.column(u"percent")), 0);
    EXPECT_EQ(grid.text(3, grid.column(u"type")), u"type txt");
    EXPECT_EQ(grid.text(3, grid.column(u"exe")), u"/bin/txt");
    EXPECT_EQ(grid.text(2, grid.column(u"type")), u"[Ohne Endung]");
  }
  list.reset();
  list.feed(u"new", 1);
  list.List_Ext_SetDifferentSizes(1);
  EXPECT_EQ(texts(list.grid(), u"extname"), Names{u".NEW"}) << "nothing of an earlier run";
}

TEST_F(ListsTest, OwnersKnowCaseAndCountFolders) {
  OwnerList list;
  list.reset();
  list.feed(u"root", 5, 1, 0);
  list.feed(u"Root", 3, 1, 0);
  list.feed(u"nobody", 0, 0, 1);
  list.feed(u"root", INT64_MAX, 1, 0);  // a sparse file
  list.feed(u"root", 0, 0, 1);
  list.List_Owner_SetDifferentSizes(0);
  const Grid& grid = list.grid();
  EXPECT_EQ(texts(grid, u"owner"), (Names{u"root", u"Root", u"nobody"}));
  EXPECT_EQ(numbers(grid, u"size"), (std::vector<std::int64_t>{INT64_MAX, 3, 0}));
  EXPECT_EQ(numbers(grid, u"files"), (std::vector<std::int64_t>{2, 1, 0}));
  EXPECT_EQ(numbers(grid, u"folders"), (std::vector<std::int64_t>{1, 0, 1}));
  EXPECT_EQ(grid.real(0, grid.column(u"percent")), 0);  // the total is 0
}

TEST_F(ListsTest, BandsSetFilesApart) {
  HardlinkList list(options, types);
  const std::uint64_t indices[] = {0x200000007, 5, 0x100000005, 10, 9, 5};
  platform::FindData data;
  for (const std::uint64_t index : indices) {
    data.identity.index = index;
    list.feed(u"a.txt", u"/x/", 1, 2, data);
  }
  list.List_Hardlinks_ShowDups();
  const Grid& grid = list.grid();
  EXPECT_EQ(texts(grid, u"id"), (Names{u"10-0", u"5-0", u"5-0", u"5-1", u"7-2", u"9-0"}));
  std::vector<int> bands;
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row)
    bands.push_back(grid.band(row));
  EXPECT_EQ(bands, (std::vector<int>{0, 1, 1, 0, 1, 0}));
  EXPECT_EQ(grid.text(0, grid.column(u"ext")), u"TXT");
  EXPECT_EQ(grid.text(0, grid.column(u"type")), u"type txt");
  EXPECT_EQ(list.List_Hardlinks_ShowFileStat(), u"6 Datei(en)");
  EXPECT_TRUE(list.List_Hardlinks_ShowFileStat({0, 1}).starts_with(
      u"6 Datei(en) / 2 ausgewählte Datei(en) mit "));
}

TEST_F(ListsTest, ManyHardlinkRowsLoseNothing) {
  constexpr std::int64_t kRows = 300'000;
  HardlinkList list(options, types);
  platform::FindData data;
  for (std::int64_t i = 0; i < kRows; ++i) {
    data.identity.index = std::uint64_t(i * 7919 % (kRows / 3)) + 1;
    list.feed(toText(i) + u".dat", u"/folder" + toText(i / 100) + u"/", i, 3, data);
  }
  list.finish();
  const Names ids = texts(list.grid(), u"id");
  const Names names = texts(list.grid(), u"name");
  const Names paths = texts(list.grid(), u"path");
  const std::vector<std::int64_t> sizes = numbers(list.grid(), u"size");
  EXPECT_EQ(std::set(sizes.begin(), sizes.end()).size(), std::size_t(kRows));
  for (std::size_t row = 0; row < sizes.size(); ++row) {
    ASSERT_EQ(names[row], toText(sizes[row]) + u".dat");
    ASSERT_EQ(paths[row], u"/folder" + toText(sizes[row] / 100) + u"/");
    ASSERT_EQ(ids[row], ids[row / 3 * 3]) << "the three names of a file stand together";
  }
}

class LogTest : public ::testing::Test {
 protected:
  LogTest() { log.setFile(folder.text("Ombrelian.log")); }

  std::string file() const { return readFile(folder.path("Ombrelian.log")); }

  const ScopedLocale locale{"C"};
  TestFolder folder;
  Options options;
  Log log{options};
};

TEST_F(LogTest, ALineForEachEntryByTheFormOfDates) {
  EXPECT_EQ(log.Show_Log(), u"");
  log.LogProtokoll(u"first \xDCFF");
  options.DateFormat = u"dd.mm.yyyy";
  log.LogProtokoll(u"second", true);
  EXPECT_THAT(file(), ::testing::MatchesRegex(
                          "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} - first \xFF\n"
                          "[0-9]{2}\\.[0-9]{2}\\.[0-9]{4} - second\n"));
  // The date format changes in the rows of the list, not in the lines of the file.
  EXPECT_EQ(log.dateText(log.rows()[0]), log.dateText(log.rows()[1]));
  EXPECT_EQ(log.Show_Log(), folder.text("Ombrelian.log"));
  EXPECT_EQ(log.List_Log_ShowStat(), u"2 Einträge");
}

TEST_F(LogTest, TheListGoesOnWithoutAFile) {
  options.DontCreateLogFile = 1;
  log.LogProtokoll(u"not in the file");
  EXPECT_EQ(file(), "");
  options.DontCreateLogFile = 0;
  log.setFile(folder.text("missing/Ombrelian.log"));
  log.LogProtokoll(u"nor this");
  EXPECT_EQ(log.rows().size(), 2U);
  EXPECT_EQ(log.Show_Log(), u"");
}

using Object = std::pair<std::int64_t, Text>;  // sort key and name

std::vector<Object> objects(const std::vector<std::int64_t>& keys) {
  std::vector<Object> result;
  for (const std::int64_t key : keys)
    result.emplace_back(key, toText(std::int64_t(result.size())));
  return result;
}

/// The expected contents of the list: the first objects of the sorted ones.
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
      // Times from 1960 on in steps that include every change of the clocks, and random times.
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

  const ScopedZone zone{"UTC"};  // a zone in which local time never goes back
  const ScopedLocale locale{"C"};
  Options options;
  mCompare filters{platform::localeTextRules()};
  MadeUpTypes types;
  TopLists lists{options, filters, types};
};

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

  options.TopMaxCount[0] = 100'000;
  lists.reset();
  for (int size = 1; size <= 1'200; ++size)
    feed(toText(size) + u".jpg", size);
  EXPECT_EQ(names(ListId::LargestFiles).size(), 999U);
}

}  // namespace
}  // namespace ombrelian
