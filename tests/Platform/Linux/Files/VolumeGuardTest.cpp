#include "Platform/Linux/Files/VolumeGuard.h"

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/DeadMount.h"
#include "Platform/Linux/Disks/KnownMounts.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include <sys/mount.h>
#include <unistd.h>

using namespace Quillmere;
using namespace std::chrono_literals;

namespace {

qsizetype numberOfThreads()
{
    return QDir(u"/proc/self/task"_qs).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// A home, and a folder "mnt/nas" that is no part of it.
class VolumeGuardTest : public testing::Test
{
protected:
    void SetUp() override { home.addFolder("mnt/nas"); }

    TemporaryHome home;
    const VolumeGuard guard{home.path("home")};
};

} // namespace

TEST_F(VolumeGuardTest, TakesALivingVolumeOfWhateverTypeForOneThatAnswers)
{
    ASSERT_FALSE(alwaysAnswers(*mountThatHolds(FilePath("/proc"), knownMounts())));

    EXPECT_TRUE(guard.isAnswering(FilePath("/proc")));
    EXPECT_TRUE(guard.isItemAnswering(FilePath("/proc/self/status")));
}

TEST_F(VolumeGuardTest, FollowsTheLinksInALivingVolumeOfWhateverType)
{
    EXPECT_EQ(guard.resolved(FilePath("/proc/self")), FilePath("/proc").appending(QByteArray::number(::getpid())));
}

TEST_F(VolumeGuardTest, TakesWhatIsNotThereForWhatAnswers)
{
    home.addLink("home/dangling", "nowhere");

    EXPECT_TRUE(guard.isAnswering(home.path("home/nothing/below")));
    EXPECT_TRUE(guard.isAnswering(home.path("home/dangling")));
}

TEST_F(VolumeGuardTest, GivesAVolumeTheTimeToComeBack)
{
    QUILLMERE_NEED(whyNoDeadMount());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        DeadMount slow(home.path("mnt/nas"));
        std::jthread answering([&] {
            std::this_thread::sleep_for(1s);
            slow.letGo();
        });

        EXPECT_TRUE(guard.isAnswering(home.path("mnt/nas/folder")));
    });
}

TEST_F(VolumeGuardTest, SparesADeadVolumeOneThreadHoweverManyPlacesItIsAskedFor)
{
    QUILLMERE_NEED(whyNoDeadMount());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const VolumeGuard guard(home.path("home"), 100ms);
        const DeadMount gone(home.path("mnt/nas"));
        const qsizetype before = numberOfThreads();

        for (const char *place : {"mnt/nas", "mnt/nas/a", "mnt/nas/b", "mnt/nas/c/d"})
            EXPECT_FALSE(guard.isAnswering(home.path(place))) << place;

        EXPECT_EQ(numberOfThreads(), before + 1);
    });
}

TEST_F(VolumeGuardTest, LeavesALinkToADeadVolumeForAnItemOfWhereItStands)
{
    QUILLMERE_NEED(whyNoDeadMount());
    home.addLink("home/link", home.path("mnt/nas").bytes());
    home.addLink("home/deeper", home.path("mnt/nas/folder").bytes());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const VolumeGuard guard(home.path("home"), 100ms);
        const DeadMount gone(home.path("mnt/nas"));

        EXPECT_TRUE(guard.isItemAnswering(home.path("home/link")));
        EXPECT_FALSE(guard.isAnswering(home.path("home/link")));
        EXPECT_FALSE(guard.isItemAnswering(home.path("home/deeper/item")));
        EXPECT_EQ(guard.resolved(home.path("home/deeper/item")), home.path("mnt/nas/folder/item"));
    });
}

TEST_F(VolumeGuardTest, OpensNoDeadVolumeByAWayThroughALink)
{
    QUILLMERE_NEED(whyNoDeadMount());
    home.addLink("home/link", home.path("mnt").bytes());
    home.addFolder("mnt/alive");
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const LinuxFileManager files(home.environment(), 100ms);
        const DeadMount gone(home.path("mnt/nas"));
        ASSERT_TRUE(mountTmpfs(home.path("mnt/alive"), "size=1m"));

        EXPECT_EQ(files.openFolder(home.path("home/link/nas")), nullptr);
        EXPECT_NE(files.openFolder(home.path("home/link/alive")), nullptr);
    });
}

TEST_F(VolumeGuardTest, NoticesWhatIsMountedAndUnmountedBetweenTwoQuestions)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const LinuxFileManager files(home.environment());
    inMountNamespace([&] {
        const FilePath place = home.path("mnt/nas");
        EXPECT_FALSE(files.isMountPoint(place));
        ASSERT_TRUE(mountTmpfs(place, "size=1m"));
        EXPECT_TRUE(files.isMountPoint(place));
        ASSERT_EQ(::umount(place.bytes().constData()), 0);
        EXPECT_FALSE(files.isMountPoint(place));
    });
}
