#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

struct PretendWorld
{
    PretendFileManager files;

    [[nodiscard]] FilePath path(const QByteArray &relative) const { return FilePath("/home/ada").appending(relative); }
    void addFolder(const QByteArray &relative) { files.addFolder(path(relative)); }
    void addFile(const QByteArray &relative) { files.addFile(path(relative), 4096); }
};

struct DiskWorld
{
    TemporaryHome disk;
    LinuxFileManager files{disk.environment()};

    [[nodiscard]] FilePath path(const QByteArray &relative) const { return disk.path("home").appending(relative); }
    void addFolder(const QByteArray &relative) { disk.addFolder("home/" + relative); }
    void addFile(const QByteArray &relative) { disk.addFile("home/" + relative, QByteArray(4096, 'x')); }
};

/// What a measure says once it has been asked to stop; the same on both disks.
template<typename World>
class MeasureContractTest : public testing::Test
{
protected:
    MeasureContractTest()
    {
        world.addFolder("empty");
        world.addFile("file");
        world.addFile("full/file");
        world.addFolder("branched/empty");
        stop.request_stop();
    }

    [[nodiscard]] Result<TreeSize> measure(const QByteArray &relative) const
    {
        return world.files.measureTree(world.path(relative), Cancellation(stop.get_token()));
    }

    World world;
    std::stop_source stop;
};

using Worlds = testing::Types<PretendWorld, DiskWorld>;
TYPED_TEST_SUITE(MeasureContractTest, Worlds);

} // namespace

TYPED_TEST(MeasureContractTest, IsZeroWhereThereIsNothingToEnumerateEvenAfterACancel)
{
    for (const char *relative : {"empty", "file", "missing"})
        EXPECT_EQ(this->measure(relative).valueOr({-1, -1}), TreeSize()) << relative;
}

TYPED_TEST(MeasureContractTest, FailsAsCancelledAtTheFirstThingThatItMeets)
{
    for (const char *relative : {"full", "branched"}) {
        const Result<TreeSize> size = this->measure(relative);
        ASSERT_FALSE(size) << relative;
        EXPECT_EQ(size.failure().kind, Failure::Kind::Cancelled);
        EXPECT_EQ(size.failure().path, this->world.path(relative));
    }
}
