#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstddef>
#include <iterator>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

/// Whether the files of this program lie on a file server, as far as its locks go.
bool isOnFileServer = false;

} // namespace

/// In the place of the system's. flock(2): of NFS, a lock that keeps all others out needs a file open for writing.
extern "C" int flock(int file, int operation) noexcept
{
    if (isOnFileServer && (operation & LOCK_EX) != 0 && (::fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY) {
        errno = EBADF;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_flock, file, operation));
}

namespace {

/// From now on this process dies of renameat(2), the last step that is seen from outside.
bool dieOfRenaming()
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
#ifdef SYS_renameat
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat, 1, 0),
#else
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 1, 0),
#endif
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
    };
    const sock_fprog program = {std::size(steps), steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

class FileReplacementTest : public testing::Test
{
protected:
    void TearDown() override { isOnFileServer = false; }

    /// Leaves a replacement of the file abandoned.
    void replaceAndDie() const
    {
        const pid_t child = startChild([&] {
            if (dieOfRenaming())
                std::ignore = replaceFile(file, "abandoned");
        });
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "this kernel filters no calls";
    }

    TemporaryHome home;
    const FilePath file = home.addFile("folder/file", "old");
};

} // namespace

TEST_F(FileReplacementTest, ClearsWhatAnEarlierOneLeftAbandoned)
{
    replaceAndDie();
    replaceAndDie();
    ASSERT_THAT(home.names("folder"), SizeIs(2));
    ASSERT_EQ(home.contents("folder/file"), "old");

    EXPECT_TRUE(replaceFile(file, "new"));

    EXPECT_THAT(home.names("folder"), ElementsAre("file"));
    EXPECT_EQ(home.contents("folder/file"), "new");
}

TEST_F(FileReplacementTest, ClearsWhatIsAbandonedOnAFileServer)
{
    replaceAndDie();
    ASSERT_THAT(home.names("folder"), SizeIs(2));
    isOnFileServer = true;

    EXPECT_TRUE(replaceFile(file, "new"));

    EXPECT_THAT(home.names("folder"), ElementsAre("file"));
}

TEST_F(FileReplacementTest, ClearsWhatIsAbandonedAndMayNotBeWrittenTo)
{
    replaceAndDie();
    const FilePath abandoned = home.path("folder/" + home.names("folder").first());
    ASSERT_EQ(::chmod(abandoned.bytes().constData(), 0444), 0);

    inUnprivilegedChild(home.path(), [&] { EXPECT_TRUE(replaceFile(file, "new")); });

    EXPECT_THAT(home.names("folder"), ElementsAre("file"));
}

TEST_F(FileReplacementTest, LeavesWhatIsAbandonedOfAnotherFile)
{
    replaceAndDie();

    EXPECT_TRUE(replaceFile(home.path("folder/other"), "new"));

    EXPECT_THAT(home.names("folder"), SizeIs(3));
}

TEST_F(FileReplacementTest, LeavesOneAloneThatIsOnItsWay)
{
    replaceAndDie();
    const QByteArray name = home.names("folder").first();
    const FileDescriptor held(::open(home.path("folder/" + name).bytes().constData(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(held.number(), LOCK_EX | LOCK_NB), 0);

    EXPECT_TRUE(replaceFile(file, "new"));

    EXPECT_THAT(home.names("folder"), ElementsAre(name, "file"));
    EXPECT_EQ(home.contents("folder/file"), "new");
}

TEST_F(FileReplacementTest, StaysWholeWithManyAtOnce)
{
    constexpr int writers = 8;
    constexpr int rounds = 50;
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        children.push_back(startChild([&] {
            for (int round = 0; round < rounds; ++round) {
                if (!replaceFile(file, QByteArray(1000, static_cast<char>('a' + writer))))
                    ::_exit(1);
            }
            ::_exit(0);
        }));
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    const QByteArray contents = home.contents("folder/file");
    EXPECT_EQ(contents, QByteArray(1000, contents.front()));
    EXPECT_THAT(home.names("folder"), ElementsAre("file"));
}
