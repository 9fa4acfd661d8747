#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Places/PlaceSearch.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const PlacePattern history = {FilePath("/home/ada/.cache"), {"*", "*history*"}};

/// Whether such a place is @p item, or is found in it.
bool isAtOrInside(const PlacePattern &pattern, const FilePath &item, const PretendFileManager &disk)
{
    PlaceSearch search(disk, item, {});
    search.add(pattern, item, u"kept"_qs);
    return search.firstReason() == u"kept"_qs;
}

} // namespace

TEST(PlacePatternTest, FindsThePlaceItselfWhetherItExistsOrNot)
{
    const PretendFileManager disk;

    EXPECT_TRUE(isAtOrInside(history, FilePath("/home/ada/.cache/zsh/history"), disk));
    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/ada/.cache/zsh/other"), disk));
}

TEST(PlacePatternTest, FindsWhatHoldsThePlaceOnlyWhereThePlaceExists)
{
    PretendFileManager disk;
    disk.addFile(FilePath("/home/ada/.cache/zsh/zsh_history"), 10);
    disk.addFile(FilePath("/home/ada/.cache/thumbnails/large/1.png"), 10);

    EXPECT_TRUE(isAtOrInside(history, FilePath("/home/ada/.cache/zsh"), disk));
    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/ada/.cache/thumbnails"), disk));
    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/ada/.cache/absent"), disk));
}

TEST(PlacePatternTest, FindsWhatHoldsThePlaceFromFarAbove)
{
    PretendFileManager disk;
    disk.addFile(FilePath("/home/ada/.cache/zsh/history"), 10);

    EXPECT_TRUE(isAtOrInside(history, FilePath("/home/ada/.cache"), disk));
    EXPECT_TRUE(isAtOrInside(history, FilePath("/home"), disk));
    EXPECT_TRUE(isAtOrInside(history, FilePath("/"), disk));
    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/eve"), disk));
}

TEST(PlacePatternTest, LeavesAloneWhatLiesBelowThePlaceOrOnlyLooksLikeItsBase)
{
    PretendFileManager disk;
    disk.addFolder(FilePath("/home/ada/.cache/zsh/history/old"));

    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/ada/.cache/zsh/history/old"), disk));
    EXPECT_FALSE(isAtOrInside(history, FilePath("/home/ada/.cache2/zsh/history"), disk));
}

TEST(PlacePatternTest, TakesADanglingLinkForThePlace)
{
    PretendFileManager disk;
    disk.addLink(FilePath("/home/ada/.cache/zsh/history"), FilePath("/nowhere"));

    EXPECT_TRUE(isAtOrInside(history, FilePath("/home/ada/.cache/zsh"), disk));
}

TEST(PlacePatternTest, TakesAStarInTheBaseForACharacter)
{
    const PretendFileManager disk;
    const PlacePattern odd = {FilePath("/home/a*a/.cache"), {"x"}};

    EXPECT_TRUE(isAtOrInside(odd, FilePath("/home/a*a/.cache/x"), disk));
    EXPECT_FALSE(isAtOrInside(odd, FilePath("/home/ada/.cache/x"), disk));
}

struct NameCase
{
    const char *title;
    QByteArray pattern;
    QByteArray name;
    bool matches;
};

class NameMatchTest : public testing::TestWithParam<NameCase>
{
};

TEST_P(NameMatchTest, ComparesByBytes)
{
    EXPECT_EQ(PlacePattern::nameMatches(GetParam().pattern, GetParam().name), GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(Names, NameMatchTest,
                         testing::Values(NameCase{"Plain", "vfs", "vfs", true},
                                         NameCase{"OtherLetterCase", "vfs", "VFS", false},
                                         NameCase{"Longer", "vfs", "vfsMeta", false},
                                         NameCase{"StarAtTheEnd", "ssh-*", "ssh-X1", true},
                                         NameCase{"StarStandsForNothing", "ssh-*", "ssh-", true},
                                         NameCase{"StarNeedsWhatIsBeforeIt", "ssh-*", "xssh-1", false},
                                         NameCase{"StarInTheMiddle", "lu*.tmp", "lu12ab.tmp", true},
                                         NameCase{"EndsMayNotOverlap", "aba*aba", "aba", false},
                                         NameCase{"StarsAround", "*history*", ".zsh_history", true},
                                         NameCase{"StarsAroundNeedTheMiddle", "*history*", "hist", false},
                                         NameCase{"MiddleMayNotReachIntoTheEnd", "a*bc*c", "abc", false},
                                         NameCase{"StarAloneTakesAnything", "*", "\xff\n", true}),
                         [](const auto &info) { return info.param.title; });
