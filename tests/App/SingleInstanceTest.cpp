#include "App/SingleInstance.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrentRun>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class SingleInstanceTest : public testing::Test
{
protected:
    /// A later start, as from another process: this one goes on answering meanwhile.
    bool claimElsewhere()
    {
        QFuture<bool> claimed
            = QtConcurrent::run([path = folder.path()] { return SingleInstance(path, u"here"_qs).claim(); });
        (void)QTest::qWaitFor([&] { return claimed.isFinished(); }, 20000);
        return claimed.result();
    }

    QTemporaryDir folder;
    SingleInstance first{folder.path(), u"here"_qs};
};

} // namespace

TEST_F(SingleInstanceTest, LetsTheFirstStartRun)
{
    EXPECT_TRUE(first.claim());
}

TEST_F(SingleInstanceTest, SendsALaterStartToTheFirst)
{
    ASSERT_TRUE(first.claim());
    QSignalSpy asked(&first, &SingleInstance::activationRequested);
    qputenv("XDG_ACTIVATION_TOKEN", "token-1");

    EXPECT_FALSE(claimElsewhere());
    qunsetenv("XDG_ACTIVATION_TOKEN");

    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked.first().first().toString(), u"token-1"_qs);
}

TEST_F(SingleInstanceTest, RunsBesideTheInstanceOfAnotherHome)
{
    ASSERT_TRUE(first.claim());

    SingleInstance other(folder.path(), u"there"_qs);

    EXPECT_TRUE(other.claim());
}

TEST_F(SingleInstanceTest, TakesOverFromAnInstanceThatHasEnded)
{
    {
        SingleInstance ended(folder.path(), u"here"_qs);
        ASSERT_TRUE(ended.claim());
    }

    EXPECT_TRUE(first.claim());
    EXPECT_FALSE(claimElsewhere());
}

TEST_F(SingleInstanceTest, RunsOnItsOwnWhereThereIsNoFolder)
{
    SingleInstance lost(folder.filePath(u"none"_qs), u"here"_qs);

    EXPECT_TRUE(lost.claim());
}

TEST_F(SingleInstanceTest, RunsOnItsOwnWhereTheFirstHangs)
{
    ASSERT_TRUE(first.claim());

    // Nobody handles the first one's events while this waits.
    SingleInstance second(folder.path(), u"here"_qs);

    EXPECT_TRUE(second.claim());
}

TEST_F(SingleInstanceTest, WaitsForAFirstStartThatDoesNotListenYet)
{
    QLockFile starting(folder.filePath(u"here.lock"_qs));
    ASSERT_TRUE(starting.tryLock());
    QFuture<bool> later
        = QtConcurrent::run([path = folder.path()] { return SingleInstance(path, u"here"_qs).claim(); });
    QTest::qWait(100);
    starting.unlock();
    ASSERT_TRUE(first.claim());

    ASSERT_TRUE(QTest::qWaitFor([&] { return later.isFinished(); }, 20000));
    EXPECT_FALSE(later.result());
}

TEST_F(SingleInstanceTest, ShutsOutACallerThatFloods)
{
    ASSERT_TRUE(first.claim());
    const QSignalSpy asked(&first, &SingleInstance::activationRequested);
    QLocalSocket caller;
    QSignalSpy gone(&caller, &QLocalSocket::disconnected);
    caller.connectToServer(folder.filePath(u"here.socket"_qs));
    ASSERT_TRUE(caller.waitForConnected());

    caller.write(QByteArray(100'000, 'x'));

    EXPECT_TRUE(QTest::qWaitFor([&gone] { return gone.count() == 1; }));
    EXPECT_EQ(asked.count(), 0);
}
