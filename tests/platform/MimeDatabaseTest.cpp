#include "platform/MimeDatabase.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/testing/ScopedLocale.h"

namespace ombrelian::platform {
namespace {

TEST(FileTypesTest, TheDatabaseNamesTypesByExtension) {
  if (!std::filesystem::exists("/usr/share/mime/globs2")) GTEST_SKIP() << "no database here";
  EXPECT_EQ(GetFileTypeIcon(u"txt"), u"text-plain");
  EXPECT_EQ(GetFileTypeIcon(u"tar.gz"), u"application-x-compressed-tar");
  // What the names are is the database's business, but for each language there is one.
  const auto nameIn = [](const char* language) {
    const ScopedLocale locale(language);
    return GetFileTypeName(u"txt");
  };
  EXPECT_FALSE(nameIn("C").empty());
  EXPECT_FALSE(nameIn("de_DE.UTF-8").empty());
  EXPECT_NE(nameIn("C"), nameIn("de_DE.UTF-8"));
}

TEST(FileTypesTest, WhatNobodyKnowsIsEmpty) {
  for (const TextView extension : {u"", u"no such type", u"../../../etc/passwd", u"*", u"\xDCFF"}) {
    EXPECT_EQ(GetFileTypeName(extension), u"");
    EXPECT_EQ(GetFileTypeIcon(extension), u"");
  }
}

}  // namespace
}  // namespace ombrelian::platform
