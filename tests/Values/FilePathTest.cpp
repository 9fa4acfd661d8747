#include "Values/FilePath.h"

#include <gtest/gtest.h>

using namespace Quillmere;

struct PathCase
{
    const char *name;
    const char *path;
    const char *expected;
};

class StandardizedPathTest : public testing::TestWithParam<PathCase>
{
};

TEST_P(StandardizedPathTest, TidiesTheTextAlone)
{
    EXPECT_EQ(FilePath(GetParam().path).standardized().bytes(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Paths, StandardizedPathTest,
                         testing::Values(PathCase{"Dots", "/a//b/./c/", "/a/b/c"},
                                         PathCase{"Parent", "/a/b/../c", "/a/c"}, PathCase{"AboveTheRoot", "/..", "/"},
                                         PathCase{"BelowAboveTheRoot", "/../a", "/a"},
                                         PathCase{"Relative", "foo/bar", "foo/bar"},
                                         PathCase{"RelativeParent", "../a/../b", "../b"},
                                         PathCase{"TrailingSlash", "/usr/", "/usr"}, PathCase{"Root", "/", "/"},
                                         PathCase{"ManyRoots", "///", "/"}),
                         [](const auto &info) { return info.param.name; });

TEST(FilePathTest, TakesTheLastComponentWithoutTrailingSlash)
{
    EXPECT_EQ(FilePath("/home/ada/.cache/").lastPathComponent(), ".cache");
    EXPECT_EQ(FilePath("/").lastPathComponent(), "/");
    EXPECT_EQ(FilePath().lastPathComponent(), "");
}

TEST(FilePathTest, TakesTheExtensionOfTheNameAlone)
{
    EXPECT_EQ(FilePath("/a.b/c.tar.gz").pathExtension(), "gz");
    EXPECT_EQ(FilePath("/a.b/c").pathExtension(), "");
    EXPECT_EQ(FilePath("/a/.hidden").pathExtension(), "");
}

TEST(FilePathTest, ClimbsToTheRootAndStaysThere)
{
    EXPECT_EQ(FilePath("/a/b").deletingLastPathComponent(), FilePath("/a"));
    EXPECT_EQ(FilePath("/a").deletingLastPathComponent(), FilePath("/"));
    EXPECT_EQ(FilePath("/").deletingLastPathComponent(), FilePath("/"));
}

TEST(FilePathTest, AppendsBelowItselfEvenAnAbsoluteLookingPart)
{
    EXPECT_EQ(FilePath("/a").appending("b/c"), FilePath("/a/b/c"));
    EXPECT_EQ(FilePath("/a/").appending("/b"), FilePath("/a/b"));
    EXPECT_EQ(FilePath("/").appending("b"), FilePath("/b"));
}

TEST(FilePathTest, KnowsWhatLiesWithinByWholeComponents)
{
    EXPECT_TRUE(FilePath("/a/b").isWithin(FilePath("/a")));
    EXPECT_TRUE(FilePath("/a").isWithin(FilePath("/a")));
    EXPECT_TRUE(FilePath("/a").isWithin(FilePath("/")));
    EXPECT_FALSE(FilePath("/ab").isWithin(FilePath("/a")));
}

TEST(FilePathTest, KeepsBytesThatAreNotUtf8AndShowsThemHarmlessly)
{
    const FilePath path(QByteArray("/tmp/\xff\xfe name"));

    EXPECT_EQ(path.lastPathComponent(), QByteArray("\xff\xfe name"));
    EXPECT_EQ(FilePath::displayText(path.lastPathComponent()), u"\uFFFD\uFFFD name"_qs);
}

TEST(FilePathTest, ShowsNamesThatWouldBreakTheLineOrTurnTheTextAroundThem)
{
    EXPECT_EQ(FilePath::displayText("a\nb"), u"a\uFFFDb"_qs);
    EXPECT_EQ(FilePath::displayText("a\u202Egnp.exe"), u"a\uFFFDgnp.exe"_qs);
    EXPECT_EQ(FilePath::displayText("שלום"), u"שלום"_qs);
}
