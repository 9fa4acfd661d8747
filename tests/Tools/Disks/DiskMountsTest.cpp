#include "Tools/Disks/DiskMounts.h"
#include "Tools/Disks/DisksFixture.h"

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct DiskMountsTest : DisksTest
{
    [[nodiscard]] DiskService service() const { return DiskService(bus.connection()); }
    [[nodiscard]] DiskMounts mounts(quint64 number) const
    {
        return DiskMounts::of(number, service(), machine.devices());
    }
};

} // namespace

TEST_F(DiskMountsTest, WhatWasLetGoOfForNothingIsMountedAgain)
{
    devices->devices["sdb"].isClaimed = true;
    const DiskMounts before = mounts(stick);

    const ToolEnd end = overwrite(diskWords(first));

    EXPECT_EQ(end.status, ToolEnd::notBegun);
    EXPECT_EQ(describe("sdb1"), u"vfat First");
    EXPECT_EQ(describe("sdb2"), u"ext4 Second");
    EXPECT_THAT(before.restore(service()),
                testing::UnorderedElementsAre(u"Mounted again at /media/new what was at /media/first."_qs,
                                              u"Mounted again at /media/new what was at /media/second."_qs));
    EXPECT_EQ(describe("sdb1"), u"vfat First /media/new");
    EXPECT_EQ(describe("sdb2"), u"ext4 Second /media/new");
    EXPECT_THAT(before.restore(service()), IsEmpty());
}

TEST_F(DiskMountsTest, OneThatComesBackToItsPlaceIsSaidToBeThere)
{
    const quint64 third = addPartition("sdb", 3, "8:19", u"stick"_qs, u"ext4"_qs, u"Third"_qs, {u"/media/new"_qs});
    const DiskMounts before = mounts(third);
    const QString object = service().objects().value().block(third)->object;
    ASSERT_TRUE(service().unmount(object));

    EXPECT_THAT(before.restore(service()), ElementsAre(u"Mounted /media/new again."_qs));
}

TEST_F(DiskMountsTest, WhatIsStillMountedAndWhatNeverWasIsLeftAsItIs)
{
    EXPECT_THAT(mounts(stick).restore(service()), IsEmpty());
    EXPECT_THAT(mounts(12345).restore(service()), IsEmpty());
    EXPECT_THAT(DiskMounts().restore(service()), IsEmpty());
}

TEST_F(DiskMountsTest, WhatIsAnotherByNowStaysUnmounted)
{
    const DiskMounts before = mounts(first);
    ASSERT_EQ(erase(volumeWords(first)), ToolEnd());

    const QStringList sentences = before.restore(service());

    ASSERT_EQ(sentences.size(), 1);
    EXPECT_THAT(sentences.first().toStdString(), StartsWith("/media/first stays unmounted: "));
    EXPECT_EQ(describe("sdb1"), u"ext4 CleanDisk");
}
