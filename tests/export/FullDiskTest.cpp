// A disk that takes no more, and a sheet that holds no more: whatever stands under the report's
// name afterwards is whole.

#include <signal.h>
#include <sys/resource.h>

#include <fstream>

#include "export/XlsxWriter.h"
#include "tests/testing/SaveFixture.h"

namespace ombrelian {
namespace {

/// While it lives, no file of this process grows beyond `bytes`.
class ScopedFileLimit {
 public:
  explicit ScopedFileLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit = {bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~ScopedFileLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    signal(SIGXFSZ, handler_);
  }
  ScopedFileLimit(const ScopedFileLimit&) = delete;
  ScopedFileLimit& operator=(const ScopedFileLimit&) = delete;

 private:
  rlimit old_ = {};
  void (*handler_)(int);
};

class FullDiskTest : public testing::SaveFixture,
                     public ::testing::WithParamInterface<ReportFormat> {};

TEST_P(FullDiskTest, AnOlderReportStaysUntilTheNewOneIsWhole) {
  const NodeIndex root = add(kNoNode, u"/src");
  tree.setCreated(root, toDate({2026, 11, 22}));
  for (int i = 0; i < 200; ++i)
    add(root, u"folder " + toText(i * 7919), i * 104'729);
  options.FolderColumnVisible.fill(1);
  const std::string name = testing::nameOf(GetParam());
  const std::string path = out.path(name);
  ASSERT_FALSE(save(name).has_value());
  const std::string whole = testing::readFile(path);
  int failures = 0;
  // Past the report's own size too: a workbook passes through larger files.
  for (rlim_t limit = 0; limit < 8 * whole.size(); limit += 1 + limit / 23) {
    std::ofstream(path) << "old";
    Failure failure;
    {
      const ScopedFileLimit full(limit);
      failure = save(name);
    }
    // Not EXPECT_EQ, which would print both.
    EXPECT_TRUE(testing::readFile(path) == (failure ? "old" : whole)) << "limit " << limit;
    EXPECT_EQ(testing::namesIn(out.path()), std::vector<std::string>{name});
    failures += failure.has_value();
    EXPECT_FALSE(failure && failure->text.empty()) << limit;
  }
  EXPECT_GT(failures, 20);
}

/// A list of one text that needs no tree.
class OneText : public CellSource {
 public:
  TextView text(RowIndex, const Column&) const override { return value; }
  double real(RowIndex, const Column&) const override { return 0; }
  std::int64_t number(RowIndex, const Column&) const override { return 0; }

  Text value = u"x";
};

TEST(XlsxWriterTest, WhatNoSheetHoldsIsToldAndNotSaved) {
  static constexpr Column kColumns[] = {{1, 0, u"Name", u"name", CellKind::PlainText}};
  const testing::TestFolder out;
  const Text target = out.text("r.xlsx");
  const CellFormat format(kColumns, {}, {});
  OneText cells;
  const auto save = [&](std::vector<const Column*> columns, std::uint32_t rows) {
    const ReportList list = {u"[a]", kFlatShape, cells, format, std::move(columns)};
    XlsxWriter writer(list);
    EXPECT_FALSE(writer.open(target).has_value());
    writer.beginDocument();
    writer.beginSource({});
    for (std::uint32_t row = 0; row < rows; ++row)
      writer.row({.index = row, .number = row + 1});
    return writer.commit();
  };
  EXPECT_TRUE(save({}, XlsxWriter::kMostRows).has_value());
  cells.value.assign(XlsxWriter::kMostUnits + 1, u'x');
  EXPECT_TRUE(save({kColumns}, 1).has_value());
  EXPECT_TRUE(testing::namesIn(out.path()).empty());
  cells.value.pop_back();
  EXPECT_FALSE(save({kColumns}, 1).has_value());
  EXPECT_FALSE(save({}, XlsxWriter::kMostRows - 1).has_value());
}

TEST(XlsxWriterTest, SheetNames) {
  EXPECT_EQ(FixExcelWorkSheetName(u"  a:b\\c/d?e*f[g]  "), u"a b c d e f g ");
  EXPECT_EQ(FixExcelWorkSheetName(u"   "), u"Name");
  EXPECT_EQ(FixExcelWorkSheetName(Text(30, u'a') + u":b"), Text(30, u'a') + u" ");
}

INSTANTIATE_TEST_SUITE_P(Formats, FullDiskTest, ::testing::ValuesIn(testing::kFormats),
                         [](const auto& format) { return toBytes(fileExtension(format.param)); });

}  // namespace
}  // namespace ombrelian
