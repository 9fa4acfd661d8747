#include "Platform/Linux/Desktop/LinuxWorkspace.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <memory>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A home with desktop entries and programs of its own, which are copies of a small one. Only what this starts is seen
/// of the machine, since no other program is of these entries.
class LinuxWorkspaceTest : public testing::Test
{
protected:
    ~LinuxWorkspaceTest() override
    {
        for (const std::unique_ptr<QProcess> &process : m_started) {
            process->kill();
            process->waitForFinished();
        }
    }

    [[nodiscard]] QString path(const QString &name) const { return m_home.filePath(name); }

    QString program(const QString &name, const QString &original = u"/bin/dash"_qs) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        EXPECT_TRUE(QFile::copy(QFileInfo(original).canonicalFilePath(), path(name)));
        return path(name);
    }

    void entry(const QString &id, const QString &exec, const QByteArray &more = {}) const
    {
        QDir().mkpath(path(u"applications"_qs));
        QFile file(path(u"applications/"_qs + id + u".desktop"_qs));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=The " + id.toUtf8() + "\nExec=" + exec.toUtf8() + '\n'
                   + more);
    }

    /// Starts @p program and waits until it is what it will be: it tells so on its output.
    qint32 start(const QString &program, const QStringList &arguments)
    {
        m_started.push_back(std::make_unique<QProcess>());
        QProcess &process = *m_started.back();
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForReadyRead());
        return static_cast<qint32>(process.processId());
    }
    qint32 start(const QString &program) { return start(program, {u"-c"_qs, u"echo ready; read line"_qs}); }

    [[nodiscard]] QList<qint32> running() const
    {
        QList<qint32> pids;
        for (const RunningApplication &each : m_workspace.runningApplications())
            pids.append(each.processIdentifier);
        return pids;
    }

    QTemporaryDir m_home;
    LinuxWorkspace m_workspace{FilePath(m_home.path().toUtf8()),
                               {FilePath(m_home.filePath(u"applications"_qs).toUtf8())}};
    std::vector<std::unique_ptr<QProcess>> m_started;
};

} // namespace

TEST_F(LinuxWorkspaceTest, ListsARunningProgramByItsEntry)
{
    entry(u"org.example.Painter"_qs, program(u"painter/painter"_qs) + u" %U"_qs, "Icon=brush\n");
    EXPECT_THAT(m_workspace.runningApplications(), IsEmpty());

    const qint32 pid = start(path(u"painter/painter"_qs));

    const QList<RunningApplication> applications = m_workspace.runningApplications();
    ASSERT_EQ(applications.size(), 1);
    EXPECT_EQ(applications[0].processIdentifier, pid);
    EXPECT_EQ(applications[0].localizedName, u"The org.example.Painter"_qs);
    EXPECT_EQ(applications[0].bundleIdentifier, u"org.example.Painter"_qs);
    EXPECT_EQ(applications[0].bundleLocation, FilePath(path(u"painter"_qs).toUtf8()));
    EXPECT_EQ(applications[0].icon, u"brush"_qs);
    EXPECT_EQ(applications[0].launchTime, ProcessTable().stat(pid)->startTime);
}

TEST_F(LinuxWorkspaceTest, ListsEachInstanceOnceAndNoneOfItsChildrenInTheOrderOfTheirStarts)
{
    const QString painter = program(u"painter/painter"_qs);
    const QString helper = program(u"painter/helper"_qs);
    entry(u"painter"_qs, painter);
    const QString children = u"%1 -c 'echo ready; read line' & /bin/sh -c '%2 -c \"read line\"; true' & read line"_qs;

    const qint32 first = start(painter, {u"-c"_qs, children.arg(helper, painter)});
    const qint32 second = start(painter);

    EXPECT_THAT(running(), ElementsAre(first, second));
}

TEST_F(LinuxWorkspaceTest, KnowsAProgramOfItsInstallFolderBehindAWrapper)
{
    program(u"suite/suite.bin"_qs);
    QFile wrapper(path(u"suite/wrapper"_qs));
    ASSERT_TRUE(wrapper.open(QIODevice::WriteOnly));
    wrapper.write("#!/bin/sh\nexec true\n");
    wrapper.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    wrapper.close();
    entry(u"suite"_qs, path(u"suite/wrapper"_qs));

    const qint32 pid = start(path(u"suite/suite.bin"_qs));

    EXPECT_THAT(running(), ElementsAre(pid));
}

TEST_F(LinuxWorkspaceTest, DoesNotTakeEveryRunOfAnInterpreterForAnApplication)
{
    const QString script = path(u"tool/tool.py"_qs);
    QDir().mkpath(path(u"tool"_qs));
    QFile file(script);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("import sys\nprint('ready', flush=True)\nsys.stdin.read()\n");
    file.close();
    entry(u"tool"_qs, u"python3 "_qs + script + u" %F"_qs);

    start(u"/usr/bin/python3"_qs, {u"-c"_qs, u"print('ready', flush=True); input()"_qs});
    EXPECT_THAT(running(), IsEmpty());
    const qint32 pid = start(u"/usr/bin/python3"_qs, {script});

    EXPECT_THAT(running(), ElementsAre(pid));
    EXPECT_EQ(m_workspace.runningApplications().first().bundleLocation, FilePath(path(u"tool"_qs).toUtf8()));
}

TEST_F(LinuxWorkspaceTest, LeavesOutWhatTheDesktopDoesNotShow)
{
    const QString program1 = program(u"a/a"_qs);
    const QString program2 = program(u"b/b"_qs);
    entry(u"a"_qs, program1, "NoDisplay=true\n");
    entry(u"b"_qs, program2, "Hidden=true\n");
    start(program1);
    start(program2);

    EXPECT_THAT(running(), IsEmpty());
}

TEST_F(LinuxWorkspaceTest, SeesAnEntryThatComesLaterAndOneThatGoes)
{
    const QString painter = program(u"painter/painter"_qs);
    const qint32 pid = start(painter);
    EXPECT_THAT(running(), IsEmpty());

    entry(u"painter"_qs, painter);
    EXPECT_THAT(running(), ElementsAre(pid));
    QFile::remove(path(u"applications/painter.desktop"_qs));
    EXPECT_THAT(running(), IsEmpty());
}

TEST_F(LinuxWorkspaceTest, GivesABrowserTheIdentifierOfItsTable)
{
    entry(u"firefox-esr"_qs, program(u"fox/fox"_qs));
    start(path(u"fox/fox"_qs));

    const QList<RunningApplication> applications = m_workspace.runningApplications();

    ASSERT_EQ(applications.size(), 1);
    EXPECT_EQ(applications[0].bundleIdentifier, u"org.mozilla.firefox"_qs);
}

TEST_F(LinuxWorkspaceTest, BelievesTheLaunchVariablesOnlyOfTheProcessThatTheyName)
{
    entry(u"painter"_qs, u"/bin/true"_qs);
    const QString file = path(u"applications/painter.desktop"_qs);
    const QString launcher = u"export GIO_LAUNCHED_DESKTOP_FILE=%1 GIO_LAUNCHED_DESKTOP_FILE_PID=%2; "
                             "exec /bin/sh -c 'echo ready; read line'"_qs;

    start(u"/bin/sh"_qs, {u"-c"_qs, launcher.arg(file, u"1"_qs)});
    EXPECT_THAT(running(), IsEmpty());
    const qint32 pid = start(u"/bin/sh"_qs, {u"-c"_qs, launcher.arg(file, u"$$"_qs)});

    EXPECT_THAT(running(), ElementsAre(pid));
}

TEST_F(LinuxWorkspaceTest, EndsAnApplicationAndNothingThatHasComeToItsNumber)
{
    entry(u"painter"_qs, program(u"painter/painter"_qs));
    const qint32 pid = start(path(u"painter/painter"_qs));
    const RunningApplication application = m_workspace.runningApplications().value(0);
    RunningApplication earlier = application;
    --earlier.launchTime;

    EXPECT_FALSE(m_workspace.forceTerminate(earlier));
    EXPECT_THAT(running(), ElementsAre(pid));
    EXPECT_TRUE(m_workspace.forceTerminate(application));

    m_started.front()->waitForFinished();
    EXPECT_EQ(m_started.front()->exitStatus(), QProcess::CrashExit);
    EXPECT_THAT(running(), IsEmpty());
    EXPECT_FALSE(m_workspace.forceTerminate(application));
    EXPECT_FALSE(m_workspace.forceTerminate({}));
}

TEST_F(LinuxWorkspaceTest, FindsAnInstalledApplicationByTheIdentifierOfItsTableOrByItsOwn)
{
    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs), std::nullopt);
    entry(u"firefox-esr"_qs, program(u"fox/fox"_qs) + u" %u"_qs, "Icon=firefox-esr\n");
    entry(u"org.example.Painter"_qs, program(u"painter/bin/painter"_qs));

    const auto browser = m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs);
    const auto painter = m_workspace.applicationWithIdentifier(u"org.example.Painter"_qs);

    const FilePath folder(m_home.path().toUtf8());
    EXPECT_EQ(browser, (InstalledApplication{folder.appending("fox"), u"firefox-esr"_qs}));
    EXPECT_EQ(painter, (InstalledApplication{folder.appending("painter"), {}}));
    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"com.apple.Safari"_qs), std::nullopt);
    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"com.google.Chrome"_qs), std::nullopt);
}

TEST_F(LinuxWorkspaceTest, TakesTheFirstOfAnApplicationsEntriesInTheOrderOfTheTable)
{
    entry(u"org.mozilla.firefox"_qs, program(u"flat/fox"_qs), "Icon=second\n");
    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs)->icon, u"second"_qs);

    entry(u"firefox"_qs, program(u"fox/fox"_qs), "Icon=first\n");
    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs)->icon, u"first"_qs);
}

TEST_F(LinuxWorkspaceTest, TakesNoEntryForInstalledWhoseProgramHasGone)
{
    const QString browser = program(u"fox/fox"_qs);
    entry(u"firefox"_qs, browser);
    ASSERT_TRUE(m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs).has_value());

    QFile::remove(browser);
    QFile::remove(path(u"applications/firefox.desktop"_qs));
    entry(u"firefox"_qs, browser);

    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"org.mozilla.firefox"_qs), std::nullopt);
}

TEST_F(LinuxWorkspaceTest, TakesTheEntryForTheLocationOfAnApplicationThatASharedProgramStarts)
{
    entry(u"com.brave.Browser"_qs, u"/bin/sh -c true"_qs);

    EXPECT_EQ(m_workspace.applicationWithIdentifier(u"com.brave.Browser"_qs)->location,
              FilePath(path(u"applications/com.brave.Browser.desktop"_qs).toUtf8()));
}

TEST_F(LinuxWorkspaceTest, AsksAnApplicationToQuitSoThatItCanTidyUp)
{
    entry(u"painter"_qs, program(u"painter/painter"_qs));
    const QString polite = u"trap 'echo saved; exit 0' TERM; echo ready; while :; do read line; done"_qs;
    start(path(u"painter/painter"_qs), {u"-c"_qs, polite});
    const RunningApplication application = m_workspace.runningApplications().value(0);
    QProcess &process = *m_started.front();
    process.readAll();
    RunningApplication earlier = application;
    --earlier.launchTime;

    EXPECT_FALSE(m_workspace.terminate(earlier));
    EXPECT_TRUE(m_workspace.terminate(application));

    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.readAll(), "saved\n");
    EXPECT_FALSE(m_workspace.terminate(application));
    EXPECT_FALSE(m_workspace.terminate({}));
}

TEST_F(LinuxWorkspaceTest, AsksTheApplicationInASandboxAndNotTheSandbox)
{
    const QString sandbox = program(u"sandbox/bwrap"_qs);
    const QString painter = program(u"painter/painter"_qs);
    entry(u"painter"_qs, u"/bin/true"_qs);
    const QString launcher = u"export GIO_LAUNCHED_DESKTOP_FILE=%1 GIO_LAUNCHED_DESKTOP_FILE_PID=$$; exec %2 -c "
                             "'trap \"echo sandbox ended; exit\" TERM; %3 -c \"trap \\\"echo saved; exit\\\" TERM; "
                             "echo ready; while :; do read line; done\"; echo after'"_qs;
    start(u"/bin/sh"_qs, {u"-c"_qs, launcher.arg(path(u"applications/painter.desktop"_qs), sandbox, painter)});
    const QList<RunningApplication> applications = m_workspace.runningApplications();
    ASSERT_EQ(applications.size(), 1);
    QProcess &process = *m_started.front();
    process.readAll();

    EXPECT_TRUE(m_workspace.terminate(applications[0]));

    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.readAll(), "saved\nafter\n");
}

TEST_F(LinuxWorkspaceTest, DoesNotClaimToEndWhatHasEndedAlready)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    siginfo_t information = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOWAIT), 0);
    RunningApplication application;
    application.processIdentifier = child;
    application.launchTime = ProcessTable().stat(child)->startTime;

    EXPECT_FALSE(m_workspace.forceTerminate(application));
    ::waitpid(child, nullptr, 0);
}

TEST_F(LinuxWorkspaceTest, SeesARunningProgramThatTheDesktopDoesNotKnow)
{
    const FilePath inBundle(program(u"Painter.app/Contents/MacOS/painter"_qs).toUtf8());
    EXPECT_FALSE(m_workspace.runningPrograms().contains(inBundle));

    start(path(u"Painter.app/Contents/MacOS/painter"_qs));

    EXPECT_TRUE(m_workspace.runningPrograms().contains(inBundle));
    EXPECT_THAT(m_workspace.runningApplications(), IsEmpty());
}

TEST_F(LinuxWorkspaceTest, SeesTheTextThatAnInterpreterRuns)
{
    const QString script = path(u"run.sh"_qs);
    QFile file(script);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("echo ready\nread line\n");
    file.close();
    ASSERT_TRUE(QFile::link(script, path(u"link"_qs)));

    start(u"/bin/sh"_qs, {path(u"link"_qs)});

    EXPECT_TRUE(m_workspace.runningPrograms().contains(FilePath(script.toUtf8())));
}

TEST_F(LinuxWorkspaceTest, TakesABrowserThatAnotherApplicationStartedForItself)
{
    entry(u"mail"_qs, u"/bin/true"_qs);
    entry(u"firefox"_qs, u"/bin/false"_qs);
    const auto addProcess = [this](const QString &pid, const QByteArray &program) {
        QDir().mkpath(path(u"proc/"_qs + pid));
        const auto write = [&](const QString &name, const QByteArray &text) {
            QFile file(path(u"proc/"_qs + pid + u'/' + name));
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        EXPECT_TRUE(write(u"stat"_qs,
                          pid.toUtf8() + " (p) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " + pid.toUtf8()
                              + " 1 1 1 1 1 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n"));
        EXPECT_TRUE(
            write(u"cgroup"_qs, "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-mail-7.scope\n"));
        EXPECT_EQ(::symlink(program.constData(), path(u"proc/"_qs + pid + u"/exe"_qs).toUtf8().constData()), 0);
    };
    addProcess(u"7"_qs, "/usr/bin/mail");
    addProcess(u"8"_qs, "/usr/lib/firefox/firefox");
    addProcess(u"9"_qs, "/usr/lib/mail/helper");
    const LinuxWorkspace workspace(FilePath(m_home.path().toUtf8()), {FilePath(path(u"applications"_qs).toUtf8())},
                                   FilePath(path(u"proc"_qs).toUtf8()));

    QList<QString> identifiers;
    for (const RunningApplication &each : workspace.runningApplications())
        identifiers.append(each.bundleIdentifier.value_or(QString()));
    EXPECT_THAT(identifiers, ElementsAre(u"mail"_qs, u"org.mozilla.firefox"_qs));
}
