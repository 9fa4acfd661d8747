#include "Platform/Linux/Programs/LinuxProcessRunner.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <future>

using namespace Quillmere;

namespace {

/// Programs that are shell texts, and whoever waits for them.
class AwaitedProgramsTest : public testing::Test
{
protected:
    [[nodiscard]] Command shell(const QByteArray &text) const
    {
        const QString path = m_folder.filePath(u"program"_qs);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return {path, {}};
    }

    QTemporaryDir m_folder;
    LinuxProcessRunner m_runner{FilePath(m_folder.path().toUtf8())};
};

} // namespace

TEST_F(AwaitedProgramsTest, GivesBothOutputsOfAProgramInTheOrderInWhichItWroteThem)
{
    const Command command = shell("echo one; echo two >&2; echo three; echo four >&2; exit 3");

    const Result<ProcessOutcome> outcome = m_runner.runJoined(command);

    ASSERT_TRUE(outcome.isOk());
    EXPECT_EQ(outcome.value(), (ProcessOutcome{3, "one\ntwo\nthree\nfour\n"}));
}

TEST_F(AwaitedProgramsTest, ReadsMoreThanAPipeHoldsOnBothOutputsBeforeItWaits)
{
    const Command command = shell("head -c 500000 /dev/zero; head -c 500000 /dev/zero >&2");

    const Result<ProcessOutcome> outcome = m_runner.runJoined(command);

    ASSERT_TRUE(outcome.isOk());
    EXPECT_EQ(outcome.value().standardOutput.size(), 1'000'000);
    EXPECT_EQ(outcome.value().exitStatus, 0);
}

TEST_F(AwaitedProgramsTest, TakesAFloodOnBothOutputsAtOnce)
{
    const Command command
        = shell("yes output | head -c 7000000 & yes errors | head -c 7000000 >&2 & wait; echo end >&2; exit 4");

    const Result<ProcessOutcome> outcome = m_runner.runJoined(command);

    ASSERT_TRUE(outcome.isOk());
    EXPECT_EQ(outcome.value().exitStatus, 4);
    EXPECT_TRUE(outcome.value().standardOutput.startsWith("["));
    EXPECT_TRUE(outcome.value().standardOutput.endsWith("end\n"));
    EXPECT_LT(outcome.value().standardOutput.size(), 1024 * 1024 + 100);
}

TEST_F(AwaitedProgramsTest, KeepsTheLastLinesOfAFloodAndSaysHowMuchIsLeftOut)
{
    const Command command = shell("yes 1234567 | head -c 80000000; echo 'the \303\244nd'; exit 5");

    const Result<ProcessOutcome> outcome = m_runner.runJoined(command);

    ASSERT_TRUE(outcome.isOk());
    EXPECT_EQ(outcome.value().exitStatus, 5);
    const QByteArray &text = outcome.value().standardOutput;
    EXPECT_LE(text.size(), 1024 * 1024 + 64);
    EXPECT_GE(text.size(), 1024 * 1024 - 64);
    EXPECT_TRUE(text.endsWith("\n1234567\nthe \303\244nd\n"));
    const qsizetype firstLine = text.indexOf('\n') + 1;
    EXPECT_EQ(text.left(firstLine),
              "[" + QByteArray::number(80000009 - (text.size() - firstLine)) + " bytes left out]\n");
    EXPECT_EQ(text.mid(firstLine, 8), "1234567\n");
}

TEST_F(AwaitedProgramsTest, CutsAFloodWithoutLinesWhereACharacterBegins)
{
    const Command command = shell("yes '\342\202\254' | tr -d '\\n' | head -c 3000000");

    const Result<ProcessOutcome> outcome = m_runner.runJoined(command);

    ASSERT_TRUE(outcome.isOk());
    EXPECT_TRUE(outcome.value().standardOutput.isValidUtf8());
    EXPECT_TRUE(outcome.value().standardOutput.startsWith("[19514"));
}

TEST_F(AwaitedProgramsTest, FailsForAProgramThatIsMissing)
{
    const Command missing = {m_folder.filePath(u"missing"_qs), {}};

    EXPECT_EQ(m_runner.runJoined(missing).failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(m_runner.start(missing).failure().kind, Failure::Kind::NotFound);
}

TEST_F(AwaitedProgramsTest, BringsTheStatusOfAProgramThatWasStarted)
{
    Result<std::future<int>> end = m_runner.start(shell("exit 9"));

    ASSERT_TRUE(end.isOk());
    EXPECT_EQ(end.value().get(), 9);
}

TEST_F(AwaitedProgramsTest, BringsTheStatusOnlyOnceTheProgramHasEnded)
{
    const QString signalFile = m_folder.filePath(u"go"_qs);
    Result<std::future<int>> end
        = m_runner.start(shell("while [ ! -e '" + signalFile.toUtf8() + "' ]; do sleep 0.02; done; exit 4"));
    ASSERT_TRUE(end.isOk());

    EXPECT_EQ(end.value().wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    QFile go(signalFile);
    ASSERT_TRUE(go.open(QIODevice::WriteOnly));

    EXPECT_EQ(end.value().get(), 4);
}

TEST_F(AwaitedProgramsTest, LetsGoOfAProgramThatNobodyWaitsFor)
{
    const QString done = m_folder.filePath(u"done"_qs);
    {
        const Result<std::future<int>> end = m_runner.start(shell(": > '" + done.toUtf8() + "'"));
        ASSERT_TRUE(end.isOk());
    }

    while (!QFile::exists(done))
        std::this_thread::yield();
}
