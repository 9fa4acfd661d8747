#include "Platform/Linux/Removal/RemovalGuard.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/NoDescriptorsLeft.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Quillmere;

namespace {

/// Asks the guard alone: nothing is removed, whatever it answers.
Result<void> verdict(const FilePath &path, const UserEnvironment &environment)
{
    const auto place = ItemPlace::open(path, LinksAbove::Refuse);
    if (!place)
        return place.failure();
    const auto item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
    return RemovalGuard(environment).check(place.value(), item);
}

} // namespace

class ProtectedFolderTest : public testing::TestWithParam<const char *>
{
};

TEST_P(ProtectedFolderTest, IsRefusedHoweverItIsWritten)
{
    const TemporaryHome home;
    const QByteArray path = GetParam();

    for (const QByteArray &written : {path, path + '/', path + "/.", path + "/x/.."}) {
        const auto answer = verdict(FilePath(written), home.environment());
        ASSERT_FALSE(answer) << written.constData();
        EXPECT_EQ(answer.failure().kind, Failure::Kind::Protected) << written.constData();
    }
}

INSTANTIATE_TEST_SUITE_P(System, ProtectedFolderTest,
                         testing::Values("/", "/etc", "/usr", "/var", "/home", "/boot", "/dev", "/proc", "/sys", "/run",
                                         "/root", "/lib", "/lib32", "/lib64", "/libx32", "/bin", "/sbin", "/opt",
                                         "/srv", "/tmp", "/media", "/mnt"));

TEST(RemovalGuardTest, LetsWhatLiesBelowTheSystemsFoldersPass)
{
    const TemporaryHome home;
    EXPECT_TRUE(verdict(home.addFile("item"), home.environment()));
    EXPECT_TRUE(verdict(home.addFolder("home/etc"), home.environment()));
    EXPECT_TRUE(verdict(home.addFolder("home/.cache"), home.environment()));
}

TEST(RemovalGuardTest, RefusesTheHomeAndWhatItLiesIn)
{
    const TemporaryHome home;
    UserEnvironment environment = home.environment();
    environment.home = home.addFolder("users/group/ada");

    for (const char *folder : {"users/group/ada", "users/group", "users"})
        EXPECT_EQ(verdict(home.path(folder), environment).failure().kind, Failure::Kind::Protected) << folder;
    EXPECT_TRUE(verdict(home.addFolder("users/group/bob"), environment));
}

TEST(RemovalGuardTest, RefusesTheLinkByWhichTheHomeIsReachedAndTheFolderItLeadsTo)
{
    const TemporaryHome home;
    home.addFolder("data/ada");
    UserEnvironment environment = home.environment();
    environment.home = home.addLink("users/ada", home.path("data/ada").bytes());
    environment.dataHome = home.path("share");

    for (const char *folder : {"users/ada", "users", "data/ada", "data"})
        EXPECT_EQ(verdict(home.path(folder), environment).failure().kind, Failure::Kind::Protected) << folder;
}

TEST(RemovalGuardTest, RefusesTheTrashItsPartsAndWhatItLiesIn)
{
    const TemporaryHome home;
    home.addFolder("home/.local/share/Trash/files/item");
    home.addFolder("home/.local/share/Trash/info");

    for (const char *folder : {"home/.local/share/Trash/files", "home/.local/share/Trash/info",
                               "home/.local/share/Trash", "home/.local/share", "home/.local"})
        EXPECT_EQ(verdict(home.path(folder), home.environment()).failure().kind, Failure::Kind::Protected) << folder;
    EXPECT_TRUE(verdict(home.path("home/.local/share/Trash/files/item"), home.environment()));
}

TEST(RemovalGuardTest, RefusesATrashThatIsReachedThroughALink)
{
    const TemporaryHome home;
    home.addFolder("elsewhere/bin/Trash/info");
    home.addLink("home/.local/share", home.path("elsewhere/bin").bytes());

    for (const char *folder :
         {"elsewhere/bin/Trash/info", "elsewhere/bin/Trash", "elsewhere/bin", "elsewhere", "home/.local/share"})
        EXPECT_EQ(verdict(home.path(folder), home.environment()).failure().kind, Failure::Kind::Protected) << folder;
}

TEST(RemovalGuardTest, RefusesWhatItCannotLookAt)
{
    const TemporaryHome home;
    home.addFolder("data/ada");
    home.addFolder("elsewhere/Trash/files");
    UserEnvironment environment = home.environment();
    environment.home = home.addLink("users/ada", home.path("data/ada").bytes());
    environment.dataHome = home.addLink("share", home.path("elsewhere").bytes());
    const RemovalGuard guard(environment);

    for (const char *folder : {"data/ada", "elsewhere/Trash/files"}) {
        const auto place = ItemPlace::open(home.path(folder), LinksAbove::Refuse);
        ASSERT_TRUE(place) << folder;
        const auto item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
        inChild([&] {
            const NoDescriptorsLeft noneLeft;
            EXPECT_FALSE(guard.check(place.value(), item)) << folder;
        });
    }
}

TEST(RemovalGuardTest, LetsWhatLiesBesideATrashThatIsClosedToTheUserPassAndNotWhatThatLiesIn)
{
    for (const char *closed : {"home/.local/share/Trash", "home/.local/share"}) {
        const TemporaryHome home;
        home.addFolder("home/.cache/folder");
        home.addFile("home/.cache/file");
        home.addFolder("home/.local/share/Trash/files");
        inUnprivilegedChild(home.path(), [&] { ASSERT_EQ(::chmod(home.path(closed).bytes().constData(), 0), 0); });
        inUnprivilegedChild({}, [&] {
            EXPECT_TRUE(verdict(home.path("home/.cache/folder"), home.environment())) << closed;
            EXPECT_TRUE(verdict(home.path("home/.cache/file"), home.environment())) << closed;
            for (const char *folder : {"home/.local", closed})
                EXPECT_EQ(verdict(home.path(folder), home.environment()).failure().kind, Failure::Kind::Protected)
                    << folder;
        });
    }
}

TEST(RemovalGuardTest, LetsAnItemPassWhereThereIsNeitherHomeNorTrash)
{
    const TemporaryHome home;
    UserEnvironment environment = home.environment();
    environment.home = home.path("nowhere");
    environment.dataHome = home.path("nowhere/share");

    EXPECT_TRUE(verdict(home.addFolder("folder"), environment));
}

TEST(RemovalGuardTest, StandsBeforeTheTrashAndBeforeDeletion)
{
    const TemporaryHome home;
    const LinuxFileManager files(home.environment());
    const FilePath kept = home.addFile("home/kept");

    EXPECT_EQ(files.trashItem(home.path("home")).failure().kind, Failure::Kind::Protected);
    EXPECT_EQ(files.removeItem(home.path("home")).failure().kind, Failure::Kind::Protected);
    EXPECT_TRUE(itemExists(kept));
}

TEST(RemovalGuardTest, RefusesAMountPoint)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const TemporaryHome home;
    home.addFolder("mounted");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("mounted"), "size=1m"));

        const LinuxFileManager files(home.environment());
        EXPECT_EQ(files.removeItem(home.path("mounted")).failure().kind, Failure::Kind::Protected);
        EXPECT_EQ(files.trashItem(home.path("mounted")).failure().kind, Failure::Kind::Protected);
    });
}
