#include "Platform/Linux/Programs/LinuxProcessRunner.h"

#include "Platform/Linux/Programs/HelperPrograms.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <future>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// A folder of programs that are shell texts.
class LinuxProcessRunnerTest : public testing::Test
{
protected:
    QString program(const QString &name, const QByteArray &text) const
    {
        const QString path = m_folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    [[nodiscard]] ProcessOutcome outcomeOf(const QByteArray &text, const QStringList &arguments = {}) const
    {
        const Result<ProcessOutcome> outcome = m_runner.run({program(u"program"_qs, text), arguments});
        EXPECT_TRUE(outcome.isOk());
        return outcome.valueOr({});
    }

    QTemporaryDir m_folder;
    LinuxProcessRunner m_runner{FilePath(m_folder.path().toUtf8())};
};

} // namespace

TEST_F(LinuxProcessRunnerTest, GivesWhatAProgramWroteAndItsStatus)
{
    EXPECT_EQ(outcomeOf("echo out; echo err >&2; exit 7"), (ProcessOutcome{7, "out\n"}));
}

TEST_F(LinuxProcessRunnerTest, TakesAnOutputManyTimesLargerThanAPipe)
{
    EXPECT_EQ(outcomeOf("head -c 3000000 /dev/zero").standardOutput, QByteArray(3'000'000, '\0'));
}

TEST_F(LinuxProcessRunnerTest, LeavesBytesAsTheyAre)
{
    EXPECT_EQ(outcomeOf("printf '\\000\\377\\r\\n\\200'").standardOutput, QByteArray("\0\xff\r\n\x80", 5));
}

TEST_F(LinuxProcessRunnerTest, GivesTheSignalThatEndedAProgram)
{
    EXPECT_EQ(outcomeOf("echo begun; kill -KILL $$"), (ProcessOutcome{128 + SIGKILL, "begun\n"}));
}

TEST_F(LinuxProcessRunnerTest, WaitsForAChildThatHoldsTheOutput)
{
    EXPECT_EQ(outcomeOf("(sleep 0.3; echo late) & echo early").standardOutput, "early\nlate\n");
}

TEST_F(LinuxProcessRunnerTest, WaitsForAProgramThatHasClosedItsOutputLongBeforeItsEnd)
{
    const QString fifo = m_folder.filePath(u"fifo"_qs);
    ASSERT_EQ(::mkfifo(qPrintable(fifo), 0600), 0);
    const QString path = program(u"program"_qs, "echo early; exec >&-; read line < \"$1\"; exit 5");

    auto run = std::async(std::launch::async, [&] { return m_runner.run({path, {fifo}}).valueOr({}); });

    QFile line(fifo);
    ASSERT_TRUE(line.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    line.write("go\n");
    EXPECT_EQ(run.get(), (ProcessOutcome{5, "early\n"}));
}

TEST_F(LinuxProcessRunnerTest, FailsForAHelperThatIsMissingOrCannotBeExecuted)
{
    const Command command{u"/usr/bin/mdutil"_qs, {u"-E"_qs, u"/"_qs}};

    EXPECT_EQ(m_runner.run(command).failure().kind, Failure::Kind::NotFound);
    QFile::setPermissions(program(u"mdutil"_qs, "exit 0"), QFile::ReadOwner);
    EXPECT_EQ(m_runner.run(command).failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(m_runner.runWithin(std::chrono::seconds(60), command).failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(m_runner.launch(command).failure().kind, Failure::Kind::NoPermission);
    QFile::setPermissions(program(u"osascript"_qs, "exit 0"), QFile::ReadOwner);
    EXPECT_EQ(m_runner.executeScript(u"do"_qs).failure().kind, Failure::Kind::NoPermission);
}

TEST_F(LinuxProcessRunnerTest, TakesBytesThatAreNoTextForTheReasonOfAScript)
{
    program(u"osascript"_qs, "printf 'a\\000\\377b' >&2; exit 1");

    EXPECT_EQ(m_runner.executeScript(u"do"_qs).failure().detail, u"a\0\ufffdb"_qs);
}

TEST_F(LinuxProcessRunnerTest, FailsForAProgramThatIsMissingOrCannotBeExecuted)
{
    const QString plain = program(u"plain"_qs, "exit 0");
    QFile::setPermissions(plain, QFile::ReadOwner);
    const QString noProgram = m_folder.filePath(u"garbage"_qs);
    QFile garbage(noProgram);
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write("\x7f"
                  "ELF nonsense");
    garbage.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    garbage.close();

    EXPECT_EQ(m_runner.run({m_folder.filePath(u"none"_qs), {}}).failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(m_runner.run({plain, {}}).failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(m_runner.run({m_folder.path(), {}}).failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(m_runner.run({noProgram, {}}).failure().kind, Failure::Kind::Other);
    EXPECT_EQ(m_runner.launch({m_folder.filePath(u"none"_qs), {}}).failure().kind, Failure::Kind::NotFound);
}

TEST_F(LinuxProcessRunnerTest, HandsOverArgumentsThatAShellWouldTakeApart)
{
    const QStringList arguments = {u"it's \"quoted\""_qs,    u"two\nlines\n"_qs, u"--help"_qs,      u"-"_qs, QString(),
                                   u"$(false) `false` *"_qs, u"\\"_qs,           u"héllo \u202e"_qs};

    QByteArray expected;
    for (const QString &argument : arguments)
        expected += argument.toUtf8() + '\0';
    EXPECT_EQ(outcomeOf("printf '%s\\0' \"$@\"", arguments).standardOutput, expected);
}

TEST_F(LinuxProcessRunnerTest, TurnsHalfASurrogatePairIntoAQuestionMark)
{
    EXPECT_EQ(outcomeOf("printf %s \"$1\"", {QString(QChar(0xd800))}).standardOutput, "?");
}

TEST_F(LinuxProcessRunnerTest, RefusesAnArgumentThatWouldArriveCutShort)
{
    const QString path = program(u"program"_qs, "echo \"$1\"");

    EXPECT_EQ(m_runner.run({path, {u"a\0b"_qs}}).failure().kind, Failure::Kind::Malformed);
    EXPECT_EQ(m_runner.launch({path, {u"a\0b"_qs}}).failure().kind, Failure::Kind::Malformed);
}

TEST_F(LinuxProcessRunnerTest, GivesNothingToReadAndNoFileOfOursAndNoSignalOfOurs)
{
    const int leaking = ::open("/dev/null", O_RDONLY);
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    const ProcessOutcome outcome = outcomeOf("cat; ls -x /proc/self/fd; grep SigIgn /proc/self/status");
    ::signal(SIGPIPE, before);
    ::close(leaking);

    const QList<QByteArray> words = outcome.standardOutput.simplified().split(' ');
    // The last is the folder that ls itself reads.
    EXPECT_THAT(words.first(4), testing::ElementsAre("0", "1", "2", "3"));
    // Those above the first 31 are the C library's own.
    EXPECT_EQ(words.last().toULongLong(nullptr, 16) & 0x7fffffff, 0u);
}

TEST_F(LinuxProcessRunnerTest, PassesOnTheEnvironmentThatItWasMadeIn)
{
    qputenv("QUILLMERE_TEST", "a value");
    const LinuxProcessRunner made(FilePath("/nonexistent"));
    qputenv("QUILLMERE_TEST", "a later one");

    const Result<ProcessOutcome> outcome = made.run({u"/bin/sh"_qs, {u"-c"_qs, u"printf %s \"$QUILLMERE_TEST\""_qs}});

    EXPECT_EQ(outcome.value().standardOutput, "a value");
    qunsetenv("QUILLMERE_TEST");
}

TEST_F(LinuxProcessRunnerTest, LaunchesWithoutWaitingAndLeavesNoDeadProcess)
{
    const QString fifo = m_folder.filePath(u"fifo"_qs);
    ASSERT_EQ(::mkfifo(qPrintable(fifo), 0600), 0);
    const QString path = program(u"program"_qs, "read line < \"$1\"; echo $$ > \"$2\"; mv \"$2\" \"$3\"");
    const QString result = m_folder.filePath(u"result"_qs);

    ASSERT_TRUE(m_runner.launch({path, {fifo, m_folder.filePath(u"part"_qs), result}}).isOk());

    // It is still waiting for this line: whoever opens the other end waits for it in turn.
    QFile line(fifo);
    ASSERT_TRUE(line.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_FALSE(QFile::exists(result));
    line.write("go\n");
    line.close();
    for (int turn = 0; turn < 500 && !QFile::exists(result); ++turn)
        ::usleep(10'000);
    QFile written(result);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QString process = u"/proc/"_qs + QString::fromUtf8(written.readAll().trimmed());
    for (int turn = 0; turn < 500 && QFile::exists(process); ++turn)
        ::usleep(10'000);
    EXPECT_FALSE(QFile::exists(process));
}

TEST_F(LinuxProcessRunnerTest, RunsTheSystemsCommandsFromTheFolderOfHelpers)
{
    program(u"ps"_qs, "echo our ps \"$@\"");

    const Result<ProcessOutcome> outcome = m_runner.run({u"/bin/ps"_qs, {u"-ax"_qs}});

    ASSERT_TRUE(outcome.isOk());
    EXPECT_EQ(outcome.value().standardOutput, "our ps -ax\n");
    EXPECT_EQ(m_runner.run({u"/usr/bin/mdutil"_qs, {}}).failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(m_runner.run({u"/bin/echo"_qs, {u"itself"_qs}}).value().standardOutput, "itself\n");
}

TEST_F(LinuxProcessRunnerTest, HandsAScriptOverWholeAndFailsWithWhatItSays)
{
    program(u"osascript"_qs,
            "echo to nobody; [ \"$1\" = -e ] && [ \"$2\" = 'do \"it\"' ] && exit 0\n"
            "echo 'execution error: User canceled. (-128)' >&2; exit 1");

    EXPECT_TRUE(m_runner.executeScript(u"do \"it\""_qs).isOk());
    const Result<void> refused = m_runner.executeScript(u"do"_qs);
    ASSERT_FALSE(refused.isOk());
    EXPECT_EQ(refused.failure().detail, u"execution error: User canceled. (-128)"_qs);
}

TEST_F(LinuxProcessRunnerTest, ReportsAScriptThatASignalEndedOrThatCannotBegin)
{
    EXPECT_EQ(m_runner.executeScript(u"do"_qs).failure().kind, Failure::Kind::NotFound);
    program(u"osascript"_qs, "kill -TERM $$");
    EXPECT_FALSE(m_runner.executeScript(u"do"_qs).isOk());
}

TEST_F(LinuxProcessRunnerTest, DoesNotWaitForWhatAScriptHasLeftBehind)
{
    // What stays holds standard error until the FIFO is opened, which only happens behind the end of the script.
    const QString fifo = m_folder.filePath(u"fifo"_qs);
    ASSERT_EQ(::mkfifo(qPrintable(fifo), 0600), 0);
    program(u"osascript"_qs, "(read line < \"$2\") & head -c 300000 /dev/zero | tr '\\0' e >&2; exit 1");

    const Result<void> done = m_runner.executeScript(fifo);

    QFile line(fifo);
    ASSERT_TRUE(line.open(QIODevice::WriteOnly));
    ASSERT_FALSE(done.isOk());
    EXPECT_EQ(done.failure().detail, QString(300000, u'e'));
}

TEST_F(LinuxProcessRunnerTest, RunsFromThreadsWithoutAnEventLoop)
{
    const QString path = program(u"program"_qs, "head -c 100000 /dev/zero; exit $1");
    std::vector<std::future<Result<ProcessOutcome>>> runs;
    for (int index = 0; index < 8; ++index) {
        const Command command{path, {QString::number(index)}};
        runs.push_back(std::async(std::launch::async, [this, command] { return m_runner.run(command); }));
    }

    for (int index = 0; index < 8; ++index)
        EXPECT_EQ(runs[static_cast<size_t>(index)].get().valueOr({}),
                  (ProcessOutcome{index, QByteArray(100000, '\0')}));
}

TEST(HelperProgramsTest, KnowsTheSystemsCommandsByTheirWholePath)
{
    for (const char16_t *path :
         {u"/bin/ps", u"/usr/sbin/purge", u"/usr/bin/pmset", u"/usr/bin/osascript", u"/usr/sbin/diskutil",
          u"/usr/bin/mdutil", u"/usr/bin/dscacheutil", u"/usr/bin/killall", u"/usr/bin/ditto",
          u"/System/Library/Frameworks/CoreServices.framework/Frameworks/"
          "LaunchServices.framework/Support/lsregister"}) {
        const QByteArray text = QString::fromUtf16(path).toUtf8();
        EXPECT_EQ(helperProgramFor(path), text.mid(text.lastIndexOf('/') + 1));
    }
    EXPECT_EQ(helperProgramFor(u"ps"), QByteArray());
    EXPECT_EQ(helperProgramFor(u"/usr/bin/ps"), QByteArray());
    EXPECT_EQ(helperProgramFor(u"/bin/bash"), QByteArray());
}
