#include "Platform/Linux/Disks/MountMemory.h"
#include "Platform/Linux/Disks/PretendBlockDevices.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A stick of two volumes.
class MountMemoryTest : public testing::Test
{
protected:
    MountMemoryTest()
    {
        machine.addDisk("sda", "8:0", 16 << 20, 7, "usb1");
        machine.addPartition("sda", 1, "8:1", 1 << 20, 5 << 20);
        machine.addPartition("sda", 2, "8:2", 6 << 20, 10 << 20);
        machine.setUuid("sda1", "1234-ABCD");
        machine.setUuid("sda2", "8f0c");
    }

    static MountEntry mount(const char *place, const QByteArray &device, const QByteArray &type = "vfat")
    {
        return {FilePath(place), type, device, FilePath("/")};
    }
    /// The places that are told of when the table has become this one.
    QList<FilePath> news(const QList<MountEntry> &table) { return memory.takeNews(table); }

    PretendBlockDevices machine;
    MountMemory memory{machine.devices()};
};

const FilePath place("/media/stick");

} // namespace

TEST_F(MountMemoryTest, AVolumeThatComesIsNewsOnce)
{
    EXPECT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));
    EXPECT_THAT(news({mount("/media/stick", "8:1")}), IsEmpty());
    EXPECT_THAT(news({mount("/media/stick", "8:1"), mount("/srv/again", "8:1"), mount("/media/other", "8:2", "ext4")}),
                ElementsAre(FilePath("/media/other")));
}

TEST_F(MountMemoryTest, OneThatIsUnmountedAndMountedAgainIsNoNews)
{
    ASSERT_THAT(news({mount("/media/stick", "8:1", "ntfs3")}), ElementsAre(place));

    EXPECT_THAT(news({}), IsEmpty());
    EXPECT_THAT(news({mount("/media/stick", "8:1", "ntfs3")}), IsEmpty());
    EXPECT_THAT(news({}), IsEmpty());
    EXPECT_THAT(news({mount("/media/elsewhere", "8:1", "ntfs3")}), IsEmpty());
}

TEST_F(MountMemoryTest, OneThatWasFormattedAnewIsNews)
{
    ASSERT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));
    ASSERT_THAT(news({}), IsEmpty());

    machine.setUuid("sda1", "4711-0815");
    EXPECT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place)) << "of the same kind";
    ASSERT_THAT(news({}), IsEmpty());
    EXPECT_THAT(news({mount("/media/stick", "8:1", "ntfs3")}), ElementsAre(place)) << "of another kind";
    ASSERT_THAT(news({}), IsEmpty());
    EXPECT_THAT(news({mount("/media/stick", "8:1", "ntfs3")}), IsEmpty());
}

TEST_F(MountMemoryTest, OneThatWasFormattedAnewBetweenTwoLooksIsNews)
{
    ASSERT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));

    machine.setUuid("sda1", "4711-0815");
    EXPECT_THAT(news({mount("/media/other", "8:1")}), ElementsAre(FilePath("/media/other")));
    EXPECT_THAT(news({mount("/media/other", "8:1")}), IsEmpty());
    machine.setUuid("sda1", {});
    EXPECT_THAT(news({mount("/media/other", "8:1")}), IsEmpty());
    machine.setUuid("sda1", "0000-0001");
    EXPECT_THAT(news({mount("/media/third", "8:1")}), ElementsAre(FilePath("/media/third")));
}

TEST_F(MountMemoryTest, TheUuidThatIsSeenLateMakesNoNewsOfWhatIsMounted)
{
    machine.setUuid("sda1", {});
    ASSERT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));

    machine.setUuid("sda1", "4711-0815");

    EXPECT_THAT(news({mount("/media/stick", "8:1"), mount("/tmp/other", "0:50", "tmpfs")}), IsEmpty());
}

TEST_F(MountMemoryTest, TheSamePlaceWithAnotherDiskIsNews)
{
    ASSERT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));
    ASSERT_THAT(news({}), IsEmpty());

    machine.exchange("sda", 8);

    EXPECT_THAT(news({mount("/media/stick", "8:1")}), ElementsAre(place));
}
