#include "filters/FilterText.h"
#include "filters/mCompare.h"

#include <random>

#include "platform/Locale.h"
#include "tests/testing/RecordingSink.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

bool like(TextView subject, TextView pattern) {
  const LikePattern compiled(pattern, platform::localeTextRules());
  EXPECT_FALSE(compiled.isMalformed()) << toBytes(pattern);
  return compiled.matches(subject);
}

/// Expects the result for each text in `pairs`: the subject, a "~" and the pattern.
void expectLike(bool matches, TextView pairs) {
  for (const TextView pair : testing::fields(pairs)) {
    const auto middle = pair.find(u'~');
    EXPECT_EQ(like(pair.substr(0, middle), pair.substr(middle + 1)), matches) << toBytes(pair);
  }
}

TEST(FilterTextTest, AHintTellsOfBrokenPatternsAndOfListsThatNeedAll) {
  const auto hint = [](TextView patterns, bool needsAll) {
    return patternHint(patterns, needsAll, platform::localeTextRules());
  };
  for (const TextView good : {u"", u"*.jpg", u"[a-f]*,*.png,"})
    EXPECT_EQ(hint(good, false), u"") << toBytes(good);
  EXPECT_NE(hint(u"*.jpg, [a", false), u"");
  EXPECT_EQ(hint(u"*.jpg", true), u"");
  EXPECT_NE(hint(u"*.jpg,*.png", true), u"");
}

TEST(LikePatternTest, Elements) {
  expectLike(
      true,
      u"temp~TEMP|TEMP~temp|~|~*|abc~a?c|x7~x#|x0~x#|x9~x#|a.b~*.*|/a/cache/b~*/cache/*|"
      u"mississippi~m*iss*ip*i|b~[a-f]|B~[a-f]|g~[!a-f]|-~[a-]|-~[-a]|*~[*]|!~[!]|ab~a[]b|"
      u"a]~a]|[~[[]|back\\slash~back\\slash|new\nline~new?line|"
      u"\U0001F600~?|\xDCFF\xDC80~??|"  // one character of two units; bytes that are not UTF-8
      u"\xDCFF~[\xDC80-\xDCFF]");
  expectLike(false,
             u"temporary~temp|a~|ac~a?c|x\u0667~x#|noext~*.*|mississippi~m*iss*iss*iss*|g~[a-f]|"
             u"~[!a-f]|x~[*]");
}

TEST(LikePatternTest, CaseOfEveryScriptByTheLocale) {
  {
    const ScopedLocale locale("de_DE");
    expectLike(true,
               u"ÜBER~über|über~ÜBER|ΣΊΣΥΦΟΣ~σίσυφος|σίσυφος~*ΣΊ*|ЖУК~ж*|жук~*УК|FILE~file|"
               u"\U00010400~\U00010428|\U00010428~\U00010400|x\U00010400~*\U00010428|Ä~[à-ö]|"
               u"ä~[À-Ö]");
  }
  for (const char* const turkish : {"tr_TR", "az_AZ"}) {
    const ScopedLocale locale(turkish);
    expectLike(false, u"FILE~file|file~FILE");
    expectLike(true, u"FILE~f\u0131le|F\u0130LE~file|f\u0131le~FILE|file~F\u0130LE");
  }
}

/// The simplest possible matcher, for "?" and "*" only.
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
  // Many stars must not cause an exponential search.
  EXPECT_FALSE(like(Text(20000, u'a'), u"*a*a*a*a*a*a*a*a*a*b"));
}

class CompareTest : public ::testing::Test {
 protected:
  mCompare filters{platform::localeTextRules()};
  Options options;
};

TEST_F(CompareTest, ExcludeAndIncludeListsOfFolders) {
  const struct {
    TextView exclude, include, name, path;
    bool isOut;
  } cases[] = {
      {u"temp", u"", u"TEMP", u"/a/TEMP", true},
      {u"temp", u"", u"temp2", u"/a/temp2", false},
      {u"*/temp", u"", u"temp", u"/a/temp", true},
      {u"/a/temp", u"", u"temp", u"/b/temp", false},
      {u"  temp  ", u"", u"temp", u"/temp", true},  // blanks at both ends of the list are removed
      {u"x, temp", u"", u"temp", u"/temp", false},  // blanks of a piece are kept
      {u"x,,temp", u"", u"temp", u"/temp", false},  // the first empty piece ends the list
      {u"", u"Data", u"Data", u"/Data", false},
      {u"", u"Data", u"Other", u"/Other", true},
      {u"", u"D*,*ta", u"Data", u"/Data", false},
      {u"", u"D*,X*", u"Data", u"/Data", true},  // all patterns must fit
      {u"", u"D*,*/root/*", u"Data", u"/root/Data", false},
      {u"other", u"Data", u"Misc", u"/Misc", false},  // if both are on, only exclude counts
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
  // An active filter without a text excludes nothing and needs no check.
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
    TextView setting, extension;
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

TEST_F(CompareTest, AMalformedPatternIsToldOnceARunAndLeavesNothingOut) {
  testing::RecordingSink sink;
  options.FolderList_FilterFilesExclude_Active = 1;
  options.FolderList_FilterFilesExclude_Text = u"*.tmp,[abc,*.bak,[z-a]";
  filters.SetFileFilter(options);
  filters.startRun();
  EXPECT_TRUE(filters.Check_FolderList_FileFilter(u"x.tmp", u"/x.tmp"));
  for (int i = 0; i < 3; ++i)
    EXPECT_FALSE(filters.Check_FolderList_FileFilter(u"x.bak", u"/x.bak"));
  EXPECT_EQ(sink.texts, std::vector<Text>{u"Invalid pattern string: [abc"});
  filters.startRun();
  filters.Check_FolderList_FileFilter(u"x", u"/x");
  EXPECT_EQ(sink.texts.size(), 2U);
}

}  // namespace
}  // namespace ombrelian
