#include "Platform/Linux/Files/MoveWithoutReplacing.h"

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <iterator>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

using namespace Quillmere;

namespace {

/// From now on this process meets file systems that know no exclusive move, on a disk that fails whoever looks at a
/// name.
bool moveOnAFailingDisk()
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 1, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_newfstatat, 2, 4),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[4])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, RENAME_NOREPLACE, 3, 2),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[3])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AT_SYMLINK_NOFOLLOW, 2, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO),
    };
    const sock_fprog program = {std::size(steps), steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace

TEST(MoveWithoutReplacingTest, LeavesANameThatCannotBeLookedAt)
{
    const TemporaryHome home;
    const FilePath item = home.addFile("item", "item");
    const FilePath other = home.addFile("other", "other");

    inChild([&] {
        ASSERT_TRUE(moveOnAFailingDisk());
        EXPECT_EQ(moveWithoutReplacing(AT_FDCWD, item.bytes(), AT_FDCWD, other.bytes()), EIO);
    });

    EXPECT_EQ(contentsOf(item), "item");
    EXPECT_EQ(contentsOf(other), "other");
}
