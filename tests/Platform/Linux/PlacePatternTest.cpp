#include "Platform/Linux/PlacePattern.h"
#include "Fakes/PretendFileManager.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const PlacePattern history = {FilePath("/home/ada/.cache"), {"*", "*history*"}};

} // namespace

TEST(PlacePatternTest, FindsThePlaceItselfWhetherItExistsOrNot)
{
    const PretendFileManager disk;

    EXPECT_TRUE(history.isAtOrInside(FilePath("/home/ada/.cache/zsh/history"), disk));
    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/ada/.cache/zsh/other"), disk));
}

TEST(PlacePatternTest, FindsWhatHoldsThePlaceOnlyWhereThePlaceExists)
{
    PretendFileManager disk;
    disk.addFile(FilePath("/home/ada/.cache/zsh/zsh_history"), 10);
    disk.addFile(FilePath("/home/ada/.cache/thumbnails/large/1.png"), 10);

    EXPECT_TRUE(history.isAtOrInside(FilePath("/home/ada/.cache/zsh"), disk));
    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/ada/.cache/thumbnails"), disk));
    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/ada/.cache/absent"), disk));
}

TEST(PlacePatternTest, FindsWhatHoldsThePlaceFromFarAbove)
{
    PretendFileManager disk;
    disk.addFile(FilePath("/home/ada/.cache/zsh/history"), 10);

    EXPECT_TRUE(history.isAtOrInside(FilePath("/home/ada/.cache"), disk));
    EXPECT_TRUE(history.isAtOrInside(FilePath("/home"), disk));
    EXPECT_TRUE(history.isAtOrInside(FilePath("/"), disk));
    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/eve"), disk));
}

TEST(PlacePatternTest, LeavesAloneWhatLiesBelowThePlaceOrOnlyLooksLikeItsBase)
{
    PretendFileManager disk;
    disk.addFolder(FilePath("/home/ada/.cache/zsh/history/old"));

    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/ada/.cache/zsh/history/old"), disk));
    EXPECT_FALSE(history.isAtOrInside(FilePath("/home/ada/.cache2/zsh/history"), disk));
}

TEST(PlacePatternTest, TakesADanglingLinkForThePlace)
{
    PretendFileManager disk;
    disk.addLink(FilePath("/home/ada/.cache/zsh/history"), FilePath("/nowhere"));

    EXPECT_TRUE(history.isAtOrInside(FilePath("/home/ada/.cache/zsh"), disk));
}

TEST(PlacePatternTest, TakesAStarInTheBaseForACharacter)
{
    const PretendFileManager disk;
    const PlacePattern odd = {FilePath("/home/a*a/.cache"), {"x"}};

    EXPECT_TRUE(odd.isAtOrInside(FilePath("/home/a*a/.cache/x"), disk));
    EXPECT_FALSE(odd.isAtOrInside(FilePath("/home/ada/.cache/x"), disk));
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
