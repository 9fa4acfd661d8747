#include "Fakes/PretendFileManager.h"
#include "Utilities/PathValidator.h"
#include "Utilities/SymlinkChecker.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const PretendFileManager disk;

bool isProtected(const char *path)
{
    return PathValidator::isProtectedPath(FilePath(path), disk);
}

bool isProtectedUserDirectory(const char *path)
{
    return PathValidator::isProtectedUserDirectory(FilePath(path), disk);
}

} // namespace

class ProtectedPathTest : public testing::TestWithParam<const char *>
{
};

TEST_P(ProtectedPathTest, IsRefusedWithAndWithoutTrailingSlashButNotWhatLiesInIt)
{
    const QByteArray path = GetParam();
    EXPECT_TRUE(isProtected(path));
    EXPECT_TRUE(isProtected(path + '/'));
    EXPECT_FALSE(isProtected(path + "/something"));
}

INSTANTIATE_TEST_SUITE_P(Constants, ProtectedPathTest,
                         testing::Values("/System", "/bin", "/sbin", "/usr", "/private", "/Library/Preferences",
                                         "/private/etc"));

TEST(PathValidatorTest, RefusesTheRootAndTheSystemLibrary)
{
    EXPECT_TRUE(isProtected("/"));
    EXPECT_TRUE(isProtected("/Library"));
    EXPECT_FALSE(isProtected("/Library/Caches"));
}

TEST(PathValidatorTest, SeesThroughDotsInThePath)
{
    EXPECT_TRUE(isProtected("/usr/lib/.."));
    EXPECT_TRUE(isProtected("/./usr/."));
    EXPECT_TRUE(isProtectedUserDirectory("/home/ada/x/../Music//"));
}

TEST(PathValidatorTest, RefusesAFileBelowTheProtectedPreferencesNot)
{
    EXPECT_TRUE(isProtected("/Library/Preferences"));
    EXPECT_FALSE(isProtected("/Library/Preferences/a.plist"));
}

TEST(PathValidatorTest, RefusesTheHomeLibraryButNotItsCaches)
{
    EXPECT_TRUE(isProtectedUserDirectory("/home/ada/Library"));
    EXPECT_FALSE(isProtectedUserDirectory("/home/ada/Library/Caches"));
}

TEST(PathValidatorTest, RefusesDocumentsButNotAFileInside)
{
    EXPECT_TRUE(isProtectedUserDirectory("/home/ada/Documents"));
    EXPECT_FALSE(isProtectedUserDirectory("/home/ada/Documents/letter.odt"));
}

TEST(PathValidatorTest, RefusesTheHomeItselfAsAProtectedPathAlone)
{
    EXPECT_TRUE(isProtected("/home/ada"));
    EXPECT_TRUE(isProtected("/home/ada/"));
    EXPECT_FALSE(isProtectedUserDirectory("/home/ada"));
    EXPECT_FALSE(isProtected("/home/eve"));
}

class ProtectedUserDirectoryTest : public testing::TestWithParam<const char *>
{
};

TEST_P(ProtectedUserDirectoryTest, IsRefusedInThisHomeAlone)
{
    EXPECT_TRUE(isProtectedUserDirectory(QByteArray("/home/ada/") + GetParam()));
    EXPECT_FALSE(isProtectedUserDirectory(QByteArray("/home/eve/") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Names, ProtectedUserDirectoryTest,
                         testing::Values("Documents", "Desktop", "Downloads", "Pictures", "Movies", "Music",
                                         "Library"));

TEST(PathValidatorTest, CatchesTheShortPathOfTheConfigurationThroughItsTargetAlone)
{
    PretendFileManager mac;
    mac.addFolder(FilePath("/private/etc"));
    mac.addLink(FilePath("/etc"), FilePath("/private/etc"));
    const FilePath shortPath("/etc");

    EXPECT_FALSE(PathValidator::isProtectedPath(shortPath, mac));
    EXPECT_TRUE(SymlinkChecker::isSymlink(shortPath, mac));
    EXPECT_TRUE(PathValidator::isProtectedPath(mac.resolvingSymlinks(shortPath), mac));
}

TEST(SymlinkCheckerTest, KnowsADanglingLinkForALink)
{
    PretendFileManager world;
    world.addLink(FilePath("/home/ada/link"), FilePath("/nowhere"));

    EXPECT_TRUE(SymlinkChecker::isSymlink(FilePath("/home/ada/link"), world));
}

TEST(SymlinkCheckerTest, TakesAFileAndAFolderForNoLink)
{
    PretendFileManager world;
    world.addFile(FilePath("/home/ada/file"), 1);

    EXPECT_FALSE(SymlinkChecker::isSymlink(FilePath("/home/ada/file"), world));
    EXPECT_FALSE(SymlinkChecker::isSymlink(FilePath("/home/ada"), world));
}

TEST(PathSafetyTest, SaysNoToAllThreeForAPathThatDoesNotExist)
{
    const FilePath nowhere("/home/ada/nowhere");
    EXPECT_FALSE(PathValidator::isProtectedPath(nowhere, disk));
    EXPECT_FALSE(PathValidator::isProtectedUserDirectory(nowhere, disk));
    EXPECT_FALSE(SymlinkChecker::isSymlink(nowhere, disk));
}
