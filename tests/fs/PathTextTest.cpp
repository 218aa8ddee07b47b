#include "fs/PathText.h"

#include <gtest/gtest.h>

namespace ombrelian {
namespace {

TEST(PathTextTest, WindowsRule) {
  EXPECT_EQ(LongPathPrefix(u"\\\\srv\\share\\x", u'\\'), u"\\\\?\\UNC\\srv\\share\\x");
  EXPECT_EQ(LongPathPrefix(u"C:\\x", u'\\'), u"\\\\?\\C:\\x");
  EXPECT_EQ(LongPathPrefix(u"\\\\?\\C:\\x", u'\\'), u"\\\\?\\UNC\\?\\C:\\x");
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
  EXPECT_EQ(xGetExtension(u"archive.tar.gz"), u"gz");
  EXPECT_EQ(xGetExtension(u"noext"), u"");
  EXPECT_EQ(xGetExtension(u".profile"), u"profile");
  EXPECT_EQ(xGetExtension(u"name."), u"");
}

}  // namespace
}  // namespace ombrelian
