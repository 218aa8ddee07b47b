#include "filters/mCompare.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/Locale.h"
#include "support/Guard.h"
#include "tests/testing/ScopedLocale.h"

namespace ombrelian {
namespace {

bool like(TextView subject, TextView pattern) {
  const LikePattern compiled(pattern, platform::localeTextRules());
  EXPECT_FALSE(compiled.isMalformed()) << toBytes(pattern);
  return compiled.matches(subject);
}

TEST(LikePatternTest, Elements) {
  const struct {
    TextView subject;
    TextView pattern;
    bool matches;
  } cases[] = {
      {u"temp", u"TEMP", true},
      {u"temporary", u"temp", false},
      {u"", u"", true},
      {u"", u"*", true},
      {u"a", u"", false},
      {u"abc", u"a?c", true},
      {u"ac", u"a?c", false},
      {u"x7", u"x#", true},
      {u"x\u0667", u"x#", false},
      {u"noext", u"*.*", false},
      {u"a.b", u"*.*", true},
      {u"/a/cache/b", u"*/cache/*", true},
      {u"mississippi", u"m*iss*ip*i", true},
      {u"mississippi", u"m*iss*iss*iss*", false},
      {u"b", u"[a-f]", true},
      {u"B", u"[a-f]", true},
      {u"g", u"[a-f]", false},
      {u"g", u"[!a-f]", true},
      {u"", u"[!a-f]", false},
      {u"-", u"[a-]", true},
      {u"-", u"[-a]", true},
      {u"*", u"[*]", true},
      {u"x", u"[*]", false},
      {u"!", u"[!]", true},
      {u"ab", u"a[]b", true},
      {u"a]", u"a]", true},
      {u"[", u"[[]", true},
      {u"back\\slash", u"back\\slash", true},
      {u"new\nline", u"new?line", true},
      {u"\U0001F600", u"?", true},     // one character, though two units
      {u"\xDCFF\xDC80", u"??", true},  // bytes that are no UTF-8
      {u"\xDCFF", u"[\xDC80-\xDCFF]", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(like(c.subject, c.pattern), c.matches)
        << toBytes(c.subject) << " like " << toBytes(c.pattern);
  }
}

TEST(LikePatternTest, CaseOfEveryScriptByTheLocale) {
  const struct {
    const char* locale;
    TextView subject;
    TextView pattern;
    bool matches;
  } cases[] = {
      {"de_DE", u"ÜBER", u"über", true},      {"de_DE", u"ΣΊΣΥΦΟΣ", u"σίσυφος", true},
      {"de_DE", u"ЖУК", u"ж*", true},         {"de_DE", u"FILE", u"file", true},
      {"tr_TR", u"FILE", u"file", false},     {"tr_TR", u"FILE", u"f\u0131le", true},
      {"tr_TR", u"F\u0130LE", u"file", true}, {"de_DE", u"\U00010400", u"\U00010428", true},
      {"de_DE", u"Ä", u"[à-ö]", true},
  };
  for (const auto& c : cases) {
    const ScopedLocale locale(c.locale);
    EXPECT_EQ(like(c.subject, c.pattern), c.matches)
        << c.locale << " " << toBytes(c.subject) << " like " << toBytes(c.pattern);
  }
}

/// The plainest matcher there is, for "?" and "*" alone.
bool naive(TextView subject, TextView pattern) {
  if (pattern.empty()) return subject.empty();
  if (pattern[0] == u'*') {
    return naive(subject, pattern.substr(1)) ||
           (!subject.empty() && naive(subject.substr(1), pattern));
  }
  return !subject.empty() && (pattern[0] == u'?' || pattern[0] == subject[0]) &&
         naive(subject.substr(1), pattern.substr(1));
}

TEST(LikePatternTest, AgreesWithThePlainestMatcher) {
  std::mt19937 random(7);
  const auto text = [&](TextView letters) {
    Text made(random() % 8, u' ');
    for (char16_t& unit : made)
      unit = letters[random() % letters.size()];
    return made;
  };
  for (int round = 0; round < 20000; ++round) {
    const Text subject = text(u"ab");
    const Text pattern = text(u"ab?*");
    ASSERT_EQ(like(subject, pattern), naive(subject, pattern))
        << toBytes(subject) << " like " << toBytes(pattern);
  }
  // Many runs stay quick: no exponential search.
  EXPECT_FALSE(like(Text(20000, u'a'), u"*a*a*a*a*a*a*a*a*a*b"));
}

class CompareTest : public ::testing::Test {
 protected:
  mCompare filters{platform::localeTextRules()};
  Options options;
};

TEST_F(CompareTest, ExcludeAndIncludeListsOfFolders) {
  const struct {
    TextView exclude;
    TextView include;
    TextView name;
    TextView path;
    bool isOut;
  } cases[] = {
      {u"temp", u"", u"TEMP", u"/a/TEMP", true},
      {u"temp", u"", u"temp2", u"/a/temp2", false},
      {u"*/temp", u"", u"temp", u"/a/temp", true},
      {u"/a/temp", u"", u"temp", u"/b/temp", false},
      {u"  temp  ", u"", u"temp", u"/temp", true},  // outer blanks of the list go
      {u"x, temp", u"", u"temp", u"/temp", false},  // those of a piece stay
      {u"x,,temp", u"", u"temp", u"/temp", false},  // the first empty piece ends the list
      {u"", u"Data", u"Data", u"/Data", false},
      {u"", u"Data", u"Other", u"/Other", true},
      {u"", u"D*,*ta", u"Data", u"/Data", false},
      {u"", u"D*,X*", u"Data", u"/Data", true},  // all patterns must fit
      {u"", u"D*,*/root/*", u"Data", u"/root/Data", false},
      {u"other", u"Data", u"Misc", u"/Misc", false},  // with both on, exclude alone counts
  };
  for (const auto& c : cases) {
    options.FolderList_FilterFolderExclude_Active = c.exclude.empty() ? 0 : 1;
    options.FolderList_FilterFolderExclude_Text = c.exclude;
    options.FolderList_FilterFolderInclude_Active = c.include.empty() ? 0 : 1;
    options.FolderList_FilterFolderInclude_Text = c.include;
    filters.SetFolderFilterExclude(options);
    filters.SetFolderFilterInclude(options);
    EXPECT_EQ(filters.CheckFolderFilter(c.name, c.path), c.isOut)
        << toBytes(c.exclude) << " | " << toBytes(c.include) << " | " << toBytes(c.path);
    EXPECT_EQ(options.FolderList_FilterFolderExclude_Text, trimBlanks(c.exclude));
  }
  // On, but empty: nothing is left out, and nothing need be asked.
  options = {};
  options.FolderList_FilterFolderInclude_Active = 1;
  filters.SetFolderFilterExclude(options);
  filters.SetFolderFilterInclude(options);
  EXPECT_FALSE(filters.filtersFolders());
  EXPECT_FALSE(filters.CheckFolderFilter(u"x", u"/x"));
}

TEST_F(CompareTest, FilesLookAtIncludeFirst) {
  options.FolderList_FilterFilesInclude_Active = 1;
  options.FolderList_FilterFilesInclude_Text = u"*.jpg";
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"a*";
  filters.SetFileFilterInclude(options);
  filters.SetFileFilter(options);
  EXPECT_FALSE(filters.Check_FolderList_FileFilter(u"a.JPG", u"/a.JPG"));
  EXPECT_TRUE(filters.Check_FolderList_FileFilter(u"b.png", u"/b.png"));
  options.FolderList_FilterFilesInclude_Active = 0;
  filters.SetFileFilterInclude(options);
  EXPECT_TRUE(filters.Check_FolderList_FileFilter(u"a.JPG", u"/a.JPG"));
}

TEST_F(CompareTest, TheFileListShowsWhatAnyPatternFits) {
  options.FileList_Filter_Active = 1;
  options.FileList_Filter_Text = u"*.jpg,*.png";
  filters.SetFileFilterFileList(options);
  EXPECT_FALSE(filters.CheckFileFilterFileList(u"a.png"));
  EXPECT_TRUE(filters.CheckFileFilterFileList(u"a.gif"));
  options.FileList_Filter_Text = u",*.png";
  filters.SetFileFilterFileList(options);
  EXPECT_FALSE(filters.CheckFileFilterFileList(u"a.gif"));
}

TEST_F(CompareTest, ExtensionLists) {
  const struct {
    TextView setting;
    TextView extension;
    bool passes;
  } cases[] = {{u"mp3,avi", u"AVI", true}, {u"MP3", u"mp3", false}, {u"jpg, png", u"png", false},
               {u"mp3", u"", false},       {u"a,,b", u"", true},    {u"  ", u"x", true},
               {u"öl", u"ÖL", true}};
  for (const auto& c : cases) {
    options.CreateListExtInclude = 1;
    options.CreateListExtIncludeText = c.setting;
    filters.SetExtFilter(options);
    EXPECT_EQ(filters.passesExtFilter(c.extension), c.passes)
        << toBytes(c.setting) << " " << toBytes(c.extension);
  }
  options.CreateListExtInclude = 0;
  filters.SetExtFilter(options);
  EXPECT_TRUE(filters.passesExtFilter(u"anything"));
}

/// Counts the faults that were reported.
class CountingSink : public FaultSink {
 public:
  CountingSink() { setFaultSink(this); }
  ~CountingSink() override { setFaultSink(nullptr); }
  void Debug(TextView, TextView, const Error& error, const std::vector<Text>&) noexcept override {
    reports.push_back(error.text);
  }
  void errorLine(TextView) noexcept override {}

  std::vector<Text> reports;
};

TEST_F(CompareTest, AMalformedPatternIsToldOnceARunAndLeavesNothingOut) {
  CountingSink sink;
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp,[abc,*.bak,[z-a]";
  filters.SetFileFilter(options);
  filters.startRun();
  EXPECT_TRUE(filters.Check_FolderList_FileFilter(u"x.tmp", u"/x.tmp"));
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(filters.Check_FolderList_FileFilter(u"x.bak", u"/x.bak"));
  }
  EXPECT_EQ(sink.reports, std::vector<Text>{u"Invalid pattern string: [abc"});
  filters.startRun();
  filters.Check_FolderList_FileFilter(u"x", u"/x");
  EXPECT_EQ(sink.reports.size(), 2U);
}

}  // namespace
}  // namespace ombrelian
