#include "Platform/Linux/Need.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"
#include "Platform/Linux/RestrictedThread.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <future>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using namespace std::chrono_literals;

namespace {

/// So long that a shell, however busy the machine is, has written what it is to write; waited for to its end.
constexpr auto enough = 5s;

/// Programs that are shell texts, run with so much patience.
class ProgramWithinTimeTest : public testing::Test
{
protected:
    [[nodiscard]] QString pathOf(const QString &name) const { return m_folder.filePath(name); }

    [[nodiscard]] std::optional<ProcessOutcome> outcomeOf(const QByteArray &text, std::chrono::milliseconds patience)
    {
        const QString path = pathOf(u"program"_qs);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\ncd '" + m_folder.path().toUtf8() + "'\n" + text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        file.close();
        const auto outcome = m_runner.runWithin(patience, {path, {}});
        EXPECT_TRUE(outcome.isOk());
        return outcome.valueOr({});
    }

    /// The process whose number a program has written into that file, alive or dead but not waited for.
    [[nodiscard]] bool isThere(const QString &name) const
    {
        QFile file(pathOf(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QFile status(u"/proc/"_qs + QString::fromUtf8(file.readAll().trimmed()) + u"/stat"_qs);
        return status.open(QIODevice::ReadOnly);
    }
    /// The same, but one that is dead does not count: whoever adopted it waits for it when it likes.
    [[nodiscard]] bool lives(const QString &name) const
    {
        QFile file(pathOf(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QFile status(u"/proc/"_qs + QString::fromUtf8(file.readAll().trimmed()) + u"/stat"_qs);
        return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
    }
    [[nodiscard]] static bool comesTrue(const std::function<bool()> &condition)
    {
        for (int turn = 0; turn < 1000 && !condition(); ++turn)
            ::usleep(10'000);
        return condition();
    }

    QTemporaryDir m_folder;
    LinuxProcessRunner m_runner{FilePath(m_folder.path().toUtf8())};
};

} // namespace

TEST_F(ProgramWithinTimeTest, GivesWhatItWroteToBothOutputsInOrder)
{
    EXPECT_EQ(outcomeOf("echo out; echo err >&2; echo more; exit 7", 60s), (ProcessOutcome{7, "out\nerr\nmore\n"}));
}

TEST_F(ProgramWithinTimeTest, GivesNothingOfAProgramThatPrintsNothing)
{
    EXPECT_EQ(outcomeOf("exit 0", 60s), (ProcessOutcome{0, ""}));
}

TEST_F(ProgramWithinTimeTest, LeavesBytesAsTheyAre)
{
    EXPECT_EQ(outcomeOf("printf '\\000\\377\\r\\n\\200'", 60s)->standardOutput, QByteArray("\0\xff\r\n\x80", 5));
}

TEST_F(ProgramWithinTimeTest, TakesAsMuchAsAPipeHolds)
{
    EXPECT_EQ(outcomeOf("head -c 65536 /dev/zero", 60s)->standardOutput, QByteArray(65536, '\0'));
}

TEST_F(ProgramWithinTimeTest, EndsAProgramThatFillsThePipe)
{
    EXPECT_EQ(outcomeOf("echo $$ > pid; exec head -c 65537 /dev/zero", enough), std::nullopt);
    EXPECT_FALSE(isThere(u"pid"_qs));
}

TEST_F(ProgramWithinTimeTest, EndsAProgramThatHangsAndLeavesNoDeadProcess)
{
    EXPECT_EQ(outcomeOf("echo $$ > pid; exec sleep 1000", enough), std::nullopt);
    EXPECT_FALSE(isThere(u"pid"_qs));
}

TEST_F(ProgramWithinTimeTest, EndsAProgramThatHasClosedItsOutputsAndHangs)
{
    EXPECT_EQ(outcomeOf("echo $$ > pid; echo early; exec sleep 1000 >&- 2>&-", enough), std::nullopt);
    EXPECT_FALSE(isThere(u"pid"_qs));
}

TEST_F(ProgramWithinTimeTest, KillsAProgramThatTakesNoNoticeOfItsTermination)
{
    EXPECT_EQ(outcomeOf("trap 'echo told > told' TERM; echo $$ > pid; while :; do sleep 0.05; done", enough),
              std::nullopt);
    EXPECT_FALSE(isThere(u"pid"_qs));
    EXPECT_TRUE(QFile::exists(pathOf(u"told"_qs)));
}

TEST_F(ProgramWithinTimeTest, EndsWhatALateProgramHasStarted)
{
    EXPECT_EQ(outcomeOf("(trap '' TERM; while :; do sleep 0.05; done) & echo $! > child; wait", enough), std::nullopt);
    EXPECT_TRUE(comesTrue([this] { return !lives(u"child"_qs); }));
}

TEST_F(ProgramWithinTimeTest, DoesNotWaitForAChildThatHoldsThePipe)
{
    // The child ends when somebody opens the other end of the FIFO, which only happens behind the end of the program.
    const QString fifo = pathOf(u"fifo"_qs);
    ASSERT_EQ(::mkfifo(qPrintable(fifo), 0600), 0);

    const auto outcome = outcomeOf("(read line < fifo) & echo $! > child; echo early", 60s);

    EXPECT_EQ(outcome, (ProcessOutcome{0, "early\n"}));
    EXPECT_TRUE(lives(u"child"_qs));
    QFile line(fifo);
    ASSERT_TRUE(line.open(QIODevice::WriteOnly));
    line.close();
    EXPECT_TRUE(comesTrue([this] { return !lives(u"child"_qs); }));
}

TEST_F(ProgramWithinTimeTest, TakesNoMoreThanAPipefulOfAChildThatWritesForEver)
{
    const auto outcome = outcomeOf("yes & echo $! > child; sleep 0.2", 60s);

    ASSERT_TRUE(outcome.has_value());
    EXPECT_GT(outcome->standardOutput.size(), 0);
    EXPECT_LE(outcome->standardOutput.size(), 65536);
    EXPECT_TRUE(comesTrue([this] { return !lives(u"child"_qs); }));
}

TEST_F(ProgramWithinTimeTest, FailsForAProgramThatCannotBeStarted)
{
    EXPECT_EQ(m_runner.runWithin(60s, {pathOf(u"none"_qs), {}}).failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(m_runner.runWithin(60s, {m_folder.path(), {}}).failure().kind, Failure::Kind::NoPermission);
}

TEST_F(ProgramWithinTimeTest, RunsOnManyThreadsAtOnce)
{
    const QString path = pathOf(u"program"_qs);
    ASSERT_TRUE(outcomeOf("echo $1; [ ${1:-0} -lt 4 ] || exec sleep 1000", 60s).has_value());
    std::vector<std::future<Result<std::optional<ProcessOutcome>>>> runs;
    for (int index = 0; index < 8; ++index) {
        const Command command{path, {QString::number(index)}};
        runs.push_back(std::async(std::launch::async, [this, command, index] {
            return m_runner.runWithin(index < 4 ? 60s : 200ms, command);
        }));
    }

    for (int index = 0; index < 8; ++index) {
        const auto outcome = runs[static_cast<size_t>(index)].get().valueOr({});
        EXPECT_EQ(outcome.has_value(), index < 4);
        if (outcome) {
            EXPECT_EQ(*outcome, (ProcessOutcome{0, QByteArray::number(index) + '\n'}));
        }
    }
}

TEST_F(ProgramWithinTimeTest, NoticesTheEndOfAProgramWhereTheKernelGivesNoDescriptorsOfProcesses)
{
    std::optional<ProcessOutcome> quick;
    std::optional<ProcessOutcome> late = ProcessOutcome();
    const bool isPermitted = withoutProcessDescriptors([&] {
        quick = outcomeOf("sleep 0.1; echo done; exit 3", 60s);
        late = outcomeOf("echo $$ > pid; exec sleep 1000", enough);
    });
    QUILLMERE_NEED(isPermitted ? QByteArray() : "The kernel filters no system calls of a thread.");

    EXPECT_EQ(quick, (ProcessOutcome{3, "done\n"}));
    EXPECT_EQ(late, std::nullopt);
    EXPECT_FALSE(isThere(u"pid"_qs));
}
