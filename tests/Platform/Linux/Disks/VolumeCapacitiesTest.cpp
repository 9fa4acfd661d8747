#include "Platform/Linux/Disks/VolumeCapacities.h"

#include "Platform/Linux/Disks/Mount.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include <sys/statvfs.h>

using namespace Quillmere;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Field;

namespace {

constexpr CapacityKeys everything
    = CapacityKey::Total | CapacityKey::AvailableForImportantUsage | CapacityKey::Available;

/// A volume that keeps whoever asks until it is let go.
struct DeadVolume
{
    std::promise<void> revival;
    std::shared_future<void> revived = revival.get_future().share();
    std::shared_ptr<std::atomic_int> questions = std::make_shared<std::atomic_int>();

    [[nodiscard]] VolumeCapacities::Question question() const
    {
        return [revived = revived, questions = questions](const FilePath &) -> Result<VolumeCapacity> {
            ++*questions;
            revived.wait();
            return VolumeCapacity{1000, 400, 400};
        };
    }
};

} // namespace

TEST(VolumeCapacitiesTest, SaysWhatTheKernelSaysOfTheRootVolume)
{
    struct statvfs status = {};
    ASSERT_EQ(::statvfs("/", &status), 0);

    const Result<VolumeCapacity> capacity = VolumeCapacities().ask(FilePath("/"), everything);

    ASSERT_TRUE(capacity.isOk());
    EXPECT_EQ(capacity.value().total, static_cast<qint64>(status.f_blocks * status.f_frsize));
    EXPECT_LT(*capacity.value().available, *capacity.value().total);
    EXPECT_GT(*capacity.value().available, 0);
}

TEST(VolumeCapacitiesTest, AnswersForAFolderDeepInAVolumeAsForItsTop)
{
    const QTemporaryDir folder;
    struct statvfs status = {};
    ASSERT_EQ(::statvfs(qPrintable(folder.path()), &status), 0);

    const Result<VolumeCapacity> capacity
        = VolumeCapacities().ask(FilePath(folder.path().toUtf8()), CapacityKey::Total);

    ASSERT_TRUE(capacity.isOk());
    EXPECT_EQ(capacity.value().total, static_cast<qint64>(status.f_blocks * status.f_frsize));
}

TEST(VolumeCapacitiesTest, LeavesOutWhatWasNotAskedFor)
{
    const Result<VolumeCapacity> capacity = VolumeCapacities().ask(FilePath("/"), CapacityKey::Available);

    ASSERT_TRUE(capacity.isOk());
    EXPECT_EQ(capacity.value().total, std::nullopt);
    EXPECT_EQ(capacity.value().availableForImportantUsage, std::nullopt);
    EXPECT_NE(capacity.value().available, std::nullopt);
}

TEST(VolumeCapacitiesTest, FailsForAPlaceThatDoesNotExist)
{
    const QTemporaryDir folder;

    const Result<VolumeCapacity> capacity
        = VolumeCapacities().ask(FilePath(folder.filePath("nothing").toUtf8()), everything);

    ASSERT_FALSE(capacity.isOk());
    EXPECT_EQ(capacity.failure().kind, Failure::Kind::NotFound);
}

TEST(VolumeCapacitiesTest, IsNotHeldUpByAVolumeThatDoesNotAnswerAndAsksItOnlyOnce)
{
    DeadVolume volume;
    const VolumeCapacities capacities(volume.question(), 1ms);
    const FilePath path("/nowhere/share");

    const Result<VolumeCapacity> first = capacities.ask(path, everything);
    const Result<VolumeCapacity> second = capacities.ask(path, everything);

    ASSERT_FALSE(first.isOk());
    EXPECT_EQ(first.failure().kind, Failure::Kind::NotAnswering);
    ASSERT_FALSE(second.isOk());
    EXPECT_EQ(second.failure().kind, Failure::Kind::NotAnswering);
    EXPECT_LE(volume.questions->load(), 1);
    volume.revival.set_value();
}

TEST(VolumeCapacitiesTest, GivesTheSameAnswerToAllWhoAskWhileItIsOnItsWay)
{
    DeadVolume volume;
    const VolumeCapacities capacities(volume.question(), 1h);
    const FilePath path("/nowhere/share");
    auto first = std::async(std::launch::async, [&] { return capacities.ask(path, everything); });
    while (volume.questions->load() == 0)
        std::this_thread::yield();
    const auto answering = std::async(std::launch::async, [&] {
        std::this_thread::sleep_for(50ms);
        volume.revival.set_value();
    });

    const Result<VolumeCapacity> second = capacities.ask(path, everything);

    ASSERT_TRUE(second.isOk());
    EXPECT_EQ(second.value(), (VolumeCapacity{1000, 400, 400}));
    EXPECT_TRUE(first.get().isOk());
}

TEST(VolumeCapacitiesTest, WaitsForAsLongAsTheOneWhoAsksIsPatient)
{
    DeadVolume volume;
    const VolumeCapacities capacities(volume.question(), 1ms);
    const FilePath path("/nowhere/share");
    ASSERT_FALSE(capacities.ask(path, everything).isOk());
    const auto answering = std::async(std::launch::async, [&] {
        std::this_thread::sleep_for(50ms);
        volume.revival.set_value();
    });

    const Result<VolumeCapacity> patient = capacities.ask(path, everything, 1h);

    ASSERT_TRUE(patient.isOk());
    EXPECT_EQ(patient.value(), (VolumeCapacity{1000, 400, 400}));
}

TEST(VolumeCapacitiesTest, TakesTheAnswerOfAVolumeThatHasComeBack)
{
    DeadVolume volume;
    volume.revival.set_value();
    const VolumeCapacities capacities(volume.question(), 1h);

    const Result<VolumeCapacity> capacity = capacities.ask(FilePath("/nowhere/share"), everything);

    ASSERT_TRUE(capacity.isOk());
    EXPECT_EQ(capacity.value(), (VolumeCapacity{1000, 400, 400}));
}

TEST(MountTableTest, ReadsWhatIsMountedWhereAmongAnyNumberOfOptionalFields)
{
    const QByteArray text
        = "22 1 8:1 / / rw,relatime - ext4 /dev/sda1 rw\n"
          "30 22 0:26 /a\\040part /mnt/a\\040share rw shared:1 master:2 - nfs4 server:/export ro,vers=4\n"
          "broken line\n";

    EXPECT_THAT(parseMountTable(text),
                ElementsAre(MountEntry{FilePath("/"), "ext4", "8:1", FilePath("/"), "/dev/sda1", "rw"},
                            MountEntry{FilePath("/mnt/a share"), "nfs4", "0:26", FilePath("/a part"), "server:/export",
                                       "ro,vers=4", true}));
}

TEST(MountTableTest, FindsTheInnermostMountAndOfTwoOnOnePlaceTheLater)
{
    const QList<MountEntry> table = {{FilePath("/"), "ext4", "8:1"},
                                     {FilePath("/mnt"), "nfs4", "0:40"},
                                     {FilePath("/mnt"), "tmpfs", "0:41"},
                                     {FilePath("/mnt/deep"), "cifs", "0:42"}};

    EXPECT_EQ(mountThatHolds(FilePath("/mnt/deep/er"), table)->type, "cifs");
    EXPECT_EQ(mountThatHolds(FilePath("/mnt/other"), table)->type, "tmpfs");
    EXPECT_EQ(mountThatHolds(FilePath("/home"), table)->type, "ext4");
    EXPECT_EQ(mountThatHolds(FilePath("/home"), {}), std::nullopt);
}
