#include "Platform/Linux/Disks/KnownMounts.h"

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/NoDescriptorsLeft.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

using namespace Quillmere;

namespace {

bool isKnown(const FilePath &mountPoint)
{
    const QList<MountEntry> mounts = knownMounts();
    return std::ranges::find(mounts, mountPoint, &MountEntry::location) != mounts.end();
}

} // namespace

TEST(KnownMountsTest, KeepsWhatItKnowsWhileItCannotReadAndReadsAgain)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const TemporaryHome home;
    home.addFolder("early");
    home.addFolder("late");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("early"), "size=1m"));
        ASSERT_TRUE(isKnown(home.path("early")));
        ASSERT_TRUE(mountTmpfs(home.path("late"), "size=1m"));

        std::optional<NoDescriptorsLeft> noneLeft(std::in_place);
        EXPECT_TRUE(isKnown(home.path("early")));
        noneLeft.reset();

        EXPECT_TRUE(isKnown(home.path("late")));
    });
}

TEST(MountTableTest, TellsThatItCannotBeReadFromAnEmptyOne)
{
    inChild([] {
        ASSERT_TRUE(mountTable());
        const NoDescriptorsLeft noneLeft;
        EXPECT_FALSE(mountTable());
    });
}

TEST(MountTableTest, IsTakenToHoldAMountWhereverItCannotBeRead)
{
    const TemporaryHome home;
    inChild([&] {
        EXPECT_FALSE(holdsMount(home.path()));
        const NoDescriptorsLeft noneLeft;
        EXPECT_TRUE(holdsMount(FilePath("/")));
        EXPECT_TRUE(holdsMount(home.path()));
    });
}
