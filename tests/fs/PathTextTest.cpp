#include "fs/PathText.h"

#include <gtest/gtest.h>

namespace ombrelian {
namespace {

struct PathCase {
  TextView path;
  TextView expected;
};

TEST(PathTextTest, WindowsRule) {
  for (const auto& [path, expected] : {PathCase{u"\\\\srv\\share\\x", u"\\\\?\\UNC\\srv\\share\\x"},
                                       {u"C:\\x", u"\\\\?\\C:\\x"},
                                       {u"\\\\?\\C:\\x", u"\\\\?\\UNC\\?\\C:\\x"}}) {
    EXPECT_EQ(LongPathPrefix(path, u'\\'), expected);
  }
  EXPECT_EQ(xGetPath(u"C:\\a", u'\\'), u"C:");
  EXPECT_EQ(xGetPath(u"a.txt", u'\\'), u"");
  EXPECT_EQ(xGetPathWithBackslash(u" C:\\a ", u'\\'), u"C:\\a\\");
  EXPECT_EQ(xGetPathWithBackslash(u"", u'\\'), u"");
  EXPECT_EQ(xRemoveBackslash(u" C:\\a \\", u'\\'), u"C:\\a");
  EXPECT_EQ(xRemoveBackslash(u" C:\\a", u'\\'), u" C:\\a");
  EXPECT_EQ(xGetFileNameWithoutExtension(u"C:\\a.b\\c.tar.gz", u'\\'), u"c.tar");
  EXPECT_EQ(xGetFileName(u"C:\\a/b", u'\\'), u"a/b");
}

TEST(PathTextTest, PosixRule) {
  EXPECT_EQ(LongPathPrefix(u"/a", u'/'), u"/a");
  EXPECT_EQ(xGetPath(u"/a", u'/'), u"/");
  EXPECT_EQ(xGetPath(u"/a/b", u'/'), u"/a");
  EXPECT_EQ(xGetPath(u"a", u'/'), u"");
  EXPECT_EQ(xGetPathWithBackslash(u"/ a ", u'/'), u"/ a /") << "blanks belong to the name";
  EXPECT_EQ(xRemoveBackslash(u"/a /", u'/'), u"/a ");
  EXPECT_EQ(xRemoveBackslash(u"/", u'/'), u"/");
  EXPECT_EQ(xGetFileNameWithoutExtension(u"/a.b/c", u'/'), u"c");
  EXPECT_EQ(xGetFileName(u"/a\\b", u'/'), u"a\\b");
  Text root = u"/";
  EXPECT_EQ(xAddBackslash(root, u'/'), u"/");
  EXPECT_EQ(appendName(root, u"usr", u'/'), u"/usr");
}

TEST(PathTextTest, ExtensionsLookForTheDotAlone) {
  for (const auto& [name, expected] : {PathCase{u"archive.tar.gz", u"gz"},
                                       {u"noext", u""},
                                       {u".profile", u"profile"},
                                       {u"name.", u""}}) {
    EXPECT_EQ(xGetExtension(name), expected);
  }
}

}  // namespace
}  // namespace ombrelian
