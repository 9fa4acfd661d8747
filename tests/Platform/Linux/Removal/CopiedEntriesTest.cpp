#include "Platform/Linux/Removal/CopiedEntries.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

struct stat described(ino_t inode, off_t size, timespec modified)
{
    struct stat status = {};
    status.st_dev = 7;
    status.st_ino = inode;
    status.st_size = size;
    status.st_mtim = modified;
    return status;
}

} // namespace

TEST(CopiedEntriesTest, KnowsWhatWasCopiedAndHasNotChangedSince)
{
    CopiedEntries copied;
    copied.add(described(1, 10, {100, 5}));

    EXPECT_TRUE(copied.contains(described(1, 10, {100, 5})));
    EXPECT_FALSE(copied.contains(described(2, 10, {100, 5})));
    EXPECT_FALSE(copied.contains(described(1, 11, {100, 5})));
    EXPECT_FALSE(copied.contains(described(1, 10, {101, 5})));
    EXPECT_FALSE(copied.contains(described(1, 10, {100, 6})));
}
