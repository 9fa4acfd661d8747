#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/SpawnedProgram.h"
#include "Platform/Linux/TemporaryHome.h"

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;
using testing::StartsWith;

namespace {

const QStringList asked = {u"-ax"_qs, u"-o"_qs, u"pid,%cpu,rss"_qs};

struct Listing
{
    int status = 0;
    QByteArray output;
};

Listing runPs(const QStringList &arguments, const QString &runtimeFolder)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_RUNTIME_DIR"_qs, runtimeFolder);
    program.setProcessEnvironment(environment);
    program.start(QString::fromUtf8(QUILLMERE_PS), arguments);
    EXPECT_TRUE(program.waitForFinished());
    return {program.exitCode(), program.readAllStandardOutput()};
}

/// In a session of its own.
Listing runOnce(const QStringList &arguments)
{
    const QTemporaryDir runtime;
    return runPs(arguments, runtime.path());
}

/// The columns behind the number of @p pid; empty when it is not listed.
QList<QByteArray> lineOf(const QByteArray &output, pid_t pid)
{
    for (const QByteArray &line : output.split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() == 3 && fields.first() == QByteArray::number(pid))
            return fields.sliced(1);
    }
    return {};
}

} // namespace

TEST(PsProgramTest, RefusesEveryOtherQuestion)
{
    EXPECT_EQ(runOnce({}).status, 1);
    EXPECT_EQ(runOnce({u"-ax"_qs}).status, 1);
    EXPECT_EQ(runOnce(asked + QStringList{u"-f"_qs}).status, 1);
    EXPECT_EQ(runOnce({u"-ax"_qs, u"-o"_qs, u"pid,rss"_qs}).output, "");
}

TEST(PsProgramTest, ListsThisProcessWithItsMemory)
{
    const Listing run = runOnce(asked);

    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output.toStdString(), StartsWith("    PID  %CPU    RSS\n"));
    const QList<QByteArray> fields = lineOf(run.output, ::getpid());
    ASSERT_EQ(fields.size(), 2);
    QFile status(u"/proc/self/status"_qs);
    ASSERT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("VmRSS:");
    const double kibibytes = text.mid(at + 6, text.indexOf("kB", at) - at - 6).trimmed().toDouble();
    EXPECT_NEAR(fields.at(1).toDouble(), kibibytes, kibibytes / 4);
}

TEST(PsProgramTest, TellsTheLoadSinceItsCallBefore)
{
    const QTemporaryDir runtime;
    const pid_t child = ::fork();
    if (child == 0) {
        for (;;)
            std::ignore = ::getppid();
    }
    ::usleep(700'000);
    const double busy = lineOf(runPs(asked, runtime.path()).output, child).value(0).toDouble();
    ::kill(child, SIGSTOP);
    ::waitpid(child, nullptr, WUNTRACED);
    ::usleep(100'000);
    std::ignore = runPs(asked, runtime.path());
    ::usleep(600'000);
    std::ignore = runPs(asked, runtime.path());
    ::usleep(600'000);
    const double stopped = lineOf(runPs(asked, runtime.path()).output, child).value(0).toDouble();
    const double lifelong = lineOf(runOnce(asked).output, child).value(0).toDouble();
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);

    EXPECT_GT(busy, 0);
    EXPECT_EQ(stopped, 0);
    EXPECT_GT(lifelong, 0);
}

TEST(PsProgramTest, RemembersForRootWithoutASessionToo)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([] {
        ASSERT_TRUE(mountTmpfs(FilePath("/run"), "mode=755"));
        QByteArray output;

        EXPECT_EQ(runProgram(u"env"_qs,
                             QStringList{u"-u"_qs, u"XDG_RUNTIME_DIR"_qs, QStringLiteral(QUILLMERE_PS)} + asked,
                             &output),
                  0);

        EXPECT_TRUE(itemExists(FilePath("/run/quillmere/ps.sample")));
    });
}
