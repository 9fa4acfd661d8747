#include "Tools/HolderLock.h"

#include "Platform/Linux/ChildProcess.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

class HolderLockTest : public testing::Test
{
protected:
    /// Another process that takes the lock and lives on.
    pid_t startHolder() const
    {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        const pid_t child = startChild([&] {
            const auto lock = HolderLock::open(folder);
            const char taken = lock && lock.value().take() ? 'y' : 'n';
            if (::write(ends[1], &taken, 1) == 1)
                ::pause();
        });
        char taken = 0;
        EXPECT_EQ(::read(ends[0], &taken, 1), 1);
        EXPECT_EQ(taken, 'y');
        ::close(ends[0]);
        ::close(ends[1]);
        return child;
    }

    QTemporaryDir temporary;
    FilePath folder = FilePath(QFile::encodeName(temporary.path())).appending("run");
};

} // namespace

TEST_F(HolderLockTest, MakesAFolderForItsOwnerAlone)
{
    ASSERT_TRUE(HolderLock::open(folder));

    struct stat status
    {
    };
    ASSERT_EQ(::stat(folder.bytes().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
}

TEST_F(HolderLockTest, KnowsNoHolderWhereNobodyHasTheLock)
{
    const auto lock = HolderLock::open(folder);
    ASSERT_TRUE(lock);

    const auto holder = lock.value().holder();

    ASSERT_TRUE(holder);
    EXPECT_FALSE(holder.value().has_value());
}

TEST_F(HolderLockTest, BelievesTheLockAndNotTheNumberInTheFile)
{
    const pid_t bystander = startChild([] { ::pause(); });
    const auto lock = HolderLock::open(folder);
    QFile file(QFile::decodeName(folder.appending("keepawake.pid").bytes()));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QByteArray::number(bystander));
    file.close();

    // Closing the file above gave back nothing: this process never had the lock.
    const auto holder = lock.value().holder();

    ASSERT_TRUE(holder);
    EXPECT_FALSE(holder.value().has_value());
    killChild(bystander);
}

TEST_F(HolderLockTest, NamesTheProcessThatHolds)
{
    const pid_t child = startHolder();
    const auto lock = HolderLock::open(folder);
    ASSERT_TRUE(lock);
    const auto holder = lock.value().holder();
    ASSERT_TRUE(holder && holder.value().has_value());

    killChild(child);

    pollfd ended{holder.value()->number(), POLLIN, 0};
    EXPECT_EQ(::poll(&ended, 1, 20000), 1);
    EXPECT_FALSE(lock.value().holder().value().has_value());
}

TEST_F(HolderLockTest, IsTakenByOneAlone)
{
    const pid_t child = startHolder();
    const auto lock = HolderLock::open(folder);
    ASSERT_TRUE(lock);

    const auto taken = lock.value().take();

    ASSERT_FALSE(taken);
    EXPECT_EQ(taken.failure().kind, Failure::Kind::AlreadyExists);
    killChild(child);
    EXPECT_TRUE(lock.value().take());
}

TEST_F(HolderLockTest, RefusesAFolderThatOthersMayWriteIn)
{
    ASSERT_EQ(::mkdir(folder.bytes().constData(), 0700), 0);
    ASSERT_EQ(::chmod(folder.bytes().constData(), 0777), 0);

    const auto lock = HolderLock::open(folder);

    ASSERT_FALSE(lock);
    EXPECT_EQ(lock.failure().kind, Failure::Kind::Protected);
}

TEST_F(HolderLockTest, RefusesLinks)
{
    const QByteArray elsewhere = QFile::encodeName(temporary.path()) + "/elsewhere";
    ASSERT_EQ(::mkdir(elsewhere.constData(), 0700), 0);
    ASSERT_EQ(::symlink(elsewhere.constData(), folder.bytes().constData()), 0);
    EXPECT_FALSE(HolderLock::open(folder));

    ASSERT_EQ(::unlink(folder.bytes().constData()), 0);
    ASSERT_EQ(::mkdir(folder.bytes().constData(), 0700), 0);
    ASSERT_EQ(::symlink((elsewhere + "/file").constData(), folder.appending("keepawake.pid").bytes().constData()), 0);
    EXPECT_FALSE(HolderLock::open(folder));
    EXPECT_FALSE(QFile::exists(QFile::decodeName(elsewhere + "/file")));
}
