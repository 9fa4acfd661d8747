#include "Services/DiskSpaceService.h"

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

const CapacityKeys firstRequest = CapacityKey::Total | CapacityKey::AvailableForImportantUsage;
const CapacityKeys secondRequest = CapacityKey::Available;

class DiskSpaceServiceTest : public testing::Test
{
protected:
    DiskSpaceService::DiskSpaceInfo space() { return DiskSpaceService::getDiskSpace(FilePath("/"), *machine.files); }

    InstalledLocalizer localizer;
    PretendMachine machine;
};

} // namespace

TEST_F(DiskSpaceServiceTest, SaysWhatIsUsedOfAVolumeInOneRequest)
{
    machine.files->setCapacity(VolumeCapacity{500'000'000'000, 125'000'000'000, 100'000'000'000});

    const DiskSpaceService::DiskSpaceInfo info = space();

    EXPECT_EQ(info.totalSpace, 500'000'000'000);
    EXPECT_EQ(info.freeSpace, 125'000'000'000);
    EXPECT_EQ(info.usedSpace, 375'000'000'000);
    EXPECT_EQ(info.purgableSpace, 0);
    EXPECT_DOUBLE_EQ(info.usagePercentage, 0.75);
    EXPECT_EQ(info.freeFormatted, u"125 GB"_qs);
    EXPECT_EQ(info.usedFormatted, u"375 GB"_qs);
    EXPECT_EQ(info.totalFormatted, u"500 GB"_qs);
    EXPECT_THAT(machine.files->capacityRequests(), ElementsAre(firstRequest));
}

TEST_F(DiskSpaceServiceTest, AsksASecondTimeWhenNothingIsAvailableForImportantUsage)
{
    machine.files->setCapacity(VolumeCapacity{1000, 0, 400});

    EXPECT_EQ(space().freeSpace, 400);
    EXPECT_THAT(machine.files->capacityRequests(), ElementsAre(firstRequest, secondRequest));
}

TEST_F(DiskSpaceServiceTest, AsksASecondTimeWhenTheVolumeDoesNotKnowWhatIsAvailableForImportantUsage)
{
    machine.files->setCapacity(VolumeCapacity{1000, std::nullopt, 300});

    EXPECT_EQ(space().usedSpace, 700);
}

TEST_F(DiskSpaceServiceTest, CountsWhatNobodyKnowsAsNothing)
{
    machine.files->setCapacity(VolumeCapacity());

    const DiskSpaceService::DiskSpaceInfo info = space();

    EXPECT_EQ(info.totalSpace, 0);
    EXPECT_EQ(info.freeSpace, 0);
    EXPECT_EQ(info.usagePercentage, 0);
}

TEST_F(DiskSpaceServiceTest, IsAllZerosAndALineWhenTheFirstRequestFails)
{
    machine.files->setCapacity(Failure{Failure::Kind::Busy, FilePath("/"), u"the disk sleeps"_qs});

    testing::internal::CaptureStdout();
    const DiskSpaceService::DiskSpaceInfo info = space();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error retrieving disk space: the disk sleeps (/)\n");
    EXPECT_EQ(info.totalSpace, 0);
    EXPECT_EQ(info.freeSpace, 0);
    EXPECT_EQ(info.usedSpace, 0);
    EXPECT_EQ(info.usagePercentage, 0);
    EXPECT_THAT(machine.files->capacityRequests(), ElementsAre(firstRequest));
}

TEST_F(DiskSpaceServiceTest, TakesAllForUsedWhenOnlyTheSecondRequestFails)
{
    machine.files->setCapacity(firstRequest, VolumeCapacity{1000, 0, {}});
    machine.files->setCapacity(secondRequest, Failure{Failure::Kind::Other, {}, u"no"_qs});

    testing::internal::CaptureStdout();
    const DiskSpaceService::DiskSpaceInfo info = space();

    EXPECT_THAT(testing::internal::GetCapturedStdout(), StartsWith("Error retrieving disk space: no"));
    EXPECT_EQ(info.totalSpace, 1000);
    EXPECT_EQ(info.usedSpace, 1000);
    EXPECT_DOUBLE_EQ(info.usagePercentage, 1);
}

TEST_F(DiskSpaceServiceTest, GivesAShareOfNothingForATotalOfNothing)
{
    machine.files->setCapacity(VolumeCapacity{0, 50, {}});

    EXPECT_EQ(space().usagePercentage, 0);
}
