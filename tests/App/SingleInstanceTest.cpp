#include "App/SingleInstance.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrentRun>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

// More than any of them takes.
constexpr std::chrono::seconds aLongTime{30};
constexpr SingleInstance::Patience forLong{aLongTime, aLongTime};

class SingleInstanceTest : public testing::Test
{
protected:
    /// A later start, as from another process: this one can go on meanwhile.
    [[nodiscard]] QFuture<bool> claimElsewhere(SingleInstance::Patience patience = forLong) const
    {
        return QtConcurrent::run(
            [path = folder.path(), patience] { return SingleInstance(path, u"here"_qs).claim(patience); });
    }

    /// Handles events until that start has been decided.
    static bool result(const QFuture<bool> &claimed)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return claimed.isFinished(); }, 60'000));
        return claimed.result();
    }

    static void expectOneLineOfDiagnosis(const std::string &output)
    {
        EXPECT_TRUE(output.starts_with("A second start cannot bring this window to the front: ")) << output;
        EXPECT_EQ(output.find('\n'), output.size() - 1) << output;
    }

    [[nodiscard]] bool canConnect() const
    {
        QLocalSocket caller;
        caller.connectToServer(folder.filePath(u"here.socket"_qs));
        return caller.waitForConnected();
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

    EXPECT_FALSE(result(claimElsewhere()));
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
    EXPECT_FALSE(result(claimElsewhere()));
}

TEST_F(SingleInstanceTest, TakesOverFromAnInstanceWhoseProcessIsYetToEnd)
{
    SingleInstance ending(folder.path(), u"here"_qs);
    ASSERT_TRUE(ending.claim());
    EXPECT_FALSE(result(claimElsewhere()));

    ending.retire();

    EXPECT_TRUE(first.claim({std::chrono::milliseconds(0), std::chrono::milliseconds(0)}));
    const QSignalSpy asked(&first, &SingleInstance::activationRequested);
    EXPECT_FALSE(result(claimElsewhere()));
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(SingleInstanceTest, RunsOnItsOwnWhereThereIsNoFolderAndSaysSo)
{
    SingleInstance lost(folder.filePath(u"none"_qs), u"here"_qs);
    testing::internal::CaptureStdout();

    EXPECT_TRUE(lost.claim());

    expectOneLineOfDiagnosis(testing::internal::GetCapturedStdout());
}

TEST_F(SingleInstanceTest, HoldsNobodyUpWhereItCannotListen)
{
    // A socket's location may have 107 bytes.
    const QString deep = QString(100, u'd');
    ASSERT_TRUE(QDir(folder.path()).mkdir(deep));
    SingleInstance deaf(folder.filePath(deep), u"here"_qs);
    ASSERT_TRUE(deaf.claim());
    testing::internal::CaptureStdout();

    QCoreApplication::processEvents();

    expectOneLineOfDiagnosis(testing::internal::GetCapturedStdout());
    EXPECT_TRUE(QLockFile(folder.filePath(deep + u"/here.lock"_qs)).tryLock(0));
}

TEST_F(SingleInstanceTest, RunsOnItsOwnWhereTheFirstHangsAndSaysSo)
{
    ASSERT_TRUE(first.claim());
    QCoreApplication::processEvents();
    ASSERT_TRUE(canConnect());

    // Nobody handles the first one's events any more while this waits.
    SingleInstance second(folder.path(), u"here"_qs);
    testing::internal::CaptureStdout();

    EXPECT_TRUE(second.claim({aLongTime, std::chrono::milliseconds(50)}));

    expectOneLineOfDiagnosis(testing::internal::GetCapturedStdout());
}

TEST_F(SingleInstanceTest, RunsOnItsOwnWhereTheFirstNeverComesToListenAndSaysSo)
{
    ASSERT_TRUE(first.claim());

    SingleInstance second(folder.path(), u"here"_qs);

    EXPECT_FALSE(canConnect());
    testing::internal::CaptureStdout();
    EXPECT_TRUE(second.claim({std::chrono::milliseconds(50), aLongTime}));

    expectOneLineOfDiagnosis(testing::internal::GetCapturedStdout());
}

TEST_F(SingleInstanceTest, IsWaitedForWhileItLoadsHoweverShortThePatienceForAnswers)
{
    ASSERT_TRUE(first.claim());
    QFuture<bool> later = claimElsewhere({aLongTime, std::chrono::milliseconds(1)});

    // No events are handled while the first one's windows are built.
    QThread::msleep(200);

    EXPECT_FALSE(canConnect());
    EXPECT_FALSE(later.isFinished());
    ASSERT_TRUE(QTest::qWaitFor([this] { return canConnect(); }));
    later.waitForFinished();
}

TEST_F(SingleInstanceTest, AnswersALaterStartAsSoonAsItHandlesEvents)
{
    ASSERT_TRUE(first.claim());
    const QSignalSpy asked(&first, &SingleInstance::activationRequested);
    const QFuture<bool> later = claimElsewhere();
    QThread::msleep(100);
    EXPECT_EQ(asked.count(), 0);

    EXPECT_FALSE(result(later));
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(SingleInstanceTest, TakesOverFromAFirstThatEndsBeforeItListens)
{
    auto starting = std::make_unique<SingleInstance>(folder.path(), u"here"_qs);
    ASSERT_TRUE(starting->claim());
    const QFuture<bool> later = claimElsewhere();

    starting.reset();

    EXPECT_TRUE(result(later));
}

TEST_F(SingleInstanceTest, TakesOverFromAFirstThatEndsInsteadOfAnswering)
{
    QLockFile lock(folder.filePath(u"here.lock"_qs));
    ASSERT_TRUE(lock.tryLock());
    QLocalServer ending;
    ASSERT_TRUE(ending.listen(folder.filePath(u"here.socket"_qs)));
    const QFuture<bool> later = QtConcurrent::run([this] { return first.claim(forLong); });
    ASSERT_TRUE(ending.waitForNewConnection(20'000));

    ending.close();
    delete ending.nextPendingConnection();
    lock.unlock();

    ASSERT_TRUE(result(later));
    EXPECT_FALSE(lock.tryLock());
}

TEST_F(SingleInstanceTest, ShutsOutACallerThatFloods)
{
    ASSERT_TRUE(first.claim());
    QCoreApplication::processEvents();
    const QSignalSpy asked(&first, &SingleInstance::activationRequested);
    QLocalSocket caller;
    QSignalSpy gone(&caller, &QLocalSocket::disconnected);
    caller.connectToServer(folder.filePath(u"here.socket"_qs));
    ASSERT_TRUE(caller.waitForConnected());

    caller.write(QByteArray(100'000, 'x'));

    EXPECT_TRUE(QTest::qWaitFor([&gone] { return gone.count() == 1; }));
    EXPECT_EQ(asked.count(), 0);
}
