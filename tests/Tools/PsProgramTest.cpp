#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

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
    environment.remove(u"XDG_RUNTIME_DIR"_qs);
    if (!runtimeFolder.isEmpty())
        environment.insert(u"XDG_RUNTIME_DIR"_qs, runtimeFolder);
    program.setProcessEnvironment(environment);
    program.start(QString::fromUtf8(QUILLMERE_PS), arguments);
    EXPECT_TRUE(program.waitForFinished());
    return {program.exitCode(), program.readAllStandardOutput()};
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
    EXPECT_EQ(runPs({}, {}).status, 1);
    EXPECT_EQ(runPs({u"-ax"_qs}, {}).status, 1);
    EXPECT_EQ(runPs(asked + QStringList{u"-f"_qs}, {}).status, 1);
    EXPECT_EQ(runPs({u"-ax"_qs, u"-o"_qs, u"pid,rss"_qs}, {}).output, "");
}

TEST(PsProgramTest, ListsThisProcessWithItsMemory)
{
    const Listing run = runPs(asked, {});

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
    const double lifelong = lineOf(runPs(asked, {}).output, child).value(0).toDouble();
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);

    EXPECT_GT(busy, 0);
    EXPECT_EQ(stopped, 0);
    EXPECT_GT(lifelong, 0);
}
